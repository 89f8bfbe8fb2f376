// Blits (plain and rotated) and glyph drawing.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <tuple>

#include "host/graphics/bitmap.h"
#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

namespace {

// The largest channel difference between `turned` and `icon` turned clockwise by `quarterTurns`
// (both square), compared as stored (premultiplied).
int largestDeviation(DAUB_IBitmap* turned, DAUB_IBitmap* icon, int quarterTurns) {
  const int last = icon->getWidth() - 1;
  int largest = 0;
  for (int y = 0; y <= last; ++y) {
    for (int x = 0; x <= last; ++x) {
      int sx = x, sy = y;
      for (int t = 0; t < quarterTurns; ++t) std::tie(sx, sy) = std::pair{sy, last - sx};
      const DAUB_pixel a = premultiply(DAUB_GetPixel(turned, x, y));
      const DAUB_pixel e = premultiply(DAUB_GetPixel(icon, sx, sy));
      for (int shift = 0; shift < 32; shift += 8) {
        largest = std::max(largest, std::abs(static_cast<int>((a >> shift) & 0xFF) -
                                             static_cast<int>((e >> shift) & 0xFF)));
      }
    }
  }
  return largest;
}

}  // namespace

TEST(Blit, CopiesTheRegionToItsPlaceClippedAtTheEdges) {
  BitmapPtr source = newBitmap(4, 4, 0xFF112233);
  DAUB_PutPixel(source.get(), 1, 1, 0xFFFF0000, 1.0f, 0);
  BitmapPtr dest = newBitmap(6, 6), clipped = newBitmap(6, 6);
  DAUB_Blit(dest.get(), source.get(), 3, 2, 1, 1, 3, 3, 1.0f, 0);
  EXPECT_EQ(DAUB_GetPixel(dest.get(), 3, 2), 0xFFFF0000u);
  EXPECT_EQ(DAUB_GetPixel(dest.get(), 5, 4), 0xFF112233u);
  EXPECT_EQ(inkBox(dest.get()).edgesAndCount(), (std::array{3, 2, 5, 4, 9}));
  DAUB_Blit(clipped.get(), source.get(), -1, 4, 0, 0, 4, 4, 1.0f, 0);
  EXPECT_EQ(inkBox(clipped.get()).edgesAndCount(), (std::array{0, 4, 2, 5, 3 * 2}));
  EXPECT_EQ(DAUB_GetPixel(clipped.get(), 0, 5), 0xFFFF0000u);
}

TEST(Blit, ModesTreatTheSourceAlphaAsAsked) {
  struct Case {
    int mode;
    float alpha;
    DAUB_pixel expected;  // half-transparent red over opaque blue
  };
  for (const Case& c :
       {Case{DAUB_BLIT_MODE_COPY, 1.0f, 0x80FF0000}, Case{DAUB_BLIT_USE_ALPHA, 1.0f, 0xFF80007F},
        Case{DAUB_BLIT_USE_ALPHA, 0.5f, 0xFF4000BF}, Case{DAUB_BLIT_MODE_ADD, 1.0f, 0xFF8000FF}}) {
    BitmapPtr source = newBitmap(2, 2, 0x80FF0000), dest = newBitmap(2, 2, 0xFF0000FF);
    DAUB_Blit(dest.get(), source.get(), 0, 0, 0, 0, 2, 2, c.alpha, c.mode);
    const DAUB_pixel p = DAUB_GetPixel(dest.get(), 1, 1);
    EXPECT_NEAR(alphaOf(p), alphaOf(c.expected), 1) << c.mode;
    EXPECT_NEAR(red(p), red(c.expected), 2) << c.mode;
    EXPECT_NEAR(blue(p), blue(c.expected), 2) << c.mode;
  }
}

