// Clear, lines, rectangles, circles, arcs and filled shapes: pixels checked at computed places.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <set>
#include <utility>

#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

namespace {

constexpr DAUB_pixel kWhite = 0xFFFFFFFF;
constexpr DAUB_pixel kBlack = 0xFF000000;

using PixelSet = std::set<std::pair<int, int>>;

PixelSet inkedPixels(DAUB_IBitmap* bitmap, DAUB_pixel background = kBlack) {
  PixelSet pixels;
  for (int y = 0; y < bitmap->getHeight(); ++y) {
    for (int x = 0; x < bitmap->getWidth(); ++x) {
      if (DAUB_GetPixel(bitmap, x, y) != background) pixels.insert({x, y});
    }
  }
  return pixels;
}

bool isInked(DAUB_IBitmap* bitmap, int x, int y) {
  return DAUB_GetPixel(bitmap, x, y) != kBlack;
}

}  // namespace

TEST(Clear, SetsEveryPixelWithoutBlending) {
  BitmapPtr bitmap = newBitmap(5, 4, kWhite);
  DAUB_Clear(bitmap.get(), 0x80FF0000);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 0), 0x80FF0000u);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 4, 3), 0x80FF0000u);
  DAUB_Clear(bitmap.get(), 0x00000000);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 2, 2), 0u);
}

TEST(CrispLines, CoverBothEndsWithOnePixelPerStep) {
  struct Case {
    int x1, y1, x2, y2, pixels;
  };
  for (const Case& c : {Case{2, 3, 9, 3, 8}, Case{4, 9, 4, 1, 9}, Case{1, 1, 6, 6, 6},
                        Case{0, 0, 10, 3, 11}, Case{12, 2, 3, 10, 10}, Case{5, 5, 5, 5, 1}}) {
    BitmapPtr forward = newBitmap(16, 16);
    BitmapPtr backward = newBitmap(16, 16);
    DAUB_LineInt(forward.get(), c.x1, c.y1, c.x2, c.y2, kWhite, 1.0f, 0, false);
    DAUB_LineInt(backward.get(), c.x2, c.y2, c.x1, c.y1, kWhite, 1.0f, 0, false);
    const PixelSet pixels = inkedPixels(forward.get());
    EXPECT_EQ(pixels.size(), static_cast<size_t>(c.pixels)) << c.x1 << "," << c.y1;
    EXPECT_TRUE(pixels.contains({c.x1, c.y1}));
    EXPECT_TRUE(pixels.contains({c.x2, c.y2}));
    EXPECT_EQ(pixels, inkedPixels(backward.get())) << "direction changes the pixels";
    EXPECT_EQ(DAUB_GetPixel(forward.get(), c.x1, c.y1), kWhite);
  }
}

TEST(CrispLines, FloatEndsRoundToTheNearestPixel) {
  BitmapPtr bitmap = newBitmap(12, 6);
  DAUB_Line(bitmap.get(), 2.4f, 3.0f, 7.6f, 3.2f, kWhite, 1.0f, 0, false);
  const InkBox box = inkBox(bitmap.get());
  EXPECT_EQ(box.left, 2);
  EXPECT_EQ(box.right, 8);
  EXPECT_EQ(box.top, 3);
  EXPECT_EQ(box.bottom, 3);
}

TEST(CrispLines, FarEndsAreCutToTheBitmap) {
  BitmapPtr bitmap = newBitmap(8, 8);
  DAUB_LineInt(bitmap.get(), -1000000000, 4, 1000000000, 4, kWhite, 1.0f, 0, false);
  DAUB_LineInt(bitmap.get(), INT_MIN / 2, INT_MIN / 2, INT_MAX / 2, INT_MAX / 2, kWhite, 1, 0,
               true);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 4), kWhite);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 7, 4), kWhite);
  EXPECT_TRUE(isInked(bitmap.get(), 2, 2));
  DAUB_Line(bitmap.get(), NAN, 0, 5, 5, kWhite, 1.0f, 0, true);  // must not disturb anything
}

