// The DPI-aware font against fake host fonts: sizes per scale, the four-entry cache, state copies.
#include <gtest/gtest.h>

#include <utility>

#include "editor/view/dpi_aware_font.h"
#include "plugin/host_api.h"
#include "plugin/window_layer.h"
#include "tests/editor/fake_host_font.h"

FakeFontLog fakeFontLog;

namespace {

DAUB_IFont* makeFakeFont() {
  return new FakeHostFont();
}

HFONT createFakeHandle(const LOGFONT* logFont) {
  fakeFontLog.handleHeights.push_back(logFont->lfHeight);
  fakeFontLog.handleWidths.push_back(logFont->lfWidth);
  return reinterpret_cast<HFONT>(static_cast<std::intptr_t>(fakeFontLog.handleHeights.size()));
}

std::uint32_t hostFlags = 0;
std::uint32_t readHostFlags(int) {
  return hostFlags;
}

class DpiAwareFont : public ::testing::Test {
 protected:
  void SetUp() override {
    fakeFontLog = {};
    hostFlags = 0;
    hostApi.DAUB_CreateFont = &makeFakeFont;
    plaskSlots[static_cast<int>(PlaskId::CreateFontIndirect)] =
        reinterpret_cast<PlaskGenericFn>(&createFakeHandle);
    font = createViewFont(false);
  }
  void TearDown() override {
    delete font;
    hostApi = HostApi{};
    plaskSlots[static_cast<int>(PlaskId::CreateFontIndirect)] = nullptr;
  }

  FakeHostFont* drawAt(int scale256, UINT flags = DT_SINGLELINE) {
    ScaleOnlyBitmap bitmap(scale256);
    RECT box{0, 0, 10, 10};
    font->DrawText(&bitmap, "A", -1, &box, flags);
    return static_cast<FakeHostFont*>(font->realizeForBitmap(&bitmap));
  }
  std::pair<int, FakeHostFont*> entry(int index) {
    const auto& e = font->cacheEntry(index);
    return {e.height, static_cast<FakeHostFont*>(e.font)};
  }

