// Pixels, lines, rectangles, circles, arcs and convex shapes.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

#include "host/graphics/bitmap.h"
#include "host/graphics/drawing.h"
#include "host/graphics/paint_state.h"

namespace graphics {
namespace {

// Cairo's coordinates count pixel edges; ours name pixel centres.
constexpr double kToEdge = 0.5;
// Geometry beyond the bitmap by more than this is cut before it reaches Cairo's fixed point.
constexpr double kClipMargin = 4.0;
// Integer coordinates are held within this so that span arithmetic cannot overflow.
constexpr std::int64_t kCoordinateLimit = std::int64_t{1} << 30;
// Beyond this the midpoint walk costs more than it is worth; Cairo's crisp stroke takes over.
constexpr float kCrispCircleMaxRadius = 4096.0f;

template <typename Draw>
void withBitmap(DAUB_IBitmap* bm, Draw draw) {
  CairoBitmap* bitmap = asCairoBitmap(bm);
  if (bitmap == nullptr) return;
  const DrawScope scope(*bitmap);
  draw(scope.cr(), *bitmap);
}

bool allFinite(std::initializer_list<double> values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

int roundToPixel(double v) {
  const auto limit = static_cast<double>(kCoordinateLimit);
  return static_cast<int>(std::lround(std::clamp(v, -limit, limit)));
}

// False when a shape reaching `reach` around (cx, cy) cannot touch the bitmap.
bool touchesBitmap(CairoBitmap& bitmap, double cx, double cy, double reach) {
  return cx + reach >= -1.0 && cy + reach >= -1.0 && cx - reach <= bitmap.getWidth() + 1.0 &&
         cy - reach <= bitmap.getHeight() + 1.0;
}

std::int64_t floorDiv(std::int64_t num, std::int64_t den) {
  const std::int64_t q = num / den;
  return (num % den != 0 && ((num < 0) != (den < 0))) ? q - 1 : q;
}

// Pixels of a crisp line, both ends included: one per step along the major axis, the minor
// coordinate rounded from the exact line. Only the part inside the bitmap is walked.
void addCrispLine(PixelSpans& spans, std::int64_t x1, std::int64_t y1, std::int64_t x2,
                  std::int64_t y2, int width, int height) {
  const bool xMajor = std::llabs(x2 - x1) >= std::llabs(y2 - y1);
  if (xMajor ? x1 > x2 : y1 > y2) {  // walk one way only, so A-B and B-A draw alike
    std::swap(x1, x2);
    std::swap(y1, y2);
  }
  const std::int64_t major1 = xMajor ? x1 : y1, major2 = xMajor ? x2 : y2;
  const std::int64_t minor1 = xMajor ? y1 : x1, minor2 = xMajor ? y2 : x2;
  const std::int64_t majorLimit = (xMajor ? width : height) - 1;
  const std::int64_t minorLimit = (xMajor ? height : width) - 1;
  const std::int64_t span = major2 - major1;
  for (std::int64_t m = std::max<std::int64_t>(major1, 0); m <= std::min(major2, majorLimit); ++m) {
    const std::int64_t minor =
        span == 0 ? minor1
                  : minor1 + floorDiv(2 * (m - major1) * (minor2 - minor1) + span, 2 * span);
    if (minor < 0 || minor > minorLimit) continue;
    if (xMajor) {
      spans.addPixel(static_cast<int>(m), static_cast<int>(minor));
    } else {
      spans.addPixel(static_cast<int>(minor), static_cast<int>(m));
    }
  }
}

void drawCrispLine(cairo_t* cr, CairoBitmap& bitmap, int x1, int y1, int x2, int y2) {
  PixelSpans spans(cr);
  addCrispLine(spans, x1, y1, x2, y2, bitmap.getWidth(), bitmap.getHeight());
  spans.fill();
}

// Liang-Barsky: cuts the segment to the box; false when nothing of it is inside.
bool clipSegment(double& x1, double& y1, double& x2, double& y2, double x0Box, double y0Box,
                 double x1Box, double y1Box) {
  double t0 = 0.0, t1 = 1.0;
  const double dx = x2 - x1, dy = y2 - y1;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {x1 - x0Box, x1Box - x1, y1 - y0Box, y1Box - y1};
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0.0) {
      if (q[i] < 0.0) return false;
      continue;
    }
    const double t = q[i] / p[i];
    if (p[i] < 0.0) {
      t0 = std::max(t0, t);
    } else {
      t1 = std::min(t1, t);
    }
  }
  if (t0 > t1) return false;
  x2 = x1 + t1 * dx;
  y2 = y1 + t1 * dy;
  x1 += t0 * dx;
  y1 += t0 * dy;
  return true;
}

// An anti-aliased line through the centres of its end pixels, lengthened by half a pixel at each
// end so that both end pixels are covered.
void strokeSmoothLine(cairo_t* cr, CairoBitmap& bitmap, double x1, double y1, double x2, double y2,
                      double widthPx) {
  const double length = std::hypot(x2 - x1, y2 - y1);
  if (length < 1e-9) {
    cairo_rectangle(cr, x1 + kToEdge - widthPx / 2, y1 + kToEdge - widthPx / 2, widthPx, widthPx);
    cairo_fill(cr);
    return;
  }
  const double ux = (x2 - x1) / length * 0.5, uy = (y2 - y1) / length * 0.5;
  double ax = x1 - ux + kToEdge, ay = y1 - uy + kToEdge;
  double bx = x2 + ux + kToEdge, by = y2 + uy + kToEdge;
  const double margin = kClipMargin + widthPx;
  if (!clipSegment(ax, ay, bx, by, -margin, -margin, bitmap.getWidth() + margin,
                   bitmap.getHeight() + margin)) {
    return;
  }
  cairo_set_line_width(cr, widthPx);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
  cairo_move_to(cr, ax, ay);
  cairo_line_to(cr, bx, by);
  cairo_stroke(cr);
}

// Crisp circle outline (midpoint algorithm): the pixels nearest to radius r around the centre.
void addCrispCircle(PixelSpans& spans, int cx, int cy, int radius) {
  int x = radius, y = 0, decision = 1 - radius;
  while (y <= x) {
    const int points[8][2] = {{x, y},   {y, x},   {-y, x}, {-x, y},
                              {-x, -y}, {-y, -x}, {y, -x}, {x, -y}};
    for (const auto& p : points) spans.addSpan(cx + p[0], cx + p[0], cy + p[1]);
    ++y;
    if (decision < 0) {
      decision += 2 * y + 1;
    } else {
      --x;
      decision += 2 * (y - x) + 1;
    }
  }
}

// Crisp disc: the pixels whose centres lie within r + 0.5 of the centre pixel's. Only rows and
// columns inside the bitmap are produced.
void addCrispDisc(PixelSpans& spans, int cx, int cy, int radius, int width, int height) {
  const double reach = radius + 0.5;
  const std::int64_t firstDy = std::max<std::int64_t>(-radius, -std::int64_t{cy});
  const std::int64_t lastDy = std::min<std::int64_t>(radius, std::int64_t{height} - 1 - cy);
  for (std::int64_t dy = firstDy; dy <= lastDy; ++dy) {
    const auto dyPx = static_cast<double>(dy);
    const auto halfWidth =
        static_cast<std::int64_t>(std::floor(std::sqrt(reach * reach - dyPx * dyPx)));
    const std::int64_t left = std::max<std::int64_t>(cx - halfWidth, -1);
    const std::int64_t right = std::min<std::int64_t>(cx + halfWidth, width);
    spans.addSpan(static_cast<int>(left), static_cast<int>(right), static_cast<int>(cy + dy));
  }
}

struct RowExtent {
  double left = std::numeric_limits<double>::infinity();
  double right = -std::numeric_limits<double>::infinity();
  void include(double x) {
    left = std::min(left, x);
    right = std::max(right, x);
  }
};

// Where a convex outline crosses the horizontal line through the centres of row y.
RowExtent rowExtent(const std::vector<std::int64_t>& xs, const std::vector<std::int64_t>& ys,
                    std::int64_t y) {
  RowExtent extent;
  const std::size_t n = xs.size();
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t j = (i + 1) % n;
    const std::int64_t ya = ys[i], yb = ys[j];
    if (y < std::min(ya, yb) || y > std::max(ya, yb)) continue;
    if (ya == yb) {
      extent.include(static_cast<double>(xs[i]));
      extent.include(static_cast<double>(xs[j]));
    } else {
      extent.include(static_cast<double>(xs[i]) + static_cast<double>(y - ya) *
                                                      static_cast<double>(xs[j] - xs[i]) /
                                                      static_cast<double>(yb - ya));
    }
  }
  return extent;
}

