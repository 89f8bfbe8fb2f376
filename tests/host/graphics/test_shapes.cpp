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

TEST(Circles, DiscsSpanTwoRadiiPlusOneOutlinesAndArcsRunClockwiseFromUp) {
  BitmapPtr disc = newBitmap(21, 21), ring = newBitmap(21, 21), arc = newBitmap(21, 21);
  DAUB_FillCircle(disc.get(), 10, 10, 4, kWhite, 1.0f, 0, true);
  DAUB_Circle(ring.get(), 10.0f, 10.0f, 5.0f, kWhite, 1.0f, 0, false);
  DAUB_Arc(arc.get(), 10.0f, 10.0f, 8.0f, 0.0f, static_cast<float>(M_PI / 2), kWhite, 1.0f, 0,
           true);
  for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
    EXPECT_GT(level(disc.get(), 10 + 4 * dx, 10 + 4 * dy), 0xE0) << dx << "," << dy;
    EXPECT_LT(level(disc.get(), 10 + 5 * dx, 10 + 5 * dy), 0x20) << dx << "," << dy;
    EXPECT_GT(level(ring.get(), 10 + 5 * dx, 10 + 5 * dy), 0xC0) << dx << "," << dy;
  }
  EXPECT_EQ(level(ring.get(), 10, 10), 0);
  EXPECT_EQ((std::array{level(arc.get(), 11, 2) > 0xA0, level(arc.get(), 9, 2) > 0x20,
                        level(arc.get(), 18, 9) > 0xA0, level(arc.get(), 18, 11) > 0x20}),
            (std::array{true, false, true, false}));
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

TEST(FilledShapes, CoverTheirVerticesAndEdgesRowByRow) {
  BitmapPtr triangle = newBitmap(14, 14), trapezoid = newBitmap(12, 8), square = newBitmap(8, 8);
  DAUB_FillTriangle(triangle.get(), 2, 2, 10, 2, 2, 10, kWhite, 1.0f, 0);
  EXPECT_EQ(inkBox(triangle.get()).count, 9 * 10 / 2);
  EXPECT_EQ(std::pair(level(triangle.get(), 6, 6), level(triangle.get(), 7, 6)), std::pair(255, 0));
  DAUB_FillTrapezoid(trapezoid.get(), 2, 8, 1, 0, 10, 5, kWhite, 1.0f, 0);
  // Rows 1..5: 2..8 (twice), 1..9 (twice), 0..10.
  EXPECT_EQ(inkBox(trapezoid.get()).edgesAndCount(), (std::array{0, 1, 10, 5, 7 + 7 + 9 + 9 + 11}));
  const int xs[] = {1, 5, 5, 1}, ys[] = {1, 1, 5, 5};
  DAUB_FillConvexPolygon(square.get(), xs, ys, 4, kWhite, 0.5f, 0);
  EXPECT_EQ(inkBox(square.get()).count, 25);
  EXPECT_NEAR(level(square.get(), 5, 5), 0x80, 1);
}