TEST(SmoothLines, AxisAlignedLinesAreSolidFromEndToEnd) {
  BitmapPtr bitmap = newBitmap(14, 10);
  DAUB_LineInt(bitmap.get(), 2, 5, 10, 5, kWhite, 1.0f, 0, true);
  for (int x = 2; x <= 10; ++x) EXPECT_EQ(DAUB_GetPixel(bitmap.get(), x, 5), kWhite) << x;
  EXPECT_EQ(inkBox(bitmap.get()).count, 9);
}

TEST(SmoothLines, CoverageIsPointSymmetricAboutTheMiddle) {
  BitmapPtr bitmap = newBitmap(20, 14);
  DAUB_LineInt(bitmap.get(), 3, 4, 16, 9, kWhite, 1.0f, 0, true);
  // Cairo samples coverage on 15 rows per pixel, so a pixel may differ from its mirror image by
  // one row's worth (17 of 255); the halves of the line must still carry the same ink.
  int partlyCovered = 0, firstHalf = 0, secondHalf = 0;
  for (int y = 0; y < 14; ++y) {
    for (int x = 0; x < 20; ++x) {
      const int here = green(DAUB_GetPixel(bitmap.get(), x, y));
      const int mirrored = green(DAUB_GetPixel(bitmap.get(), 19 - x, 13 - y));
      EXPECT_NEAR(here, mirrored, 18) << x << "," << y;
      partlyCovered += here > 0 && here < 255;
      (x < 10 ? firstHalf : secondHalf) += here;
    }
  }
  EXPECT_NEAR(firstHalf, secondHalf, firstHalf / 30);
  EXPECT_GT(partlyCovered, 10) << "not anti-aliased";
  EXPECT_GT(green(DAUB_GetPixel(bitmap.get(), 3, 4)), 0x60);
  EXPECT_GT(green(DAUB_GetPixel(bitmap.get(), 16, 9)), 0x60);
}

TEST(ThickLines, SpanTheirWidthAcrossTheLine) {
  BitmapPtr bitmap = newBitmap(16, 20);
  DAUB_ThickFLine(bitmap.get(), 2.0, 10.0, 12.0, 10.0, kWhite, 1.0f, 0, 3);
  const InkBox box = inkBox(bitmap.get());
  EXPECT_EQ(box.top, 9);
  EXPECT_EQ(box.bottom, 11);
  EXPECT_EQ(box.left, 2);
  EXPECT_EQ(box.right, 12);
}

TEST(Rectangles, DrawRectOutlinesInclusiveEndsFillRectCoversWidthTimesHeight) {
  BitmapPtr outline = newBitmap(12, 12);
  BitmapPtr filled = newBitmap(12, 12);
  DAUB_DrawRect(outline.get(), 2, 3, 5, 4, kWhite, 1.0f, 0);
  DAUB_FillRect(filled.get(), 2, 3, 5, 4, kWhite, 1.0f, 0);
  const InkBox outlineBox = inkBox(outline.get());
  EXPECT_EQ(outlineBox.right, 7);
  EXPECT_EQ(outlineBox.bottom, 7);
  EXPECT_EQ(outlineBox.count, 2 * (6 + 5) - 4);
  EXPECT_FALSE(isInked(outline.get(), 4, 5));
  const InkBox fillBox = inkBox(filled.get());
  EXPECT_EQ(fillBox.left, 2);
  EXPECT_EQ(fillBox.right, 6);
  EXPECT_EQ(fillBox.bottom, 6);
  EXPECT_EQ(fillBox.count, 20);
}

TEST(Rectangles, TranslucentOutlineBlendsCornersOnce) {
  BitmapPtr bitmap = newBitmap(8, 8);
  DAUB_DrawRect(bitmap.get(), 1, 1, 4, 4, kWhite, 0.5f, 0);
  EXPECT_NEAR(red(DAUB_GetPixel(bitmap.get(), 1, 1)), 0x80, 1);
  EXPECT_NEAR(red(DAUB_GetPixel(bitmap.get(), 5, 5)), 0x80, 1);
  EXPECT_NEAR(red(DAUB_GetPixel(bitmap.get(), 3, 1)), 0x80, 1);
}