void fillConvex(DAUB_IBitmap* bm, const std::vector<std::int64_t>& xs,
                const std::vector<std::int64_t>& ys, DAUB_pixel color, float alpha, int mode) {
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    const auto [minY, maxY] = std::minmax_element(ys.begin(), ys.end());
    const std::int64_t top = std::max<std::int64_t>(*minY, 0);
    const std::int64_t bottom = std::min<std::int64_t>(*maxY, bitmap.getHeight() - 1);
    const double rightLimit = bitmap.getWidth() + kClipMargin;
    PixelSpans spans(cr);
    for (std::int64_t y = top; y <= bottom; ++y) {
      const RowExtent extent = rowExtent(xs, ys, y);
      const double left = std::max(std::ceil(extent.left - 1e-9), -kClipMargin);
      const double right = std::min(std::floor(extent.right + 1e-9), rightLimit);
      if (left <= right) spans.addSpan(static_cast<int>(left), static_cast<int>(right), int(y));
    }
    setPaint(cr, color, alpha, mode);
    spans.fill();
  });
}

// Keeps a rectangle's intersection with the bitmap (plus a margin) so Cairo sees small numbers.
void addClippedRectangle(cairo_t* cr, CairoBitmap& bitmap, std::int64_t x, std::int64_t y,
                         std::int64_t w, std::int64_t h) {
  const std::int64_t margin = 2;
  const std::int64_t left = std::max(x, -margin), top = std::max(y, -margin);
  const std::int64_t right = std::min(x + w, bitmap.getWidth() + margin);
  const std::int64_t bottom = std::min(y + h, bitmap.getHeight() + margin);
  if (right <= left || bottom <= top) return;
  cairo_rectangle(cr, static_cast<double>(left), static_cast<double>(top),
                  static_cast<double>(right - left), static_cast<double>(bottom - top));
}

