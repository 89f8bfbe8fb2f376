#include "host/window/controls/draw.h"

#include <algorithm>
#include <cmath>

#include "host/window/controls/theme.h"

namespace winsys::draw {

void setColor(cairo_t* cr, std::uint32_t argb) {
  cairo_set_source_rgba(cr, ((argb >> 16) & 0xFF) / 255.0, ((argb >> 8) & 0xFF) / 255.0,
                        (argb & 0xFF) / 255.0, (argb >> 24) / 255.0);
}

void roundedRect(cairo_t* cr, double x, double y, double w, double h, double radius) {
  const double r = std::max(0.0, std::min({radius, w / 2, h / 2}));
  cairo_new_sub_path(cr);
  cairo_arc(cr, x + w - r, y + r, r, -M_PI / 2, 0);
  cairo_arc(cr, x + w - r, y + h - r, r, 0, M_PI / 2);
  cairo_arc(cr, x + r, y + h - r, r, M_PI / 2, M_PI);
  cairo_arc(cr, x + r, y + r, r, M_PI, 3 * M_PI / 2);
  cairo_close_path(cr);
}

void box(cairo_t* cr, const RECT& r, double radius, std::uint32_t fillColor, std::uint32_t border,
         double lineWidth) {
  const double half = lineWidth / 2;
  roundedRect(cr, r.left + half, r.top + half, r.right - r.left - lineWidth,
              r.bottom - r.top - lineWidth, radius);
  setColor(cr, fillColor);
  cairo_fill_preserve(cr);
  setColor(cr, border);
  cairo_set_line_width(cr, lineWidth);
  cairo_stroke(cr);
}

void fill(cairo_t* cr, const RECT& r, std::uint32_t argb) {
  setColor(cr, argb);
  cairo_rectangle(cr, r.left, r.top, r.right - r.left, r.bottom - r.top);
  cairo_fill(cr);
}

void focusRing(cairo_t* cr, const RECT& r, double radius, double lineWidth) {
  const double half = lineWidth / 2;
  roundedRect(cr, r.left + half, r.top + half, r.right - r.left - lineWidth,
              r.bottom - r.top - lineWidth, radius);
  setColor(cr, theme::kAccent);
  cairo_set_line_width(cr, lineWidth);
  cairo_stroke(cr);
}

void checkMark(cairo_t* cr, const RECT& square, std::uint32_t argb, double lineWidth) {
  const double x = square.left, y = square.top, s = square.right - square.left;
  cairo_move_to(cr, x + s * 0.22, y + s * 0.52);
  cairo_line_to(cr, x + s * 0.42, y + s * 0.72);
  cairo_line_to(cr, x + s * 0.78, y + s * 0.30);
  setColor(cr, argb);
  cairo_set_line_width(cr, lineWidth);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_stroke(cr);
}

void chevronDown(cairo_t* cr, double cx, double cy, double size, std::uint32_t argb,
                 double lineWidth) {
  cairo_move_to(cr, cx - size / 2, cy - size / 4);
  cairo_line_to(cr, cx, cy + size / 4);
  cairo_line_to(cr, cx + size / 2, cy - size / 4);
  setColor(cr, argb);
  cairo_set_line_width(cr, lineWidth);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_stroke(cr);
}

RECT inset(const RECT& r, int dx, int dy) {
  return {r.left + dx, r.top + dy, r.right - dx, r.bottom - dy};
}

}  // namespace winsys::draw
