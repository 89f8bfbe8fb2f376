#include "host/graphics/paint_state.h"

#include <algorithm>
#include <cmath>

namespace graphics {

double clampedAlpha(float alpha) {
  if (!(alpha > 0.0f)) return 0.0;  // also NaN
  return std::min(1.0, static_cast<double>(alpha));
}

bool isAdditive(int mode) {
  return (mode & 0xFF) == DAUB_BLIT_MODE_ADD;
}

cairo_operator_t operatorForMode(int mode) {
  return isAdditive(mode) ? CAIRO_OPERATOR_ADD : CAIRO_OPERATOR_OVER;
}

void setPaint(cairo_t* cr, DAUB_pixel color, float alpha, int mode) {
  const double colorAlpha = ((color >> 24) & 0xFFu) / 255.0;
  cairo_set_source_rgba(cr, ((color >> 16) & 0xFFu) / 255.0, ((color >> 8) & 0xFFu) / 255.0,
                        (color & 0xFFu) / 255.0, colorAlpha * clampedAlpha(alpha));
  cairo_set_operator(cr, operatorForMode(mode));
}

void PixelSpans::addPixel(int x, int y) {
  if (hasRun_ && y == runY_ && x == runX1_ + 1) {
    runX1_ = x;
  } else if (hasRun_ && y == runY_ && x == runX0_ - 1) {
    runX0_ = x;
  } else {
    flushRun();
    hasRun_ = true;
    runX0_ = runX1_ = x;
    runY_ = y;
  }
}

void PixelSpans::addSpan(int x0, int x1, int y) {
  if (x1 < x0) return;
  cairo_rectangle(cr_, x0, y, static_cast<double>(x1) - x0 + 1.0, 1.0);
}

void PixelSpans::flushRun() {
  if (!hasRun_) return;
  addSpan(runX0_, runX1_, runY_);
  hasRun_ = false;
}

void PixelSpans::fill() {
  flushRun();
  // Rectangles share one orientation, so overlaps wind twice and still fill once.
  cairo_set_fill_rule(cr_, CAIRO_FILL_RULE_WINDING);
  cairo_set_antialias(cr_, CAIRO_ANTIALIAS_NONE);
  cairo_fill(cr_);
}

}  // namespace graphics
