// Cairo state shared by the drawing functions: one scope per call, colour and blend mode.
#pragma once

#include <cairo.h>

#include "host/graphics/bitmap.h"

namespace graphics {

// Brackets one drawing call on the bitmap's kept context so that no state leaks to the next. A
// context that Cairo put in an error state is replaced, so one bad call cannot stop all later
// drawing on the bitmap.
class DrawScope {
 public:
  explicit DrawScope(CairoBitmap& bitmap) : bitmap_(bitmap), cr_(bitmap.context()) {
    cairo_save(cr_);
  }
  ~DrawScope() {
    cairo_restore(cr_);
    if (cairo_status(cr_) != CAIRO_STATUS_SUCCESS) bitmap_.renewContext();
  }
  DrawScope(const DrawScope&) = delete;
  DrawScope& operator=(const DrawScope&) = delete;

  cairo_t* cr() const { return cr_; }

 private:
  CairoBitmap& bitmap_;
  cairo_t* cr_;
};

// Alpha arguments outside 0..1 are clamped; NaN draws nothing.
double clampedAlpha(float alpha);

bool isAdditive(int mode);

// OVER for copy mode (and unknown modes), saturating ADD for additive mode.
cairo_operator_t operatorForMode(int mode);

// Source colour = the non-premultiplied colour with its own alpha times `alpha`, and the mode's
// operator.
void setPaint(cairo_t* cr, DAUB_pixel color, float alpha, int mode);

// A crisp pixel set drawn as one fill, so that no pixel is blended twice. Pixels added one by one
// along a row merge into spans.
class PixelSpans {
 public:
  explicit PixelSpans(cairo_t* cr) : cr_(cr) {}
  void addPixel(int x, int y);
  void addSpan(int x0, int x1, int y);  // x0..x1 inclusive
  void fill();

 private:
  void flushRun();

  cairo_t* cr_;
  bool hasRun_ = false;
  int runX0_ = 0;
  int runX1_ = 0;
  int runY_ = 0;
};

}  // namespace graphics