// The one-pixel ring of a w x h pixel area; empty areas draw nothing.
void fillFrame(cairo_t* cr, CairoBitmap& bitmap, std::int64_t x, std::int64_t y, std::int64_t w,
               std::int64_t h) {
  if (w <= 0 || h <= 0) return;
  addClippedRectangle(cr, bitmap, x, y, w, h);
  if (w > 2 && h > 2) addClippedRectangle(cr, bitmap, x + 1, y + 1, w - 2, h - 2);
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
  cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
  cairo_fill(cr);
}

// Our angles start straight up and grow clockwise; Cairo's start at +x, also clockwise.
double cairoAngle(double angleRad) {
  return angleRad - M_PI / 2;
}

}  // namespace

DAUB_IBitmap* DAUB_CreateBitmap(int kind, int width, int height) {
  return CairoBitmap::create(kind, width, height).release();
}

DAUB_pixel DAUB_GetPixel(DAUB_IBitmap* bm, int x, int y) {
  CairoBitmap* bitmap = asCairoBitmap(bm);
  if (bitmap == nullptr || x < 0 || y < 0 || x >= bitmap->getWidth() || y >= bitmap->getHeight()) {
    return 0;
  }
  return unpremultiply(bitmap->row(y)[x]);
}

void DAUB_PutPixel(DAUB_IBitmap* bm, int x, int y, DAUB_pixel color, float alpha, int mode) {
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    if (x < 0 || y < 0 || x >= bitmap.getWidth() || y >= bitmap.getHeight()) return;
    cairo_rectangle(cr, x, y, 1, 1);
    setPaint(cr, color, alpha, mode);
    cairo_fill(cr);
  });
}

void DAUB_LineInt(DAUB_IBitmap* bm, int x1, int y1, int x2, int y2, DAUB_pixel color, float alpha,
                  int mode, bool antialias) {
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    setPaint(cr, color, alpha, mode);
    if (antialias) {
      strokeSmoothLine(cr, bitmap, x1, y1, x2, y2, 1.0);
    } else {
      drawCrispLine(cr, bitmap, x1, y1, x2, y2);
    }
  });
}

void DAUB_Line(DAUB_IBitmap* bm, float x1, float y1, float x2, float y2, DAUB_pixel color,
               float alpha, int mode, bool antialias) {
  if (!allFinite({x1, y1, x2, y2})) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    setPaint(cr, color, alpha, mode);
    if (antialias) {
      strokeSmoothLine(cr, bitmap, x1, y1, x2, y2, 1.0);
    } else {
      drawCrispLine(cr, bitmap, roundToPixel(x1), roundToPixel(y1), roundToPixel(x2),
                    roundToPixel(y2));
    }
  });
}

void DAUB_ThickFLine(DAUB_IBitmap* bm, double x1, double y1, double x2, double y2, DAUB_pixel color,
                     float alpha, int mode, int width) {
  if (width <= 0 || !allFinite({x1, y1, x2, y2})) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    setPaint(cr, color, alpha, mode);
    strokeSmoothLine(cr, bitmap, x1, y1, x2, y2, width);
  });
}

