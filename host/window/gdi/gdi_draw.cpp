// GDI shapes: rectangles, ellipses, rounded rectangles, polygons, lines and pixels with the
// context's pen and brush.
#include "host/window/gdi/gdi_draw.h"

#include <cmath>
#include <utility>

#include "host/window/gdi/dc_painter.h"

namespace winsys::gdi {

namespace {

const GdiObject* penOf(GdiTable& table, const DeviceContext& dc) {
  const GdiObject* pen = table.object(dc.pen);
  return pen != nullptr && pen->kind == GdiKind::Pen && pen->style != PS_NULL ? pen : nullptr;
}

const GdiObject* brushOf(GdiTable& table, const DeviceContext& dc) {
  const GdiObject* brush = table.object(dc.brush);
  return brush != nullptr && brush->kind == GdiKind::Brush && brush->style == 0 ? brush : nullptr;
}

void usePen(cairo_t* cr, const GdiObject& pen) {
  setColorRef(cr, pen.color, pen.alpha);
  cairo_set_line_width(cr, pen.width);
  static const double kDash[] = {4.0, 2.0};
  static const double kDot[] = {1.0, 1.0};
  if (pen.style == PS_DASH) cairo_set_dash(cr, kDash, 2, 0);
  if (pen.style == PS_DOT) cairo_set_dash(cr, kDot, 2, 0);
}

// Fills the current path with the brush and strokes it with the pen, as GDI's closed shapes do.
void fillAndStroke(GdiTable& table, DeviceContext& dc, cairo_t* cr) {
  if (const GdiObject* brush = brushOf(table, dc)) {
    setColorRef(cr, brush->color, brush->alpha);
    cairo_fill_preserve(cr);
  }
  if (const GdiObject* pen = penOf(table, dc)) {
    usePen(cr, *pen);
    cairo_stroke_preserve(cr);
  }
  cairo_new_path(cr);
}

// The box a pen of width w strokes through, inside left..right-1 and top..bottom-1.
struct InsetBox {
  double x, y, w, h;
};
InsetBox strokeBox(GdiTable& table, const DeviceContext& dc, int left, int top, int right,
                   int bottom) {
  const GdiObject* pen = penOf(table, dc);
  const double half = pen != nullptr ? pen->width / 2.0 : 0.0;
  return {left + half, top + half, right - left - 2 * half, bottom - top - 2 * half};
}

void ellipsePath(cairo_t* cr, double x, double y, double w, double h) {
  if (w <= 0 || h <= 0) return;
  cairo_save(cr);
  cairo_translate(cr, x + w / 2, y + h / 2);
  cairo_scale(cr, w / 2, h / 2);
  cairo_arc(cr, 0, 0, 1, 0, 2 * M_PI);
  cairo_restore(cr);
}

}  // namespace

void fillSolid(DeviceContext& dc, const RECT& rect, std::uint32_t argb) {
  const DcPainter painter(dc);
  cairo_t* cr = painter.cr();
  setArgb(cr, argb);
  cairo_rectangle(cr, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
  cairo_fill(cr);
}

void fillRect(GdiTable& table, HDC handle, const RECT* rect, HGDIOBJ brushHandle) {
  DeviceContext* dc = table.find(handle);
  const GdiObject* brush = table.object(brushHandle);
  if (dc == nullptr || rect == nullptr || brush == nullptr || brush->kind != GdiKind::Brush ||
      brush->style != 0) {
    return;
  }
  const DcPainter painter(*dc);
  setColorRef(painter.cr(), brush->color, brush->alpha);
  cairo_rectangle(painter.cr(), rect->left, rect->top, rect->right - rect->left,
                  rect->bottom - rect->top);
  cairo_fill(painter.cr());
}

void rectangle(GdiTable& table, HDC handle, int left, int top, int right, int bottom) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr) return;
  const DcPainter painter(*dc);
  const InsetBox box = strokeBox(table, *dc, left, top, right, bottom);
  cairo_rectangle(painter.cr(), box.x, box.y, box.w, box.h);
  fillAndStroke(table, *dc, painter.cr());
}

void ellipse(GdiTable& table, HDC handle, int left, int top, int right, int bottom) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr) return;
  const DcPainter painter(*dc);
  const InsetBox box = strokeBox(table, *dc, left, top, right, bottom);
  ellipsePath(painter.cr(), box.x, box.y, box.w, box.h);
  fillAndStroke(table, *dc, painter.cr());
}