TEST(Rectangles, BorderedRectRingsTheFilledArea) {
  BitmapPtr bitmap = newBitmap(10, 10);
  DAUB_BorderedRect(bitmap.get(), 1, 1, 6, 5, 0xFF00FF00, 0xFFFF0000, 1.0f, 0);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 1, 1), 0xFFFF0000u);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 6, 5), 0xFFFF0000u);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 3, 3), 0xFF00FF00u);
  EXPECT_EQ(inkBox(bitmap.get()).count, 30);
}

TEST(Rectangles, ClippedAtTheBitmapEdges) {
  BitmapPtr bitmap = newBitmap(6, 6);
  DAUB_FillRect(bitmap.get(), -5, -5, 8, 8, kWhite, 1.0f, 0);
  DAUB_FillRect(bitmap.get(), INT_MAX - 2, 0, 100, 2, kWhite, 1.0f, 0);
  const InkBox box = inkBox(bitmap.get());
  EXPECT_EQ(box.right, 2);
  EXPECT_EQ(box.count, 9);
}

TEST(Circles, FilledDiscSpansTwoRadiiPlusOneAroundTheCentre) {
  for (bool antialias : {false, true}) {
    BitmapPtr bitmap = newBitmap(21, 21);
    DAUB_FillCircle(bitmap.get(), 10, 10, 4, kWhite, 1.0f, 0, antialias);
    for (auto [x, y] : {std::pair{14, 10}, {6, 10}, {10, 14}, {10, 6}, {10, 10}}) {
      EXPECT_GT(red(DAUB_GetPixel(bitmap.get(), x, y)), 0xE0) << x << "," << y;
    }
    for (auto [x, y] : {std::pair{15, 10}, {5, 10}, {10, 15}, {10, 5}}) {
      EXPECT_LT(red(DAUB_GetPixel(bitmap.get(), x, y)), 0x20) << x << "," << y;
    }
    const InkBox box = inkBox(bitmap.get());
    EXPECT_DOUBLE_EQ(box.centreX(), 10.0);
    EXPECT_DOUBLE_EQ(box.centreY(), 10.0);
  }
}

TEST(Circles, OutlinePassesThroughTheRadiusNotTheCentre) {
  for (bool antialias : {false, true}) {
    BitmapPtr bitmap = newBitmap(21, 21);
    DAUB_Circle(bitmap.get(), 10.0f, 10.0f, 5.0f, kWhite, 1.0f, 0, antialias);
    for (auto [x, y] : {std::pair{15, 10}, {5, 10}, {10, 15}, {10, 5}}) {
      EXPECT_GT(red(DAUB_GetPixel(bitmap.get(), x, y)), 0xC0) << x << "," << y;
    }
    EXPECT_FALSE(isInked(bitmap.get(), 10, 10));
    EXPECT_LT(red(DAUB_GetPixel(bitmap.get(), 13, 10)), 0x20);
    const InkBox box = inkBox(bitmap.get());
    EXPECT_DOUBLE_EQ(box.centreX(), 10.0);
    EXPECT_DOUBLE_EQ(box.centreY(), 10.0);
  }
}

TEST(Circles, ArcsRunClockwiseFromStraightUp) {
  BitmapPtr bitmap = newBitmap(21, 21);
  DAUB_Arc(bitmap.get(), 10.0f, 10.0f, 8.0f, 0.0f, static_cast<float>(M_PI / 2), kWhite, 1.0f, 0,
           true);
  EXPECT_GT(red(DAUB_GetPixel(bitmap.get(), 11, 2)), 0xA0);  // starts up, goes right
  EXPECT_LT(red(DAUB_GetPixel(bitmap.get(), 9, 2)), 0x20);
  EXPECT_GT(red(DAUB_GetPixel(bitmap.get(), 18, 9)), 0xA0);  // ends right
  EXPECT_LT(red(DAUB_GetPixel(bitmap.get(), 18, 11)), 0x20);
  EXPECT_GT(red(DAUB_GetPixel(bitmap.get(), 16, 4)), 0x40);
  EXPECT_FALSE(isInked(bitmap.get(), 2, 10));
  EXPECT_FALSE(isInked(bitmap.get(), 10, 18));
}

