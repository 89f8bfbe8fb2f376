// Clear, lines, rectangles, circles, arcs and filled shapes: pixels checked at computed places.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <set>
#include <utility>

#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

namespace {

constexpr DAUB_pixel kWhite = 0xFFFFFFFF;

std::set<std::pair<int, int>> inkedPixels(DAUB_IBitmap* bitmap) {
  std::set<std::pair<int, int>> pixels;
  for (int y = 0; y < bitmap->getHeight(); ++y) {
    for (int x = 0; x < bitmap->getWidth(); ++x) {
      if (DAUB_GetPixel(bitmap, x, y) != 0xFF000000) pixels.insert({x, y});
    }
  }
  return pixels;
}

int level(DAUB_IBitmap* bitmap, int x, int y) {
  return red(DAUB_GetPixel(bitmap, x, y));
}

}  // namespace

TEST(Clear, SetsEveryPixelWithoutBlending) {
  BitmapPtr bitmap = newBitmap(5, 4, kWhite);
  DAUB_Clear(bitmap.get(), 0x80FF0000);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 0), 0x80FF0000u);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 4, 3), 0x80FF0000u);
}

TEST(CrispLines, CoverBothEndsWithOnePixelPerStepInEitherDirection) {
  struct Case {
    int x1, y1, x2, y2, pixels;
  };
  for (const Case& c : {Case{2, 3, 9, 3, 8}, Case{4, 9, 4, 1, 9}, Case{1, 1, 6, 6, 6},
                        Case{0, 0, 10, 3, 11}, Case{12, 2, 3, 10, 10}, Case{5, 5, 5, 5, 1}}) {
    BitmapPtr forward = newBitmap(16, 16), backward = newBitmap(16, 16);
    DAUB_LineInt(forward.get(), c.x1, c.y1, c.x2, c.y2, kWhite, 1.0f, 0, false);
    DAUB_LineInt(backward.get(), c.x2, c.y2, c.x1, c.y1, kWhite, 1.0f, 0, false);
    const auto pixels = inkedPixels(forward.get());
    EXPECT_EQ(pixels.size(), static_cast<size_t>(c.pixels)) << c.x1 << "," << c.y1;
    EXPECT_EQ(DAUB_GetPixel(forward.get(), c.x1, c.y1), kWhite);
    EXPECT_EQ(DAUB_GetPixel(forward.get(), c.x2, c.y2), kWhite);
    EXPECT_EQ(pixels, inkedPixels(backward.get()));
  }
}

TEST(CrispLines, FarEndsAreCutToTheBitmap) {
  BitmapPtr bitmap = newBitmap(8, 8);
  DAUB_LineInt(bitmap.get(), -1000000000, 4, 1000000000, 4, kWhite, 1.0f, 0, false);
  DAUB_LineInt(bitmap.get(), INT_MIN / 2, INT_MIN / 2, INT_MAX / 2, INT_MAX / 2, kWhite, 1, 0,
               true);
  DAUB_Line(bitmap.get(), NAN, 0, 5, 5, kWhite, 1.0f, 0, true);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 4), kWhite);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 7, 4), kWhite);
  EXPECT_GT(level(bitmap.get(), 2, 2), 0x80);
}

TEST(SmoothLines, AxisAlignedLinesAreSolidFromEndToEnd) {
  BitmapPtr bitmap = newBitmap(14, 20);
  DAUB_LineInt(bitmap.get(), 2, 5, 10, 5, kWhite, 1.0f, 0, true);
  DAUB_ThickFLine(bitmap.get(), 2.0, 12.0, 12.0, 12.0, kWhite, 1.0f, 0, 3);
  EXPECT_EQ(inkBox(bitmap.get()).count, 9 + 3 * 11) << "partly covered pixels";
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 10, 5), kWhite);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 12, 13), kWhite);
}

