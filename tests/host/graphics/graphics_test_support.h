// Bitmaps and pixel probes shared by the graphics tests.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "host/graphics/drawing.h"
#include "host/graphics/font.h"

using BitmapPtr = std::unique_ptr<DAUB_IBitmap>;

inline BitmapPtr newBitmap(int width, int height, DAUB_pixel fill = 0xFF000000) {
  BitmapPtr bitmap(graphics::DAUB_CreateBitmap(DAUB_BITMAP_MEMORY, width, height));
  graphics::DAUB_Clear(bitmap.get(), fill);
  return bitmap;
}

// The channels of a pixel.
inline constexpr auto red = [](DAUB_pixel p) { return static_cast<int>((p >> 16) & 0xFF); };
inline constexpr auto green = [](DAUB_pixel p) { return static_cast<int>((p >> 8) & 0xFF); };
inline constexpr auto blue = [](DAUB_pixel p) { return static_cast<int>(p & 0xFF); };
inline constexpr auto alphaOf = [](DAUB_pixel p) { return static_cast<int>(p >> 24); };

// The box of pixels that differ from the background, and how many do.
struct InkBox {
  int left = 1 << 30, top = 1 << 30, right = -1, bottom = -1, count = 0;
  bool empty() const { return count == 0; }
  double centreX() const { return (left + right) / 2.0; }
  double centreY() const { return (top + bottom) / 2.0; }
  std::array<int, 5> edgesAndCount() const { return {left, top, right, bottom, count}; }
};

inline InkBox inkBox(DAUB_IBitmap* bitmap, DAUB_pixel background = 0xFF000000) {
  InkBox box;
  for (int y = 0; y < bitmap->getHeight(); ++y) {
    for (int x = 0; x < bitmap->getWidth(); ++x) {
      if (graphics::DAUB_GetPixel(bitmap, x, y) == background) continue;
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
             std::max(box.bottom, y), box.count + 1};
    }
  }
  return box;
}

// The 10 x 6 alpha map the plug-in draws its speaker icons with.
inline constexpr unsigned char kSpeakerGlyph[6 * 10] = {
    0,   0,   0,   255, 255, 255, 255, 0,   0,   0,  //
    0,   0,   0,   255, 255, 255, 255, 0,   0,   0,  //
    0,   0,   0,   255, 255, 255, 255, 0,   0,   0,  //
    0,   0,   192, 255, 255, 255, 255, 192, 0,   0,  //
    0,   192, 255, 255, 255, 255, 255, 255, 192, 0,  //
    255, 255, 255, 255, 255, 255, 255, 255, 255, 255};

inline HFONT newHandle(int height, int weight = 400) {
  LOGFONT font{};
  font.lfHeight = height;
  font.lfWeight = weight;
  std::strcpy(font.lfFaceName, "Arial");
  return graphics::CreateFontIndirect(&font);
}

// A font owning a fresh handle of the given height, drawing white.
inline std::unique_ptr<graphics::CairoFont> newFont(int height, int weight = 400) {
  auto font = std::make_unique<graphics::CairoFont>();
  font->AttachHostFont(newHandle(height, weight), DAUB_FONT_FLAG_OWNS_HANDLE);
  font->SetTextColor(0xFFFFFFFF);
  return font;
}