void DAUB_Circle(DAUB_IBitmap* bm, float cx, float cy, float r, DAUB_pixel color, float alpha,
                 int mode, bool antialias) {
  if (!(r >= 0.0f) || !allFinite({cx, cy, r})) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    if (!touchesBitmap(bitmap, cx, cy, r + 1.0)) return;
    setPaint(cr, color, alpha, mode);
    if (!antialias && r <= kCrispCircleMaxRadius) {
      PixelSpans spans(cr);
      addCrispCircle(spans, roundToPixel(cx), roundToPixel(cy), roundToPixel(r));
      spans.fill();
    } else if (!antialias) {
      cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
      cairo_set_line_width(cr, 1.0);
      cairo_arc(cr, roundToPixel(cx) + kToEdge, roundToPixel(cy) + kToEdge, r, 0.0, 2 * M_PI);
      cairo_stroke(cr);
    } else if (r < 0.5f) {
      strokeSmoothLine(cr, bitmap, cx, cy, cx, cy, 1.0);
    } else {
      cairo_set_line_width(cr, 1.0);
      cairo_arc(cr, cx + kToEdge, cy + kToEdge, r, 0.0, 2 * M_PI);
      cairo_stroke(cr);
    }
  });
}

void DAUB_FillCircle(DAUB_IBitmap* bm, int cx, int cy, int r, DAUB_pixel color, float alpha,
                     int mode, bool antialias) {
  if (r < 0) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    if (!touchesBitmap(bitmap, cx, cy, r + 1.0)) return;
    setPaint(cr, color, alpha, mode);
    if (antialias) {
      cairo_arc(cr, cx + kToEdge, cy + kToEdge, r + 0.5, 0.0, 2 * M_PI);
      cairo_fill(cr);
    } else {
      PixelSpans spans(cr);
      addCrispDisc(spans, cx, cy, r, bitmap.getWidth(), bitmap.getHeight());
      spans.fill();
    }
  });
}

void DAUB_FillRect(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel color, float alpha,
                   int mode) {
  if (w <= 0 || h <= 0) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    addClippedRectangle(cr, bitmap, x, y, w, h);
    setPaint(cr, color, alpha, mode);
    cairo_fill(cr);
  });
}

void DAUB_DrawRect(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel color, float alpha,
                   int mode) {
  if (w < 0 || h < 0) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    setPaint(cr, color, alpha, mode);
    fillFrame(cr, bitmap, x, y, std::int64_t{w} + 1, std::int64_t{h} + 1);
  });
}

void DAUB_BorderedRect(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel fill,
                       DAUB_pixel border, float alpha, int mode) {
  if (w <= 0 || h <= 0) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    if (w > 2 && h > 2) {
      addClippedRectangle(cr, bitmap, std::int64_t{x} + 1, std::int64_t{y} + 1, w - 2, h - 2);
      setPaint(cr, fill, alpha, mode);
      cairo_fill(cr);
    }
    setPaint(cr, border, alpha, mode);
    fillFrame(cr, bitmap, x, y, w, h);
  });
}

void DAUB_Clear(DAUB_IBitmap* bm, DAUB_pixel color) {
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap&) {
    setPaint(cr, color, 1.0f, DAUB_BLIT_MODE_COPY);
    cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
    cairo_paint(cr);
  });
}

void DAUB_FillTriangle(DAUB_IBitmap* bm, int x1, int y1, int x2, int y2, int x3, int y3,
                       DAUB_pixel color, float alpha, int mode) {
  fillConvex(bm, {x1, x2, x3}, {y1, y2, y3}, color, alpha, mode);
}

void DAUB_Arc(DAUB_IBitmap* bm, float cx, float cy, float r, float angle1, float angle2,
              DAUB_pixel color, float alpha, int mode, bool antialias) {
  if (!(r > 0.0f) || !allFinite({cx, cy, r, angle1, angle2})) return;
  withBitmap(bm, [&](cairo_t* cr, CairoBitmap& bitmap) {
    if (!touchesBitmap(bitmap, cx, cy, r + 1.0)) return;
    setPaint(cr, color, alpha, mode);
    cairo_set_antialias(cr, antialias ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    cairo_set_line_width(cr, 1.0);
    if (angle2 >= angle1) {
      cairo_arc(cr, cx + kToEdge, cy + kToEdge, r, cairoAngle(angle1), cairoAngle(angle2));
    } else {
      cairo_arc_negative(cr, cx + kToEdge, cy + kToEdge, r, cairoAngle(angle1), cairoAngle(angle2));
    }
    cairo_stroke(cr);
  });
}

void DAUB_FillTrapezoid(DAUB_IBitmap* bm, int x1a, int x1b, int y1, int x2a, int x2b, int y2,
                        DAUB_pixel color, float alpha, int mode) {
  fillConvex(bm, {x1a, x1b, x2b, x2a}, {y1, y1, y2, y2}, color, alpha, mode);
}

void DAUB_FillConvexPolygon(DAUB_IBitmap* bm, const int* x, const int* y, int npoints,
                            DAUB_pixel color, float alpha, int mode) {
  if (x == nullptr || y == nullptr || npoints <= 0) return;
  fillConvex(bm, std::vector<std::int64_t>(x, x + npoints),
             std::vector<std::int64_t>(y, y + npoints), color, alpha, mode);
}

}  // namespace graphics