TEST(Blit, OverlappingSelfBlitReadsTheOriginal) {
  BitmapPtr bitmap = newBitmap(5, 1);
  for (int x = 0; x < 5; ++x) DAUB_PutPixel(bitmap.get(), x, 0, 0xFF000000 | (x * 40), 1.0f, 0);
  DAUB_Blit(bitmap.get(), bitmap.get(), 1, 0, 0, 0, 4, 1, 1.0f, 0);
  for (int x = 1; x < 5; ++x) EXPECT_EQ(blue(DAUB_GetPixel(bitmap.get(), x, 0)), (x - 1) * 40);
}

TEST(RotatedBlit, TurnsTheIconClockwiseOnTheScreen) {
  BitmapPtr icon = newSpeakerIcon();
  struct Case {
    int quarterTurns, markX, markY;  // where the top-left mark lands
  };
  for (const Case& c : {Case{0, 1, 1}, Case{1, 14, 1}, Case{2, 14, 14}}) {
    BitmapPtr turned = newBitmap(16, 16, 0x00000000);
    DAUB_RotatedBlit(turned.get(), icon.get(), 0, 0, 16, 16, 0.0f, 0.0f, 16.0f, 16.0f,
                     static_cast<float>(c.quarterTurns * M_PI / 2), false, 1.0f, 0x10100, 0.0f,
                     0.0f);
    EXPECT_LE(largestDeviation(turned.get(), icon.get(), c.quarterTurns), 2) << c.quarterTurns;
    EXPECT_EQ(DAUB_GetPixel(turned.get(), c.markX, c.markY), 0xFFFF0000u) << c.quarterTurns;
  }
}

TEST(RotatedBlit, BlendsBySourceAlphaAndTurnsAboutTheOffsetCentre) {
  BitmapPtr icon = newSpeakerIcon();
  BitmapPtr dest = newBitmap(32, 32, 0xFF202020);
  DAUB_RotatedBlit(dest.get(), icon.get(), 8, 8, 16, 16, 0.0f, 0.0f, 16.0f, 16.0f,
                   static_cast<float>(M_PI / 4), false, 1.0f, 0x10100, 0.0f, 0.0f);
  EXPECT_EQ(DAUB_GetPixel(dest.get(), 16, 16), 0xFFFFFF00u) << "glyph body stays solid";
  EXPECT_EQ(DAUB_GetPixel(dest.get(), 9, 16), 0xFF202020u) << "transparent parts let through";
  BitmapPtr block = newBitmap(2, 2, 0xFFFFFFFF), moved = newBitmap(20, 20);
  // Centre (5, 5) offset by (4, 0): a half turn about (9, 5) moves the block from 4..5 to 12..13.
  DAUB_RotatedBlit(moved.get(), block.get(), 4, 4, 2, 2, 0.0f, 0.0f, 2.0f, 2.0f,
                   static_cast<float>(M_PI), true, 1.0f, 0, 4.0f, 0.0f);
  EXPECT_EQ(inkBox(moved.get()).edgesAndCount(), (std::array{12, 4, 13, 5, 4}));
}

TEST(Glyph, AlphaMapBlendsTheColourPixelByPixel) {
  BitmapPtr icon = newBitmap(16, 16, 0x00000000);
  DAUB_DrawGlyph(icon.get(), 3, 5, 0xFFFFFF00, kSpeakerGlyph, 10, 6, 1.0f, 0);
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 16; ++x) {
      const bool inGlyph = x >= 3 && x < 13 && y >= 5 && y < 11;
      const DAUB_pixel a = inGlyph ? kSpeakerGlyph[(y - 5) * 10 + (x - 3)] : 0;
      EXPECT_EQ(DAUB_GetPixel(icon.get(), x, y), a == 0 ? 0u : (a << 24) | 0xFFFF00u)
          << x << "," << y;
    }
  }
  BitmapPtr clipped = newBitmap(6, 4);
  DAUB_DrawGlyph(clipped.get(), -3, -5, 0xFFFFFFFF, kSpeakerGlyph, 10, 6, 0.5f, 0);
  EXPECT_NEAR(red(DAUB_GetPixel(clipped.get(), 0, 0)), 0x80, 1);  // glyph (3, 5) at half alpha
  EXPECT_EQ(inkBox(clipped.get()).count, 6);
}
