// Drawing helpers shared by the host's controls: crisp rounded boxes, focus rings, marks.
#pragma once

#include <cairo.h>

#include <cstdint>

#include "platform/win32_types.h"

namespace winsys::draw {

void setColor(cairo_t* cr, std::uint32_t argb);
// A rounded rectangle path through x, y, w, h.
void roundedRect(cairo_t* cr, double x, double y, double w, double h, double radius);
// A filled rounded box with a one-pixel border inside the rectangle, both crisp.
void box(cairo_t* cr, const RECT& r, double radius, std::uint32_t fill, std::uint32_t border,
         double lineWidth = 1.0);
void fill(cairo_t* cr, const RECT& r, std::uint32_t argb);
// A ring just inside the rectangle showing the keyboard focus.
void focusRing(cairo_t* cr, const RECT& r, double radius, double lineWidth);
// A check mark in the square.
void checkMark(cairo_t* cr, const RECT& square, std::uint32_t argb, double lineWidth);
// A small downward chevron centred in the square.
void chevronDown(cairo_t* cr, double cx, double cy, double size, std::uint32_t argb,
                 double lineWidth);
RECT inset(const RECT& r, int dx, int dy);

}  // namespace winsys::draw
