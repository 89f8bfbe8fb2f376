// Host font objects and font handles that record what the DPI-aware font asks of them.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "platform/daub.h"

struct FakeFontLog {
  std::vector<int> handleHeights;  // lfHeight of every CreateFontIndirect, in order
  std::vector<int> handleWidths;
  int fontsMade = 0;
  int fontsDeleted = 0;
};
extern FakeFontLog fakeFontLog;

// A handle is its index in handleHeights plus one.
inline int heightOfHandle(HFONT handle) {
  return fakeFontLog.handleHeights[reinterpret_cast<std::intptr_t>(handle) - 1];
}

class FakeHostFont final : public DAUB_IFont {
 public:
  FakeHostFont() { ++fakeFontLog.fontsMade; }
  ~FakeHostFont() override { ++fakeFontLog.fontsDeleted; }
  FakeHostFont(const FakeHostFont&) = delete;
  FakeHostFont& operator=(const FakeHostFont&) = delete;

  void AttachHostFont(HFONT font, int flags) override {
    handle = font;
    attachFlags = flags;
    ++attachCount;
  }
  DAUB_pixel SetTextColor(DAUB_pixel c) override { return std::exchange(textColor, c); }
  DAUB_pixel SetBkColor(DAUB_pixel c) override { return std::exchange(bkColor, c); }
  DAUB_pixel SetExtraColor(DAUB_pixel c) override { return std::exchange(extraColor, c); }
  int SetBkMode(int mode) override { return std::exchange(bkMode, mode); }
  void SetBlendMode(int mode, float alpha) override {
    blendMode = mode;
    blendAlpha = alpha;
  }
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
  DAUB_pixel extraColor = 0x33333333;
  int bkMode = -1;
  int blendMode = -1;
  float blendAlpha = -1.0f;
  int lineGap = -1;
  UINT lastDrawFlags = 0;
};

// A bitmap that only answers its effective scale.
class ScaleOnlyBitmap final : public DAUB_IBitmap {
 public:
  explicit ScaleOnlyBitmap(int scale256) : scale256_(scale256) {}
  int getWidth() override { return 10; }
  int getHeight() override { return 10; }
  bool resize(int, int) override { return false; }
  HDC getDC() override { return nullptr; }
  std::intptr_t Extended(int code, void*) override {
    return code == DAUB_EXT_GET_EFFECTIVE_SCALE ? scale256_ : 0;
  }

 private:
  int scale256_;
};
