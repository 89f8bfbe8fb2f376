// Host bitmaps: ARGB rasters on Cairo image surfaces. Pixels are stored premultiplied (Cairo's
// ARGB32); the drawing interface speaks non-premultiplied 0xAARRGGBB and converts at the edges.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>

#include "platform/daub.h"

namespace graphics {

// Cairo's image surfaces cannot be larger than this on either side.
constexpr int kMaxBitmapSide = 32767;

struct BitmapDC;

class CairoBitmap final : public DAUB_IBitmap {
 public:
  // Null when the size is out of range or memory cannot be had.
  static std::unique_ptr<CairoBitmap> create(int kind, int width, int height);
  ~CairoBitmap() override;
  CairoBitmap(const CairoBitmap&) = delete;
  CairoBitmap& operator=(const CairoBitmap&) = delete;

  int getWidth() override { return width_; }
  int getHeight() override { return height_; }
  // Keeps the overlapping top-left content; new area is transparent. False leaves it unchanged.
  bool resize(int width, int height) override;
  // Null for plain memory rasters (kind 0).
  HDC getDC() override;
  std::intptr_t Extended(int code, void* data) override;

  cairo_surface_t* surface() { return surface_; }
  // A context kept for the bitmap's lifetime; callers bracket their work with save/restore.
  cairo_t* context() { return context_; }
  void renewContext();

  // Direct pixel access (premultiplied ARGB32). Pending Cairo drawing is flushed first; call
  // markDirty() after writing so Cairo drops anything it cached.
  std::uint32_t* row(int y);
  void markDirty() { cairo_surface_mark_dirty(surface_); }

  int advisoryScale256() const { return advisoryScale256_; }

 private:
  CairoBitmap(cairo_surface_t* surface, bool withDC);

  cairo_surface_t* surface_ = nullptr;
  cairo_t* context_ = nullptr;
  int width_ = 0;
  int height_ = 0;
  int advisoryScale256_ = 0;  // 0 = none set
  std::unique_ptr<BitmapDC> dc_;
};

// The library's bitmap behind an interface pointer; null for null or foreign objects, so every
// drawing function can refuse them quietly.
CairoBitmap* asCairoBitmap(DAUB_IBitmap* bitmap);

// [any thread] The bitmap whose drawing context this is, or null when `dc` is not one of ours
// (for instance a window's context of the window layer). The window layer's BitBlt starts here.
CairoBitmap* bitmapFromDC(HDC dc);

// Colour conversions at the interface's edge.
std::uint32_t premultiply(std::uint32_t argb);
std::uint32_t unpremultiply(std::uint32_t premultipliedArgb);

}  // namespace graphics
