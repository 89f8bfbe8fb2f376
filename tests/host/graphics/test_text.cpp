// Fonts (faces, drawn sizes, centring and clipping are pinned by the reference images): handle
// ownership and measuring.
#include <gtest/gtest.h>

#include <string>

#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

namespace {

int measuredWidth(CairoFont& font, const char* text) {
  RECT rect{10, 10, 10, 10};
  font.DrawText(nullptr, text, -1, &rect, DT_CALCRECT | DT_SINGLELINE);
  return rect.right - rect.left;
}

}  // namespace

TEST(FontHandles, OwnershipFollowsTheAttachFlag) {
  const HFONT lent = newHandle(-16, 700), given = newHandle(12), givenLater = newHandle(12);
  ASSERT_NE(fontDescriptionOf(lent), nullptr);
  EXPECT_EQ(fontDescriptionOf(lent)->height, -16);
  {
    CairoFont font;
    font.AttachHostFont(lent, DAUB_FONT_FLAG_SCALED);
    font.AttachHostFont(given, DAUB_FONT_FLAG_OWNS_HANDLE);
    font.AttachHostFont(givenLater, DAUB_FONT_FLAG_OWNS_HANDLE);
    EXPECT_EQ(fontDescriptionOf(given), nullptr) << "replaced owned handle not deleted";
  }
  EXPECT_EQ(fontDescriptionOf(givenLater), nullptr);
  EXPECT_NE(fontDescriptionOf(lent), nullptr) << "a lent handle was deleted";
  DeleteObject(reinterpret_cast<HGDIOBJ>(lent));
  DeleteObject(reinterpret_cast<HGDIOBJ>(lent));  // a second delete is ignored
  EXPECT_EQ(fontDescriptionOf(lent), nullptr);
}

TEST(TextMeasure, CalcRectMeasuresWithoutDrawingAndFollowsHeightsLinesAndLatin1) {
  auto font = newFont(12), large = newFont(18);
  BitmapPtr bitmap = newBitmap(80, 30);
  RECT rect{5, 7, 5, 7};
  EXPECT_EQ(font->DrawText(bitmap.get(), "Speaker", -1, &rect, DT_CALCRECT | 0x124), 12);
  EXPECT_TRUE(inkBox(bitmap.get()).empty());
  EXPECT_EQ((std::array{rect.left, rect.bottom - rect.top}), (std::array{5, 12}));
  const int width = measuredWidth(*font, "Surround");
  EXPECT_NEAR(static_cast<double>(measuredWidth(*large, "Surround")) / width, 1.5, 0.15);
  EXPECT_NEAR(newFont(-16)->GetLineHeight(), 18, 1) << "negative heights name the em size";
  EXPECT_GT(measuredWidth(*newFont(12, 700), "Surround"), width) << "bold is wider";
  font->SetLineGap(3);
  RECT multi{0, 0, 0, 0};
  EXPECT_EQ(font->DrawText(nullptr, "Front\r\nBack", -1, &multi, DT_CALCRECT), 2 * 12 + 3);
  EXPECT_EQ(multi.right, measuredWidth(*font, "Front"));
  EXPECT_EQ(measuredWidth(*font, "caf\xE9"), measuredWidth(*font, "caf\xC3\xA9"));
}
