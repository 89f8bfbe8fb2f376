// Blits (plain and rotated) and glyph drawing; the direction of turns is pinned by the reference
// images.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

TEST(Blit, CopiesTheRegionClippedAndOverlappingSelfBlitsReadTheOriginal) {
  BitmapPtr source = newBitmap(4, 4, 0xFF112233);
  DAUB_PutPixel(source.get(), 1, 1, 0xFFFF0000, 1.0f, 0);
  BitmapPtr dest = newBitmap(6, 6), clipped = newBitmap(6, 6), row = newBitmap(5, 1);
  DAUB_Blit(dest.get(), source.get(), 3, 2, 1, 1, 3, 3, 1.0f, 0);
  EXPECT_EQ(DAUB_GetPixel(dest.get(), 3, 2), 0xFFFF0000u);
  EXPECT_EQ(inkBox(dest.get()).edgesAndCount(), (std::array{3, 2, 5, 4, 9}));
  DAUB_Blit(clipped.get(), source.get(), -1, 4, 0, 0, 4, 4, 1.0f, 0);
  EXPECT_EQ(inkBox(clipped.get()).edgesAndCount(), (std::array{0, 4, 2, 5, 3 * 2}));
  for (int x = 0; x < 5; ++x) DAUB_PutPixel(row.get(), x, 0, 0xFF000000 | (x * 40), 1.0f, 0);
  DAUB_Blit(row.get(), row.get(), 1, 0, 0, 0, 4, 1, 1.0f, 0);
  for (int x = 1; x < 5; ++x) EXPECT_EQ(blue(DAUB_GetPixel(row.get(), x, 0)), (x - 1) * 40);
}

TEST(Blit, ModesTreatTheSourceAlphaAsAsked) {
  // Half-transparent red over opaque blue.
  for (const auto& [mode, alpha, expected] : {std::tuple{DAUB_BLIT_MODE_COPY, 1.0f, 0x80FF0000u},
                                              {DAUB_BLIT_USE_ALPHA, 0.5f, 0xFF4000BFu},
                                              {DAUB_BLIT_MODE_ADD, 1.0f, 0xFF8000FFu}}) {
    BitmapPtr source = newBitmap(2, 2, 0x80FF0000), dest = newBitmap(2, 2, 0xFF0000FF);
    DAUB_Blit(dest.get(), source.get(), 0, 0, 0, 0, 2, 2, alpha, mode);
    const DAUB_pixel p = DAUB_GetPixel(dest.get(), 1, 1);
    EXPECT_NEAR(alphaOf(p), alphaOf(expected), 1) << mode;
    EXPECT_NEAR(red(p), red(expected), 2) << mode;
    EXPECT_NEAR(blue(p), blue(expected), 2) << mode;
  }
}

TEST(RotatedBlit, BlendsBySourceAlphaAndTurnsAboutTheOffsetCentre) {
  BitmapPtr icon = newBitmap(16, 16, 0x00000000), dest = newBitmap(32, 32, 0xFF202020);
  DAUB_DrawGlyph(icon.get(), 3, 5, 0xFFFFFF00, kSpeakerGlyph, 10, 6, 1.0f, 0);
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

TEST(Glyph, AlphaMapBlendsTheColourPixelByPixelAndIsClipped) {
  BitmapPtr icon = newBitmap(16, 16, 0x00000000), clipped = newBitmap(6, 4);
  DAUB_DrawGlyph(icon.get(), 3, 5, 0xFFFFFF00, kSpeakerGlyph, 10, 6, 1.0f, 0);
  EXPECT_EQ(inkBox(icon.get(), 0).edgesAndCount(), (std::array{3, 5, 12, 10, 36}));
  EXPECT_EQ(DAUB_GetPixel(icon.get(), 5, 8), 0xC0FFFF00u) << "partial alpha kept unpremultiplied";
  DAUB_DrawGlyph(clipped.get(), -3, -5, 0xFFFFFFFF, kSpeakerGlyph, 10, 6, 0.5f, 0);
  EXPECT_NEAR(red(DAUB_GetPixel(clipped.get(), 0, 0)), 0x80, 1);  // glyph (3, 5) at half alpha
  EXPECT_EQ(inkBox(clipped.get()).count, 6);
}