void roundRect(GdiTable& table, HDC handle, int left, int top, int right, int bottom, int cornerW,
               int cornerH) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr) return;
  const DcPainter painter(*dc);
  cairo_t* cr = painter.cr();
  const InsetBox box = strokeBox(table, *dc, left, top, right, bottom);
  const double rx = std::min(cornerW / 2.0, box.w / 2), ry = std::min(cornerH / 2.0, box.h / 2);
  if (rx <= 0 || ry <= 0) {
    cairo_rectangle(cr, box.x, box.y, box.w, box.h);
  } else {
    const double corners[4][3] = {{box.x + box.w - rx, box.y + ry, -M_PI / 2},
                                  {box.x + box.w - rx, box.y + box.h - ry, 0},
                                  {box.x + rx, box.y + box.h - ry, M_PI / 2},
                                  {box.x + rx, box.y + ry, M_PI}};
    for (const auto& c : corners) {
      cairo_save(cr);
      cairo_translate(cr, c[0], c[1]);
      cairo_scale(cr, rx, ry);
      cairo_arc(cr, 0, 0, 1, c[2], c[2] + M_PI / 2);
      cairo_restore(cr);
    }
    cairo_close_path(cr);
  }
  fillAndStroke(table, *dc, cr);
}

void polygon(GdiTable& table, HDC handle, const POINT* points, int count) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr || points == nullptr || count < 2) return;
  const DcPainter painter(*dc);
  for (int i = 0; i < count; ++i) {
    cairo_line_to(painter.cr(), points[i].x + 0.5, points[i].y + 0.5);
  }
  cairo_close_path(painter.cr());
  fillAndStroke(table, *dc, painter.cr());
}

void moveTo(GdiTable& table, HDC handle, int x, int y, POINT* previous) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr) return;
  if (previous != nullptr) *previous = dc->position;
  dc->position = {x, y};
}

void lineTo(GdiTable& table, HDC handle, int x, int y) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr) return;
  const POINT from = dc->position;
  dc->position = {x, y};
  const GdiObject* pen = penOf(table, *dc);
  if (pen == nullptr) return;
  const DcPainter painter(*dc);
  cairo_t* cr = painter.cr();
  usePen(cr, *pen);
  // Through pixel centres, stopping half a pixel short: the last pixel is not drawn.
  const double dx = x - from.x, dy = y - from.y, length = std::hypot(dx, dy);
  if (length == 0) return;
  cairo_move_to(cr, from.x + 0.5, from.y + 0.5);
  cairo_line_to(cr, x + 0.5 - dx / length * 0.5, y + 0.5 - dy / length * 0.5);
  cairo_stroke(cr);
}

void setPixel(GdiTable& table, HDC handle, int x, int y, int color) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr) return;
  const DcPainter painter(*dc);
  setColorRef(painter.cr(), color);
  cairo_rectangle(painter.cr(), x, y, 1, 1);
  cairo_fill(painter.cr());
}

void drawFocusRect(GdiTable& table, HDC handle, const RECT* rect) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr || rect == nullptr) return;
  const DcPainter painter(*dc);
  cairo_t* cr = painter.cr();
  static const double kDots[] = {1.0, 1.0};
  cairo_set_dash(cr, kDots, 2, 0);
  cairo_set_line_width(cr, 1);
  cairo_set_source_rgba(cr, 0, 0, 0, 0.8);
  cairo_rectangle(cr, rect->left + 0.5, rect->top + 0.5, rect->right - rect->left - 1,
                  rect->bottom - rect->top - 1);
  cairo_stroke(cr);
}

HGDIOBJ selectObject(GdiTable& table, HDC handle, HGDIOBJ object) {
  DeviceContext* dc = table.find(handle);
  if (dc == nullptr || object == nullptr) return nullptr;
  if (const GdiObject* gdiObject = table.object(object)) {
    HGDIOBJ& slot = gdiObject->kind == GdiKind::Pen ? dc->pen : dc->brush;
    return std::exchange(slot, object);
  }
  // Anything else is taken for a font handle of the graphics library.
  return reinterpret_cast<HGDIOBJ>(std::exchange(dc->font, reinterpret_cast<HFONT>(object)));
}

}  // namespace winsys::gdi
