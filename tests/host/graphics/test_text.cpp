// Fonts: face resolution, handle ownership, alignment flags, measuring, sizes and encodings.
#include <gtest/gtest.h>

#include <string>

#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

namespace {

constexpr UINT kLeftLabel = 0x124;  // single line, vertically centred, not clipped

InkBox drawAt(CairoFont& font, const char* text, RECT rect, UINT flags) {
  BitmapPtr bitmap = newBitmap(120, 60);
  font.DrawText(bitmap.get(), text, -1, &rect, flags);
  return inkBox(bitmap.get());
}

int measuredWidth(CairoFont& font, const char* text) {
  RECT rect{10, 10, 10, 10};
  font.DrawText(nullptr, text, -1, &rect, DT_CALCRECT | DT_SINGLELINE);
  return rect.right - rect.left;
}

}  // namespace

TEST(FontFaces, ArialResolvesToLiberationSans) {
  EXPECT_EQ(resolveFontFamily({"Arial", 11, 700, false}), "Liberation Sans");
  EXPECT_EQ(newFont(12)->familyName(), "Liberation Sans");
  EXPECT_EQ(CairoFont().familyName(), "Liberation Sans") << "the default face";
}

TEST(FontHandles, DescribeTheLogFontAndOwnershipFollowsTheAttachFlag) {
  const HFONT lent = newHandle(-16, 700), given = newHandle(12), givenLater = newHandle(12);
  ASSERT_NE(fontDescriptionOf(lent), nullptr);
  EXPECT_EQ(fontDescriptionOf(lent)->height, -16);
  {
    CairoFont font;
    font.AttachHostFont(lent, DAUB_FONT_FLAG_SCALED);
    EXPECT_EQ(font.GetFontHandle(), lent);
    font.AttachHostFont(given, DAUB_FONT_FLAG_OWNS_HANDLE);
    font.AttachHostFont(givenLater, DAUB_FONT_FLAG_OWNS_HANDLE);
    EXPECT_EQ(fontDescriptionOf(given), nullptr) << "replaced owned handle not deleted";
    EXPECT_NE(fontDescriptionOf(givenLater), nullptr);
  }
  EXPECT_EQ(fontDescriptionOf(givenLater), nullptr);
  EXPECT_NE(fontDescriptionOf(lent), nullptr) << "a lent handle was deleted";
  DeleteObject(reinterpret_cast<HGDIOBJ>(lent));
  DeleteObject(reinterpret_cast<HGDIOBJ>(lent));  // a second delete is ignored
  EXPECT_EQ(fontDescriptionOf(lent), nullptr);
  EXPECT_EQ(CreateFontIndirect(nullptr), nullptr);
}

// Labels left, right and centred at an anchor are pinned by the reference images.
TEST(TextAlignment, ClippedUnlessNoClip) {
  auto font = newFont(12);
  const InkBox clipped = drawAt(*font, "Wide words", {10, 10, 20, 30}, DT_SINGLELINE);
  EXPECT_FALSE(clipped.empty());
  EXPECT_LT(clipped.right, 20);
  EXPECT_GT(drawAt(*font, "Wide words", {10, 10, 20, 30}, DT_SINGLELINE | DT_NOCLIP).right, 40);
}

TEST(TextAlignment, ButtonLettersCentreInTheirFrameAndStayInsideIt) {
  constexpr UINT kButtonLetter = 0x25;  // centred both ways, single line, clipped
  constexpr DAUB_pixel kFace = 0xFFE04040;
  for (const int sidePx : {12, 18}) {
    auto font = newFont(sidePx);
    font->SetTextColor(0xFF000000);
    BitmapPtr letter = newBitmap(3 * sidePx, sidePx, kFace),
              wide = newBitmap(3 * sidePx, sidePx, kFace);
    RECT frame{sidePx, 0, 2 * sidePx, sidePx};
    font->DrawText(letter.get(), "S", -1, &frame, kButtonLetter);
    font->DrawText(wide.get(), "WWWW", -1, &frame, kButtonLetter);
    const InkBox s = inkBox(letter.get(), kFace), w = inkBox(wide.get(), kFace);
    EXPECT_NEAR(s.centreX(), 1.5 * sidePx - 0.5, 1.0) << sidePx;
    EXPECT_NEAR(s.centreY(), 0.5 * sidePx - 0.5, 1.5) << sidePx;
    EXPECT_GT(s.bottom - s.top, sidePx / 2) << sidePx;
    EXPECT_EQ(w.left, sidePx) << "clipped to the frame";
    EXPECT_EQ(w.right, 2 * sidePx - 1) << "clipped to the frame";
  }
}

