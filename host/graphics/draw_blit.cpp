// Bitmap to bitmap: plain, scaled and rotated blits, whole copies, and glyph (alpha map) drawing.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "host/graphics/bitmap.h"
#include "host/graphics/drawing.h"
#include "host/graphics/paint_state.h"

namespace graphics {
namespace {

// Owns a surface reference for the length of one call.
class SurfaceRef {
 public:
  explicit SurfaceRef(cairo_surface_t* surface) : surface_(surface) {}
  ~SurfaceRef() { cairo_surface_destroy(surface_); }
  SurfaceRef(const SurfaceRef&) = delete;
  SurfaceRef& operator=(const SurfaceRef&) = delete;
  cairo_surface_t* get() const { return surface_; }
  bool valid() const { return cairo_surface_status(surface_) == CAIRO_STATUS_SUCCESS; }

 private:
  cairo_surface_t* surface_;
};

struct PixelRect {
  std::int64_t x, y, w, h;
  bool empty() const { return w <= 0 || h <= 0; }
};

// A copy of part of a bitmap, so that a blit can read what it is about to overwrite and so that
// filtering never reaches pixels outside the part.
cairo_surface_t* copyRegion(CairoBitmap& bitmap, const PixelRect& region) {
  cairo_surface_t* copy = cairo_image_surface_create(
      CAIRO_FORMAT_ARGB32, static_cast<int>(region.w), static_cast<int>(region.h));
  cairo_t* cr = cairo_create(copy);
  cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(cr, bitmap.surface(), -static_cast<double>(region.x),
                           -static_cast<double>(region.y));
  cairo_paint(cr);
  cairo_destroy(cr);
  return copy;
}

// Copy mode replaces the destination unless the source's alpha is asked for.
cairo_operator_t blitOperator(int mode) {
  if (isAdditive(mode)) return CAIRO_OPERATOR_ADD;
  return (mode & DAUB_BLIT_USE_ALPHA) != 0 ? CAIRO_OPERATOR_OVER : CAIRO_OPERATOR_SOURCE;
}

cairo_filter_t blitFilter(int mode) {
  return (mode & DAUB_BLIT_FILTER_BILINEAR) != 0 ? CAIRO_FILTER_BILINEAR : CAIRO_FILTER_NEAREST;
}

PixelRect intersect(const PixelRect& a, const PixelRect& b) {
  const std::int64_t x0 = std::max(a.x, b.x), y0 = std::max(a.y, b.y);
  const std::int64_t x1 = std::min(a.x + a.w, b.x + b.w), y1 = std::min(a.y + a.h, b.y + b.h);
  return {x0, y0, x1 - x0, y1 - y0};
}

PixelRect boundsOf(CairoBitmap& bitmap) {
  return {0, 0, bitmap.getWidth(), bitmap.getHeight()};
}

// The whole pixels a float rectangle touches, within the bitmap.
PixelRect coveringRect(CairoBitmap& bitmap, double x, double y, double w, double h) {
  const auto x0 = static_cast<std::int64_t>(std::floor(std::max(x, -1.0)));
  const auto y0 = static_cast<std::int64_t>(std::floor(std::max(y, -1.0)));
  const double limit = 2.0 * kMaxBitmapSide;
  const auto x1 = static_cast<std::int64_t>(std::ceil(std::min(x + w, limit)));
  const auto y1 = static_cast<std::int64_t>(std::ceil(std::min(y + h, limit)));
  return intersect({x0, y0, x1 - x0, y1 - y0}, boundsOf(bitmap));
}

struct TransformedBlit {
  double dstX, dstY, dstW, dstH;
  double srcX, srcY, srcW, srcH;
  double angleRad;
  double pivotX, pivotY;  // offset of the turning point from the destination's centre
  bool clipToSource;
  double alpha;
  int mode;
};

// Maps the source rectangle onto the destination rectangle, turned clockwise on the screen about
// the destination's centre plus the pivot offset. Samples at the source's edge repeat the edge
// pixels instead of fading to transparent; the turned rectangle's own edge is anti-aliased.
void drawTransformed(CairoBitmap& dest, CairoBitmap& src, const TransformedBlit& blit) {
  const bool isolate = blit.clipToSource || &dest == &src;
  const PixelRect region =
      isolate ? coveringRect(src, blit.srcX, blit.srcY, blit.srcW, blit.srcH) : boundsOf(src);
  if (region.empty()) return;
  const SurfaceRef isolated(isolate ? copyRegion(src, region) : nullptr);
  if (isolate && !isolated.valid()) return;
  cairo_surface_t* source = isolate ? isolated.get() : src.surface();

  const DrawScope scope(dest);
  cairo_t* cr = scope.cr();
  const double pivotX = blit.dstX + blit.dstW / 2 + blit.pivotX;
  const double pivotY = blit.dstY + blit.dstH / 2 + blit.pivotY;
  cairo_translate(cr, pivotX, pivotY);
  cairo_rotate(cr, blit.angleRad);  // y grows downwards, so positive turns clockwise
  cairo_translate(cr, -pivotX, -pivotY);
  cairo_rectangle(cr, blit.dstX, blit.dstY, blit.dstW, blit.dstH);
  cairo_clip(cr);
  cairo_translate(cr, blit.dstX, blit.dstY);
  cairo_scale(cr, blit.dstW / blit.srcW, blit.dstH / blit.srcH);
  cairo_translate(cr, -blit.srcX, -blit.srcY);
  cairo_set_source_surface(cr, source, static_cast<double>(isolate ? region.x : 0),
                           static_cast<double>(isolate ? region.y : 0));
  cairo_pattern_set_filter(cairo_get_source(cr), blitFilter(blit.mode));
  cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
  cairo_set_operator(cr, blitOperator(blit.mode));
  cairo_paint_with_alpha(cr, blit.alpha);
}

bool validTransformedBlit(const TransformedBlit& blit) {
  const double values[] = {blit.srcX,     blit.srcY,   blit.srcW,  blit.srcH,
                           blit.angleRad, blit.pivotX, blit.pivotY};
  if (!std::all_of(std::begin(values), std::end(values), [](double v) { return std::isfinite(v); }))
    return false;
  return blit.dstW > 0 && blit.dstH > 0 && blit.srcW > 0 && blit.srcH > 0 && blit.alpha > 0;
}

}  // namespace

void DAUB_Blit(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty, int srcx, int srcy, int w,
               int h, float alpha, int mode) {
  CairoBitmap* to = asCairoBitmap(dest);
  CairoBitmap* from = asCairoBitmap(src);
  if (to == nullptr || from == nullptr || w <= 0 || h <= 0) return;
  // Cut to the source first, then to the destination, keeping both corners in step.
  const PixelRect fromSource = intersect({srcx, srcy, w, h}, boundsOf(*from));
  const std::int64_t shiftX = std::int64_t{dstx} - srcx, shiftY = std::int64_t{dsty} - srcy;
  const PixelRect target = intersect(
      {fromSource.x + shiftX, fromSource.y + shiftY, fromSource.w, fromSource.h}, boundsOf(*to));
  if (fromSource.empty() || target.empty()) return;
  const PixelRect read{target.x - shiftX, target.y - shiftY, target.w, target.h};
  const SurfaceRef overlapCopy(to == from ? copyRegion(*from, read) : nullptr);
  if (to == from && !overlapCopy.valid()) return;

  const DrawScope scope(*to);
  cairo_t* cr = scope.cr();
  if (to == from) {
    cairo_set_source_surface(cr, overlapCopy.get(), static_cast<double>(target.x),
                             static_cast<double>(target.y));
  } else {
    cairo_set_source_surface(cr, from->surface(), static_cast<double>(shiftX),
                             static_cast<double>(shiftY));
  }
  cairo_rectangle(cr, static_cast<double>(target.x), static_cast<double>(target.y),
                  static_cast<double>(target.w), static_cast<double>(target.h));
  cairo_clip(cr);
  cairo_set_operator(cr, blitOperator(mode));
  cairo_paint_with_alpha(cr, clampedAlpha(alpha));
}

void DAUB_RotatedBlit(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty, int dstw, int dsth,
                      float srcx, float srcy, float srcw, float srch, float angle,
                      bool clipToSource, float alpha, int mode, float rotCenterX,
                      float rotCenterY) {
  CairoBitmap* to = asCairoBitmap(dest);
  CairoBitmap* from = asCairoBitmap(src);
  const TransformedBlit blit{static_cast<double>(dstx),
                             static_cast<double>(dsty),
                             static_cast<double>(dstw),
                             static_cast<double>(dsth),
                             srcx,
                             srcy,
                             srcw,
                             srch,
                             angle,
                             rotCenterX,
                             rotCenterY,
                             clipToSource,
                             clampedAlpha(alpha),
                             mode};
  if (to == nullptr || from == nullptr || !validTransformedBlit(blit)) return;
  drawTransformed(*to, *from, blit);
}

void DAUB_ScaledBlit(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty, int dstw, int dsth,
                     float srcx, float srcy, float srcw, float srch, float alpha, int mode) {
  CairoBitmap* to = asCairoBitmap(dest);
  CairoBitmap* from = asCairoBitmap(src);
  const TransformedBlit blit{static_cast<double>(dstx),
                             static_cast<double>(dsty),
                             static_cast<double>(dstw),
                             static_cast<double>(dsth),
                             srcx,
                             srcy,
                             srcw,
                             srch,
                             0.0,
                             0.0,
                             0.0,
                             true,
                             clampedAlpha(alpha),
                             mode};
  if (to == nullptr || from == nullptr || !validTransformedBlit(blit)) return;
  drawTransformed(*to, *from, blit);
}

void DAUB_Copy(DAUB_IBitmap* dest, DAUB_IBitmap* src) {
  CairoBitmap* to = asCairoBitmap(dest);
  CairoBitmap* from = asCairoBitmap(src);
  if (to == nullptr || from == nullptr || to == from) return;
  if (!to->resize(from->getWidth(), from->getHeight())) return;
  const DrawScope scope(*to);
  cairo_set_source_surface(scope.cr(), from->surface(), 0, 0);
  cairo_set_operator(scope.cr(), CAIRO_OPERATOR_SOURCE);
  cairo_paint(scope.cr());
}

void DAUB_DrawGlyph(DAUB_IBitmap* bm, int x, int y, DAUB_pixel color, const unsigned char* alphas,
                    int glyphW, int glyphH, float alpha, int mode) {
  CairoBitmap* bitmap = asCairoBitmap(bm);
  if (bitmap == nullptr || alphas == nullptr || glyphW <= 0 || glyphH <= 0 ||
      glyphW > kMaxBitmapSide || glyphH > kMaxBitmapSide) {
    return;
  }
  const SurfaceRef mask(cairo_image_surface_create(CAIRO_FORMAT_A8, glyphW, glyphH));
  if (!mask.valid()) return;
  unsigned char* rows = cairo_image_surface_get_data(mask.get());
  const int stride = cairo_image_surface_get_stride(mask.get());
  for (int row = 0; row < glyphH; ++row) {
    std::memcpy(rows + static_cast<std::ptrdiff_t>(row) * stride,
                alphas + static_cast<std::ptrdiff_t>(row) * glyphW,
                static_cast<std::size_t>(glyphW));
  }
  cairo_surface_mark_dirty(mask.get());
  const DrawScope scope(*bitmap);
  setPaint(scope.cr(), color, alpha, mode);
  cairo_mask_surface(scope.cr(), mask.get(), x, y);
}

}  // namespace graphics
