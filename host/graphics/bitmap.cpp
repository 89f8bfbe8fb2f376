#include "host/graphics/bitmap.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <unordered_set>

namespace graphics {

// The opaque object behind a bitmap's HDC. Live ones are registered so that a context of another
// origin is recognised as not ours instead of being read as one.
struct BitmapDC {
  CairoBitmap* owner;
};

namespace {

std::mutex& dcRegistryMutex() {
  static std::mutex mutex;
  return mutex;
}

std::unordered_set<const BitmapDC*>& dcRegistry() {
  static std::unordered_set<const BitmapDC*> registry;
  return registry;
}

void registerDC(const BitmapDC* dc) {
  std::lock_guard lock(dcRegistryMutex());
  dcRegistry().insert(dc);
}

void unregisterDC(const BitmapDC* dc) {
  std::lock_guard lock(dcRegistryMutex());
  dcRegistry().erase(dc);
}

bool validSize(int width, int height) {
  return width >= 0 && height >= 0 && width <= kMaxBitmapSide && height <= kMaxBitmapSide;
}

// A cleared ARGB32 surface, or null.
cairo_surface_t* newSurface(int width, int height) {
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
    cairo_surface_destroy(surface);
    return nullptr;
  }
  return surface;
}

std::uint32_t channel(std::uint32_t argb, int shift) {
  return (argb >> shift) & 0xFFu;
}

// Rounded c * a / 255, as Cairo and pixman compute it.
std::uint32_t multiplyUnit(std::uint32_t c, std::uint32_t a) {
  const std::uint32_t t = c * a + 0x80u;
  return ((t >> 8) + t) >> 8;
}

}  // namespace

std::unique_ptr<CairoBitmap> CairoBitmap::create(int kind, int width, int height) {
  if (!validSize(width, height)) return nullptr;
  cairo_surface_t* surface = newSurface(width, height);
  if (surface == nullptr) return nullptr;
  std::unique_ptr<CairoBitmap> bitmap(new (std::nothrow)
                                          CairoBitmap(surface, kind == DAUB_BITMAP_WITH_DC));
  if (bitmap == nullptr) cairo_surface_destroy(surface);
  return bitmap;
}

CairoBitmap::CairoBitmap(cairo_surface_t* surface, bool withDC)
    : surface_(surface),
      context_(cairo_create(surface)),
      width_(cairo_image_surface_get_width(surface)),
      height_(cairo_image_surface_get_height(surface)) {
  if (withDC) {
    dc_ = std::make_unique<BitmapDC>(BitmapDC{this});
    registerDC(dc_.get());
  }
}

CairoBitmap::~CairoBitmap() {
  if (dc_ != nullptr) unregisterDC(dc_.get());
  cairo_destroy(context_);
  cairo_surface_destroy(surface_);
}

bool CairoBitmap::resize(int width, int height) {
  if (!validSize(width, height)) return false;
  if (width == width_ && height == height_) return true;
  cairo_surface_t* resized = newSurface(width, height);
  if (resized == nullptr) return false;
  cairo_t* context = cairo_create(resized);
  cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(context, surface_, 0, 0);
  cairo_paint(context);
  cairo_destroy(context_);
  cairo_surface_destroy(surface_);
  surface_ = resized;
  context_ = context;
  width_ = width;
  height_ = height;
  return true;
}

void CairoBitmap::renewContext() {
  cairo_destroy(context_);
  context_ = cairo_create(surface_);
}

HDC CairoBitmap::getDC() {
  return reinterpret_cast<HDC>(dc_.get());
}

std::intptr_t CairoBitmap::Extended(int code, void* data) {
  switch (code) {
    case DAUB_EXT_SET_ADVISORY_SCALE:
      if (data == nullptr) return 0;
      advisoryScale256_ = *static_cast<const int*>(data) > 0 ? *static_cast<const int*>(data) : 0;
      return 1;
    case DAUB_EXT_GET_ADVISORY_SCALE:
    case DAUB_EXT_GET_EFFECTIVE_SCALE:  // text follows the advisory scale; none means unscaled
      return advisoryScale256_;
    default:
      return 0;
  }
}

std::uint32_t* CairoBitmap::row(int y) {
  cairo_surface_flush(surface_);
  unsigned char* data = cairo_image_surface_get_data(surface_);
  const int stride = cairo_image_surface_get_stride(surface_);
  return reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
}

CairoBitmap* asCairoBitmap(DAUB_IBitmap* bitmap) {
  return dynamic_cast<CairoBitmap*>(bitmap);
}

CairoBitmap* bitmapFromDC(HDC dc) {
  const auto* candidate = reinterpret_cast<const BitmapDC*>(dc);
  std::lock_guard lock(dcRegistryMutex());
  return dcRegistry().contains(candidate) ? candidate->owner : nullptr;
}

std::uint32_t premultiply(std::uint32_t argb) {
  const std::uint32_t a = channel(argb, 24);
  return (a << 24) | (multiplyUnit(channel(argb, 16), a) << 16) |
         (multiplyUnit(channel(argb, 8), a) << 8) | multiplyUnit(channel(argb, 0), a);
}

std::uint32_t unpremultiply(std::uint32_t premultipliedArgb) {
  const std::uint32_t a = channel(premultipliedArgb, 24);
  if (a == 0) return 0;
  auto divide = [a](std::uint32_t c) {
    return std::min<std::uint32_t>(255, (c * 255 + a / 2) / a);
  };
  return (a << 24) | (divide(channel(premultipliedArgb, 16)) << 16) |
         (divide(channel(premultipliedArgb, 8)) << 8) | divide(channel(premultipliedArgb, 0));
}

}  // namespace graphics