TEST(SmoothLines, CoverageIsPointSymmetricAboutTheMiddle) {
  BitmapPtr bitmap = newBitmap(20, 14);
  DAUB_LineInt(bitmap.get(), 3, 4, 16, 9, kWhite, 1.0f, 0, true);
  // Cairo samples coverage on 15 rows per pixel, so a pixel may differ from its mirror image by
  // one row's worth (17 of 255); the halves of the line must still carry the same ink.
  int partlyCovered = 0, firstHalf = 0, secondHalf = 0;
  for (int y = 0; y < 14; ++y) {
    for (int x = 0; x < 20; ++x) {
      const int here = level(bitmap.get(), x, y);
      EXPECT_NEAR(here, level(bitmap.get(), 19 - x, 13 - y), 18) << x << "," << y;
      partlyCovered += here > 0 && here < 255;
      (x < 10 ? firstHalf : secondHalf) += here;
    }
  }
  EXPECT_NEAR(firstHalf, secondHalf, firstHalf / 30);
  EXPECT_GT(partlyCovered, 10) << "not anti-aliased";
  EXPECT_GT(level(bitmap.get(), 3, 4), 0x60);
  EXPECT_GT(level(bitmap.get(), 16, 9), 0x60);
}

TEST(Rectangles, DrawRectOutlinesInclusiveEndsFillRectCoversWidthTimesHeight) {
  BitmapPtr outline = newBitmap(12, 12), filled = newBitmap(12, 12);
  DAUB_DrawRect(outline.get(), 2, 3, 5, 4, kWhite, 0.5f, 0);
  DAUB_FillRect(filled.get(), 2, 3, 5, 4, kWhite, 1.0f, 0);
  DAUB_FillRect(filled.get(), -5, INT_MAX - 2, 100, 100, kWhite, 1.0f, 0);  // all outside
  const InkBox o = inkBox(outline.get()), f = inkBox(filled.get());
  EXPECT_EQ(o.edgesAndCount(), (std::array{2, 3, 7, 7, 2 * (6 + 5) - 4}));
  EXPECT_EQ(level(outline.get(), 4, 5), 0);
  EXPECT_NEAR(level(outline.get(), 7, 7), 0x80, 1) << "corners blended once";
  EXPECT_EQ(f.edgesAndCount(), (std::array{2, 3, 6, 6, 20}));
}