TEST(TextMeasure, CalcRectMeasuresWithoutDrawingOrTouchingColours) {
  auto font = newFont(12);
  BitmapPtr bitmap = newBitmap(80, 30);
  RECT rect{5, 7, 5, 7};
  const int height = font->DrawText(bitmap.get(), "Speaker", -1, &rect, DT_CALCRECT | kLeftLabel);
  EXPECT_TRUE(inkBox(bitmap.get()).empty());
  EXPECT_EQ(font->GetTextColor(), 0xFFFFFFFFu);
  EXPECT_EQ(height, 12);
  EXPECT_EQ(font->GetLineHeight(), 12);
  EXPECT_EQ(rect.bottom - rect.top, height);
  EXPECT_EQ(rect.left, 5);
  EXPECT_GT(rect.right - rect.left, 30);
  RECT drawn = rect;
  font->DrawText(bitmap.get(), "Speaker", -1, &drawn, DT_SINGLELINE);
  const InkBox ink = inkBox(bitmap.get());
  EXPECT_GE(ink.left, rect.left);
  EXPECT_LE(ink.right, rect.right);
  EXPECT_LE(ink.bottom, rect.bottom);
}

TEST(TextMeasure, SizesScaleWithTheHandleHeight) {
  auto small = newFont(12), large = newFont(18);
  const int smallWidth = measuredWidth(*small, "Surround");
  EXPECT_NEAR(static_cast<double>(measuredWidth(*large, "Surround")) / smallWidth, 1.5, 0.15);
  EXPECT_EQ(large->GetLineHeight(), 18);
  const InkBox smallInk = drawAt(*small, "H", {10, 10, 10, 10}, kLeftLabel);
  const InkBox largeInk = drawAt(*large, "H", {10, 10, 10, 10}, kLeftLabel);
  EXPECT_GT(largeInk.bottom - largeInk.top, smallInk.bottom - smallInk.top + 2);
  EXPECT_NEAR(newFont(-16)->GetLineHeight(), 18, 1) << "negative heights name the em size";
  EXPECT_GT(measuredWidth(*newFont(12, 700), "Surround"), smallWidth) << "bold is wider";
}

TEST(TextMeasure, LinesBreakUnlessSingleLineAndLatin1IsRead) {
  auto font = newFont(12);
  font->SetLineGap(3);
  RECT multi{0, 0, 0, 0}, single{0, 0, 0, 0};
  EXPECT_EQ(font->DrawText(nullptr, "Front\r\nBack", -1, &multi, DT_CALCRECT), 2 * 12 + 3);
  EXPECT_EQ(multi.right, measuredWidth(*font, "Front"));
  EXPECT_EQ(font->DrawText(nullptr, "Front\nBack", 5, &single, DT_CALCRECT | DT_SINGLELINE), 12);
  EXPECT_EQ(single.right, measuredWidth(*font, "Front")) << "length limits the text";
  EXPECT_EQ(measuredWidth(*font, "caf\xE9"), measuredWidth(*font, "caf\xC3\xA9"));
  EXPECT_GT(measuredWidth(*font, "caf\xE9"), measuredWidth(*font, "caf"));
}

TEST(TextFunctions, DefaultFaceMeasuresAndDraws) {
  int width = 0, height = 0;
  DAUB_MeasureText("Spatiola", &width, &height);
  EXPECT_GT(width, 30);
  EXPECT_EQ(height, 12);
  BitmapPtr bitmap = newBitmap(80, 30);
  DAUB_DrawText(bitmap.get(), 10, 5, "Spatiola", 0xFFFFFFFF, 1.0f, 0);
  const InkBox ink = inkBox(bitmap.get());
  EXPECT_GE(ink.left, 10);
  EXPECT_LE(ink.right, 10 + width);
  EXPECT_LE(ink.bottom, 5 + height);
}
