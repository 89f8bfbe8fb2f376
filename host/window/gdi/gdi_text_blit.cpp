// GDI text (through the graphics library's fonts) and the blits between drawing contexts.
#include <utility>

#include "host/graphics/bitmap.h"
#include "host/graphics/font.h"
#include "host/window/controls/ui_font.h"
#include "host/window/core/window_system.h"
#include "host/window/gdi/dc_painter.h"
#include "host/window/gdi/gdi_draw.h"

namespace winsys::gdi {

int drawText(WindowSystem& system, HDC handle, const char* text, int length, RECT* rect,
             UINT flags) {
  DeviceContext* dc = system.gdi().find(handle);
  if (dc == nullptr || text == nullptr || rect == nullptr) return 0;
  graphics::CairoFont font;
  HFONT chosen = graphics::fontDescriptionOf(dc->font) != nullptr
                     ? dc->font
                     : uiFontHandle(system.scale256Of(dc->window));
  font.AttachHostFont(chosen, 0);
  font.SetTextColor(argbOfColorRef(dc->textColor));
  font.SetBkColor(argbOfColorRef(dc->backgroundColor));
  font.SetBkMode(dc->backgroundMode);
  RECT placed = offsetBy(*rect, dc->origin.x, dc->origin.y);
  int result = 0;
  {
    // The font draws on the target's own context: clip it to the drawing context first.
    const DcPainter painter(*dc);
    cairo_identity_matrix(painter.cr());
    result = font.DrawText(dc->target, text, length, &placed, flags);
  }
  if ((flags & DT_CALCRECT) != 0) *rect = offsetBy(placed, -dc->origin.x, -dc->origin.y);
  return result;
}

namespace {

// A copy of the source when it is the destination's own surface, which Cairo cannot read while
// drawing into it.
cairo_surface_t* readableSource(DeviceContext& source, DeviceContext& destination) {
  cairo_surface_t* surface = source.target->surface();
  if (source.target != destination.target) return cairo_surface_reference(surface);
  cairo_surface_flush(surface);
  cairo_surface_t* copy =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(surface),
                                 cairo_image_surface_get_height(surface));
  cairo_t* cr = cairo_create(copy);
  cairo_set_source_surface(cr, surface, 0, 0);
  cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
  cairo_paint(cr);
  cairo_destroy(cr);
  return copy;
}

}  // namespace

void bitBlt(GdiTable& table, HDC destination, int x, int y, int w, int h, HDC source, int sourceX,
            int sourceY) {
  stretchBlt(table, destination, x, y, w, h, source, sourceX, sourceY, w, h);
}

void stretchBlt(GdiTable& table, HDC destination, int x, int y, int w, int h, HDC source,
                int sourceX, int sourceY, int sourceW, int sourceH) {
  DeviceContext* to = table.find(destination);
  DeviceContext* from = table.find(source);
  if (to == nullptr || from == nullptr || w <= 0 || h <= 0 || sourceW <= 0 || sourceH <= 0) return;
  cairo_surface_t* pixels = readableSource(*from, *to);
  {
    const DcPainter painter(*to);
    cairo_t* cr = painter.cr();
    cairo_rectangle(cr, x, y, w, h);
    cairo_clip(cr);
    cairo_translate(cr, x, y);
    cairo_scale(cr, static_cast<double>(w) / sourceW, static_cast<double>(h) / sourceH);
    cairo_set_source_surface(cr, pixels, -(sourceX + from->origin.x), -(sourceY + from->origin.y));
    const bool scaled = w != sourceW || h != sourceH;
    cairo_pattern_set_filter(cairo_get_source(cr),
                             scaled ? CAIRO_FILTER_GOOD : CAIRO_FILTER_NEAREST);
    cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_paint(cr);
  }
  cairo_surface_destroy(pixels);
}

}  // namespace winsys::gdi