TEST(Blending, CopyModeMixesByColourAlphaTimesArgument) {
  struct Case {
    DAUB_pixel colour;
    float alpha;
    int expected;
  };
  for (const Case& c :
       {Case{kWhite, 0.5f, 0x80}, Case{0x80FFFFFF, 1.0f, 0x80}, Case{0x80FFFFFF, 0.5f, 0x40},
        Case{kWhite, 0.0f, 0x00}, Case{kWhite, 7.0f, 0xFF}}) {
    BitmapPtr bitmap = newBitmap(4, 4);
    DAUB_FillRect(bitmap.get(), 0, 0, 4, 4, c.colour, c.alpha, DAUB_BLIT_MODE_COPY);
    const DAUB_pixel p = DAUB_GetPixel(bitmap.get(), 2, 2);
    EXPECT_EQ(alphaOf(p), 0xFF);
    EXPECT_NEAR(red(p), c.expected, 1) << std::hex << c.colour << " x " << c.alpha;
    EXPECT_NEAR(green(p), c.expected, 1);
    EXPECT_NEAR(blue(p), c.expected, 1);
  }
}

TEST(Blending, AdditiveModeAddsAndSaturates) {
  BitmapPtr bitmap = newBitmap(4, 2, 0xFF202020);
  DAUB_FillRect(bitmap.get(), 0, 0, 4, 1, 0xFF406070, 0.125f, DAUB_BLIT_MODE_ADD);
  DAUB_FillRect(bitmap.get(), 0, 1, 4, 1, 0xFFF0E0E0, 1.0f, DAUB_BLIT_MODE_ADD);
  const DAUB_pixel added = DAUB_GetPixel(bitmap.get(), 1, 0);
  EXPECT_EQ(alphaOf(added), 0xFF);
  EXPECT_NEAR(red(added), 0x28, 1);
  EXPECT_NEAR(green(added), 0x2C, 1);
  EXPECT_NEAR(blue(added), 0x2E, 1);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 1, 1), 0xFFFFFFFFu) << "wrapped instead of saturating";
}

TEST(FilledShapes, TriangleCoversItsVerticesAndEdges) {
  BitmapPtr bitmap = newBitmap(14, 14);
  DAUB_FillTriangle(bitmap.get(), 2, 2, 10, 2, 2, 10, kWhite, 1.0f, 0);
  for (auto [x, y] : {std::pair{2, 2}, {10, 2}, {2, 10}, {6, 6}}) {
    EXPECT_TRUE(isInked(bitmap.get(), x, y)) << x << "," << y;
  }
  EXPECT_FALSE(isInked(bitmap.get(), 7, 6));
  EXPECT_EQ(inkBox(bitmap.get()).count, 45);
}

TEST(FilledShapes, TrapezoidAndPolygonRows) {
  BitmapPtr trapezoid = newBitmap(12, 8);
  DAUB_FillTrapezoid(trapezoid.get(), 2, 8, 1, 0, 10, 5, kWhite, 1.0f, 0);
  const InkBox box = inkBox(trapezoid.get());
  EXPECT_EQ(box.top, 1);
  EXPECT_EQ(box.bottom, 5);
  EXPECT_FALSE(isInked(trapezoid.get(), 1, 1));
  EXPECT_TRUE(isInked(trapezoid.get(), 2, 1));
  EXPECT_TRUE(isInked(trapezoid.get(), 1, 3));
  EXPECT_FALSE(isInked(trapezoid.get(), 0, 3));
  EXPECT_TRUE(isInked(trapezoid.get(), 10, 5));

  BitmapPtr square = newBitmap(8, 8);
  const int xs[] = {1, 5, 5, 1}, ys[] = {1, 1, 5, 5};
  DAUB_FillConvexPolygon(square.get(), xs, ys, 4, kWhite, 0.5f, 0);
  EXPECT_EQ(inkBox(square.get()).count, 25);
  EXPECT_NEAR(red(DAUB_GetPixel(square.get(), 5, 5)), 0x80, 1);
}