  dpiAwareFont* font = nullptr;
};

TEST_F(DpiAwareFont, ViewFontsStartFromArialTemplates) {
  const struct {
    bool bold;
    int height;
    int weight;
  } cases[] = {{false, 12, 400}, {true, 11, 700}};
  for (const auto& c : cases) {
    dpiAwareFont* made = createViewFont(c.bold);
    EXPECT_EQ(made->logFont.lfHeight, c.height);
    EXPECT_EQ(made->logFont.lfWeight, c.weight);
    EXPECT_EQ(made->logFont.lfWidth, 0);
    EXPECT_STREQ(made->logFont.lfFaceName, "Arial");
    EXPECT_EQ(made->SetBkMode(1), 0);
    delete made;
  }
}

TEST_F(DpiAwareFont, RealizesThePixelHeightOfEachScale) {
  const struct {
    int scale256;
    int height;
    int scaledFlag;
  } cases[] = {{384, 18, DAUB_FONT_FLAG_SCALED},
               {256, 12, 0},
               {0, 12, 0},
               {512, 24, DAUB_FONT_FLAG_SCALED},
               {300, 14, DAUB_FONT_FLAG_SCALED}};
  for (const auto& c : cases) {
    FakeHostFont* host = drawAt(c.scale256);
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(heightOfHandle(host->handle), c.height) << c.scale256;
    EXPECT_EQ(host->attachFlags, DAUB_FONT_FLAG_OWNS_HANDLE | c.scaledFlag) << c.scale256;
  }
}

TEST_F(DpiAwareFont, ASecondScaleUsesASecondEntryAndKeepsTheFirst) {
  FakeHostFont* at384 = drawAt(384);
  FakeHostFont* at256 = drawAt(256);
  EXPECT_NE(at384, at256);
  EXPECT_EQ(entry(3), std::make_pair(12, at256));
  EXPECT_EQ(entry(2), std::make_pair(18, at384));
  EXPECT_EQ(fakeFontLog.handleHeights, (std::vector<int>{18, 12}));
  // Drawing at an already realised scale makes no handle and moves the entry to the end.
  EXPECT_EQ(drawAt(384), at384);
  EXPECT_EQ(entry(3), std::make_pair(18, at384));
  EXPECT_EQ(fakeFontLog.handleHeights.size(), 2u);
}

TEST_F(DpiAwareFont, AFifthHeightReusesTheLeastRecentlyUsedObjectWithANewHandle) {
  FakeHostFont* oldest = drawAt(256);
  drawAt(384);
  drawAt(512);
  drawAt(640);
  EXPECT_EQ(fakeFontLog.fontsMade, 4);
  FakeHostFont* fifth = drawAt(768);
  EXPECT_EQ(fifth, oldest);
  EXPECT_EQ(fakeFontLog.fontsMade, 4);
  EXPECT_EQ(heightOfHandle(fifth->handle), 36);
  EXPECT_EQ(fifth->attachCount, 2);
  EXPECT_EQ(entry(3), std::make_pair(36, oldest));
  EXPECT_EQ(entry(0).first, 18);  // 384 is now the least recently used
}

TEST_F(DpiAwareFont, DrawingCopiesTheWrappersStateButMeasuringDoesNot) {
  font->SetTextColor(0xFF102030);
  font->SetBkColor(0xFF405060);
  font->SetExtraColor(0xFF708090);
  font->SetBlendMode(1, 0.25f);
  font->SetLineGap(3);
  FakeHostFont* host = drawAt(256, DT_CALCRECT | DT_SINGLELINE);
  EXPECT_EQ(host->textColor, 0x11111111u);
  EXPECT_EQ(host->bkMode, -1);
  EXPECT_EQ(host->lastDrawFlags, static_cast<UINT>(DT_CALCRECT | DT_SINGLELINE));
  drawAt(256);
  EXPECT_EQ(host->textColor, 0xFF102030u);
  EXPECT_EQ(host->bkColor, 0xFF405060u);
  EXPECT_EQ(host->extraColor, 0xFF708090u);
  EXPECT_EQ(host->bkMode, 0);
  EXPECT_EQ(host->blendMode, 1);
  EXPECT_FLOAT_EQ(host->blendAlpha, 0.25f);
  EXPECT_EQ(host->lineGap, 3);
}

TEST_F(DpiAwareFont, ChangedHostFlagsReRealizeTheSizesInUse) {
  font->flagsCallback = &readHostFlags;
  FakeHostFont* host = drawAt(384);
  hostFlags = 4;  // bit 2 is not the font's business
  drawAt(384);
  EXPECT_EQ(host->attachCount, 1);
  hostFlags = 0x10;
  EXPECT_EQ(drawAt(384), host);
  EXPECT_EQ(host->attachCount, 2);
  EXPECT_EQ(host->attachFlags, 0x10 | DAUB_FONT_FLAG_OWNS_HANDLE | DAUB_FONT_FLAG_SCALED);
  EXPECT_EQ(fakeFontLog.fontsMade, 1);
}

TEST_F(DpiAwareFont, WithoutHostFontsNothingIsDrawnAndLinesAreTenHigh) {
  hostApi.DAUB_CreateFont = nullptr;
  ScaleOnlyBitmap bitmap(256);
  RECT box{0, 0, 10, 10};
  EXPECT_EQ(font->DrawText(&bitmap, "A", -1, &box, DT_SINGLELINE), 0);
  EXPECT_EQ(font->GetLineHeight(), 10);
  hostApi.DAUB_CreateFont = &makeFakeFont;
  EXPECT_EQ(font->GetLineHeight(), 14);  // the fake answers its unscaled height + 2
  EXPECT_EQ(font->GetFontHandle(), nullptr);
}

TEST_F(DpiAwareFont, DeletingTheFontDeletesItsHostFonts) {
  drawAt(256);
  drawAt(384);
  delete font;
  font = nullptr;
  EXPECT_EQ(fakeFontLog.fontsDeleted, 2);
}

}  // namespace