TEST(Circles, FilledDiscSpansTwoRadiiPlusOneOutlinePassesThroughTheRadius) {
  for (bool antialias : {false, true}) {
    BitmapPtr disc = newBitmap(21, 21), ring = newBitmap(21, 21);
    DAUB_FillCircle(disc.get(), 10, 10, 4, kWhite, 1.0f, 0, antialias);
    DAUB_Circle(ring.get(), 10.0f, 10.0f, 5.0f, kWhite, 1.0f, 0, antialias);
    for (auto [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
      EXPECT_GT(level(disc.get(), 10 + 4 * dx, 10 + 4 * dy), 0xE0) << dx << "," << dy;
      EXPECT_LT(level(disc.get(), 10 + 5 * dx, 10 + 5 * dy), 0x20) << dx << "," << dy;
      EXPECT_GT(level(ring.get(), 10 + 5 * dx, 10 + 5 * dy), 0xC0) << dx << "," << dy;
      EXPECT_LT(level(ring.get(), 10 + 3 * dx, 10 + 3 * dy), 0x20) << dx << "," << dy;
    }
    EXPECT_EQ(level(ring.get(), 10, 10), 0);
    for (DAUB_IBitmap* bm : {disc.get(), ring.get()}) {
      EXPECT_DOUBLE_EQ(inkBox(bm).centreX(), 10.0);
      EXPECT_DOUBLE_EQ(inkBox(bm).centreY(), 10.0);
    }
  }
}

TEST(Circles, ArcsRunClockwiseFromStraightUp) {
  BitmapPtr bitmap = newBitmap(21, 21);
  DAUB_Arc(bitmap.get(), 10.0f, 10.0f, 8.0f, 0.0f, static_cast<float>(M_PI / 2), kWhite, 1.0f, 0,
           true);
  EXPECT_GT(level(bitmap.get(), 11, 2), 0xA0);
  EXPECT_LT(level(bitmap.get(), 9, 2), 0x20);
  EXPECT_GT(level(bitmap.get(), 18, 9), 0xA0);
  EXPECT_LT(level(bitmap.get(), 18, 11), 0x20);
}

TEST(Blending, CopyMixesByColourAlphaTimesArgumentAddSaturates) {
  struct Case {
    DAUB_pixel background, colour;
    float alpha;
    int mode;
    DAUB_pixel expected;
  };
  for (const Case& c : {Case{0xFF000000, kWhite, 0.5f, DAUB_BLIT_MODE_COPY, 0xFF808080},
                        Case{0xFF000000, 0x80FFFFFF, 1.0f, DAUB_BLIT_MODE_COPY, 0xFF808080},
                        Case{0xFF000000, 0x80FFFFFF, 0.5f, DAUB_BLIT_MODE_COPY, 0xFF404040},
                        Case{0xFF000000, kWhite, 0.0f, DAUB_BLIT_MODE_COPY, 0xFF000000},
                        Case{0xFF000000, kWhite, 7.0f, DAUB_BLIT_MODE_COPY, 0xFFFFFFFF},
                        Case{0xFF202020, 0xFF406070, 0.125f, DAUB_BLIT_MODE_ADD, 0xFF282C2E},
                        Case{0xFF202020, 0xFFF0E0E0, 1.0f, DAUB_BLIT_MODE_ADD, 0xFFFFFFFF}}) {
    BitmapPtr bitmap = newBitmap(4, 4, c.background);
    DAUB_FillRect(bitmap.get(), 0, 0, 4, 4, c.colour, c.alpha, c.mode);
    const DAUB_pixel p = DAUB_GetPixel(bitmap.get(), 2, 2);
    EXPECT_EQ(alphaOf(p), 0xFF);
    EXPECT_NEAR(red(p), red(c.expected), 1) << std::hex << c.colour << " x " << c.alpha;
    EXPECT_NEAR(green(p), green(c.expected), 1) << std::hex << c.colour << " x " << c.alpha;
    EXPECT_NEAR(blue(p), blue(c.expected), 1) << std::hex << c.colour << " x " << c.alpha;
  }
}

TEST(FilledShapes, CoverTheirVerticesAndEdgesRowByRow) {
  BitmapPtr triangle = newBitmap(14, 14), trapezoid = newBitmap(12, 8), square = newBitmap(8, 8);
  DAUB_FillTriangle(triangle.get(), 2, 2, 10, 2, 2, 10, kWhite, 1.0f, 0);
  EXPECT_EQ(inkBox(triangle.get()).count, 9 + 8 + 7 + 6 + 5 + 4 + 3 + 2 + 1);
  EXPECT_EQ(level(triangle.get(), 6, 6), 0xFF) << "on the slanted edge";
  EXPECT_EQ(level(triangle.get(), 7, 6), 0);
  DAUB_FillTrapezoid(trapezoid.get(), 2, 8, 1, 0, 10, 5, kWhite, 1.0f, 0);
  const auto rows = inkedPixels(trapezoid.get());
  EXPECT_EQ(rows.size(), 7u + 7u + 9u + 9u + 11u);  // rows 1..5: 2..8 (x2), 1..9 (x2), 0..10
  EXPECT_TRUE(rows.contains({1, 3}) && rows.contains({10, 5}) && !rows.contains({1, 1}));
  const int xs[] = {1, 5, 5, 1}, ys[] = {1, 1, 5, 5};
  DAUB_FillConvexPolygon(square.get(), xs, ys, 4, kWhite, 0.5f, 0);
  EXPECT_EQ(inkBox(square.get()).count, 25);
  EXPECT_NEAR(level(square.get(), 5, 5), 0x80, 1);
}
