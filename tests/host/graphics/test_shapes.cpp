// One pixel test per drawing family; anti-aliased slopes and rectangles are pinned by the
// reference images.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "host/graphics/png_io.h"
#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

namespace {

constexpr DAUB_pixel kWhite = 0xFFFFFFFF;

int level(DAUB_IBitmap* bitmap, int x, int y) {
  return red(DAUB_GetPixel(bitmap, x, y));
}

}  // namespace

TEST(Lines, CrispLinesCoverBothEndsInEitherDirectionAndFarEndsAreCut) {
  for (const auto& [x1, y1, x2, y2, pixels] :
       {std::array{2, 3, 9, 3, 8}, {1, 1, 6, 6, 6}, {12, 2, 3, 10, 10}, {5, 5, 5, 5, 1}}) {
    BitmapPtr forward = newBitmap(16, 16), backward = newBitmap(16, 16);
    DAUB_LineInt(forward.get(), x1, y1, x2, y2, kWhite, 1.0f, 0, false);
    DAUB_LineInt(backward.get(), x2, y2, x1, y1, kWhite, 1.0f, 0, false);
    EXPECT_EQ(inkBox(forward.get()).count, pixels) << x1 << "," << y1;
    EXPECT_EQ(DAUB_GetPixel(forward.get(), x1, y1) & DAUB_GetPixel(forward.get(), x2, y2), kWhite);
    EXPECT_TRUE(compareBitmaps(forward.get(), backward.get(), 0).matches());
  }
  BitmapPtr bitmap = newBitmap(8, 8);
  DAUB_LineInt(bitmap.get(), -1000000000, 4, 1000000000, 4, kWhite, 1.0f, 0, false);
  DAUB_LineInt(bitmap.get(), INT_MIN / 2, INT_MIN / 2, INT_MAX / 2, INT_MAX / 2, kWhite, 1, 0,
               true);
  DAUB_Line(bitmap.get(), NAN, 0, 5, 5, kWhite, 1.0f, 0, true);
  DAUB_FillRect(bitmap.get(), -5, INT_MAX - 2, 100, 100, kWhite, 1.0f, 0);  // all outside
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 4) & DAUB_GetPixel(bitmap.get(), 7, 4), kWhite);
  EXPECT_GT(level(bitmap.get(), 2, 2), 0x80);
}

TEST(Blending, CopyMixesByColourAlphaTimesArgumentAddSaturates) {
  // A partial add is pinned by the space scene's reference image.
  for (const auto& [background, colour, alpha, mode, expected] :
       {std::tuple{0xFF000000u, 0x80FFFFFFu, 0.5f, DAUB_BLIT_MODE_COPY, 0xFF404040u},
        {0xFF000000u, kWhite, 7.0f, DAUB_BLIT_MODE_COPY, 0xFFFFFFFFu},
        {0xFF202020u, 0xFFF0E0E0u, 1.0f, DAUB_BLIT_MODE_ADD, 0xFFFFFFFFu}}) {
    BitmapPtr bitmap = newBitmap(4, 4, background);
    DAUB_FillRect(bitmap.get(), 0, 0, 4, 4, colour, alpha, mode);
    const DAUB_pixel p = DAUB_GetPixel(bitmap.get(), 2, 2);
    EXPECT_EQ(alphaOf(p), 0xFF);
    for (int shift : {0, 8, 16})
      EXPECT_NEAR((p >> shift) & 0xFF, (expected >> shift) & 0xFF, 1) << std::hex << colour;
  }
}
