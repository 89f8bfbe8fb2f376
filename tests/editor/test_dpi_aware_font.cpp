// The DPI-aware font against fake host fonts: sizes per scale, the four-entry cache, state copies.
#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "editor/view/dpi_aware_font.h"
#include "plugin/host_api.h"
#include "plugin/window_layer.h"

namespace {

// lfHeight of every CreateFontIndirect in order; a handle is its index plus one.
std::vector<int> handleHeights;
int fontsMade = 0;
int fontsDeleted = 0;
std::uint32_t hostFlags = 0;

int heightOfHandle(HFONT handle) {
  return handleHeights[reinterpret_cast<std::intptr_t>(handle) - 1];
}

// A host font object that records what the DPI-aware font asks of it.
class FakeHostFont final : public DAUB_IFont {
 public:
  FakeHostFont() { ++fontsMade; }
  ~FakeHostFont() override { ++fontsDeleted; }
  FakeHostFont(const FakeHostFont&) = delete;
  FakeHostFont& operator=(const FakeHostFont&) = delete;

  void AttachHostFont(HFONT font, int flags) override {
    handle = font;
    attachFlags = flags;
    ++attachCount;
  }
  DAUB_pixel SetTextColor(DAUB_pixel c) override { return std::exchange(textColor, c); }
  DAUB_pixel SetBkColor(DAUB_pixel c) override { return std::exchange(bkColor, c); }
  DAUB_pixel SetExtraColor(DAUB_pixel) override { return 0; }
  int SetBkMode(int mode) override { return std::exchange(bkMode, mode); }
  void SetBlendMode(int, float alpha) override { blendAlpha = alpha; }
  int DrawText(DAUB_IBitmap*, const char*, int, RECT*, UINT flags) override {
    lastDrawFlags = flags;
    return 7;
  }
  DAUB_pixel GetTextColor() override { return textColor; }
  HFONT GetFontHandle() override { return handle; }
  int GetLineHeight() override { return heightOfHandle(handle) + 2; }
  void SetLineGap(int gap) override { lineGap = gap; }

  HFONT handle = nullptr;
  int attachFlags = 0;
  int attachCount = 0;
  DAUB_pixel textColor = 0x11111111;
  DAUB_pixel bkColor = 0x22222222;
  int bkMode = -1;
  float blendAlpha = -1.0f;
  int lineGap = -1;
  UINT lastDrawFlags = 0;
};

// A host bitmap that only tells the scale it was advised.
class ScaledBitmap final : public DAUB_IBitmap {
 public:
  explicit ScaledBitmap(int scale256) : scale256_(scale256) {}
  int getWidth() override { return 10; }
  int getHeight() override { return 10; }
  bool resize(int, int) override { return false; }
  HDC getDC() override { return nullptr; }
  std::intptr_t Extended(int code, void*) override {
    return code == DAUB_EXT_GET_ADVISORY_SCALE || code == DAUB_EXT_GET_EFFECTIVE_SCALE ? scale256_
                                                                                       : 0;
  }

 private:
  int scale256_;
};

DAUB_IFont* makeFakeFont() {
  return new FakeHostFont();
}
HFONT createFakeHandle(const LOGFONT* logFont) {
  handleHeights.push_back(logFont->lfHeight);
  return reinterpret_cast<HFONT>(static_cast<std::intptr_t>(handleHeights.size()));
}
std::uint32_t readHostFlags(int) {
  return hostFlags;
}

class DpiAwareFont : public ::testing::Test {
 protected:
  void SetUp() override {
    handleHeights.clear();
    fontsMade = fontsDeleted = 0;
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
    ScaledBitmap bitmap(scale256);
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

TEST_F(DpiAwareFont, RealizesThePixelHeightOfEachScale) {
  const struct {
    int scale256, height, scaledFlag;
  } cases[] = {{0, 12, 0},
               {256, 12, 0},
               {300, 14, DAUB_FONT_FLAG_SCALED},
               {384, 18, DAUB_FONT_FLAG_SCALED},
               {512, 24, DAUB_FONT_FLAG_SCALED}};
  for (const auto& c : cases) {
    FakeHostFont* host = drawAt(c.scale256);
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(heightOfHandle(host->handle), c.height) << c.scale256;
    EXPECT_EQ(host->attachFlags, DAUB_FONT_FLAG_OWNS_HANDLE | c.scaledFlag) << c.scale256;
  }
}

TEST_F(DpiAwareFont, KeepsFourSizesAndReusesTheLeastRecentlyUsedForAFifth) {
  FakeHostFont* at256 = drawAt(256);
  FakeHostFont* at384 = drawAt(384);
  EXPECT_NE(at384, at256);
  EXPECT_EQ(drawAt(256), at256);  // realised already: no handle, moved to the end
  EXPECT_EQ(entry(3), std::make_pair(12, at256));
  EXPECT_EQ(handleHeights, (std::vector<int>{12, 18}));
  drawAt(512);
  drawAt(640);
  FakeHostFont* fifth = drawAt(768);
  EXPECT_EQ(fifth, at384);
  EXPECT_EQ(fontsMade, 4);
  EXPECT_EQ(heightOfHandle(fifth->handle), 36);
  EXPECT_EQ(fifth->attachCount, 2);
  EXPECT_EQ(entry(3), std::make_pair(36, at384));
  EXPECT_EQ(entry(0).first, 12);  // 256 is now the least recently used
  delete font;
  font = nullptr;
  EXPECT_EQ(fontsDeleted, 4);
}

TEST_F(DpiAwareFont, DrawingCopiesTheWrappersStateButMeasuringDoesNot) {
  font->SetTextColor(0xFF102030);
  font->SetBkColor(0xFF405060);
  font->SetBlendMode(1, 0.25f);
  font->SetLineGap(3);
  FakeHostFont* host = drawAt(256, DT_CALCRECT | DT_SINGLELINE);
  EXPECT_EQ(host->textColor, 0x11111111u);
  EXPECT_EQ(host->lastDrawFlags, static_cast<UINT>(DT_CALCRECT | DT_SINGLELINE));
  drawAt(256);
  EXPECT_EQ(host->textColor, 0xFF102030u);
  EXPECT_EQ(host->bkColor, 0xFF405060u);
  EXPECT_EQ(host->bkMode, 0);
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
  EXPECT_EQ(fontsMade, 1);
}

TEST_F(DpiAwareFont, WithoutHostFontsNothingIsDrawnAndLinesAreTenHigh) {
  hostApi.DAUB_CreateFont = nullptr;
  ScaledBitmap bitmap(256);
  RECT box{0, 0, 10, 10};
  EXPECT_EQ(font->DrawText(&bitmap, "A", -1, &box, DT_SINGLELINE), 0);
  EXPECT_EQ(font->GetLineHeight(), 10);
  EXPECT_EQ(font->GetFontHandle(), nullptr);
  hostApi.DAUB_CreateFont = &makeFakeFont;
  EXPECT_EQ(font->GetLineHeight(), 14);  // the fake answers its unscaled height + 2
}

}  // namespace
