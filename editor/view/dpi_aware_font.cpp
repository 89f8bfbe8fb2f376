#include "editor/view/dpi_aware_font.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "plugin/host_api.h"
#include "plugin/window_layer.h"

namespace {

constexpr std::uint32_t kIgnoredHostFlag = 4;

}  // namespace

__DAUB_dpiAwareFont::~__DAUB_dpiAwareFont() {
  for (CacheEntry& entry : fontCache) delete entry.font;
}

void __DAUB_dpiAwareFont::AttachHostFont(HFONT /*font*/, int /*flags*/) {}

DAUB_pixel __DAUB_dpiAwareFont::SetTextColor(DAUB_pixel color) {
  return std::exchange(textColor, color);
}

DAUB_pixel __DAUB_dpiAwareFont::SetBkColor(DAUB_pixel color) {
  return std::exchange(bkColor, color);
}

DAUB_pixel __DAUB_dpiAwareFont::SetExtraColor(DAUB_pixel color) {
  return std::exchange(extraColor, color);
}

int __DAUB_dpiAwareFont::SetBkMode(int mode) {
  return std::exchange(bkMode, mode);
}

void __DAUB_dpiAwareFont::SetBlendMode(int mode, float alpha) {
  blendMode = mode;
  blendAlpha = alpha;
}

DAUB_pixel __DAUB_dpiAwareFont::GetTextColor() {
  return textColor;
}

HFONT __DAUB_dpiAwareFont::GetFontHandle() {
  return nullptr;
}

void __DAUB_dpiAwareFont::SetLineGap(int gap) {
  lineGap = gap;
}

int __DAUB_dpiAwareFont::DrawText(DAUB_IBitmap* bitmap, const char* text, int length, RECT* rect,
                                  UINT flags) {
  DAUB_IFont* font = realizeForBitmap(bitmap);
  if (font == nullptr) return 0;
  // Measuring must not disturb what the host font was last told to draw with.
  if ((flags & DT_CALCRECT) == 0) copyStateInto(*font);
  return font->DrawText(bitmap, text, length, rect, flags);
}

int __DAUB_dpiAwareFont::GetLineHeight() {
  DAUB_IFont* font = realizeForBitmap(nullptr);
  return font != nullptr ? font->GetLineHeight() : 10;
}

DAUB_IFont* __DAUB_dpiAwareFont::realizeForBitmap(DAUB_IBitmap* bitmap) {
  std::uint32_t flags = flagsCallback != nullptr ? flagsCallback(0) & ~kIgnoredHostFlag : 0;
  if (flags != lastFlags) {
    lastFlags = flags;
    forgetRealizedSizes();
  }
  int height = logFont.lfHeight;
  int width = logFont.lfWidth;
  const int scale256 =
      bitmap != nullptr ? static_cast<int>(bitmap->Extended(DAUB_EXT_GET_EFFECTIVE_SCALE, nullptr))
                        : 0;
  if (scale256 != 0) {
    height = height * scale256 / 256;
    width = width * scale256 / 256;
    if (scale256 != 256) flags |= DAUB_FONT_FLAG_SCALED;
  }
  const int index = findEntry(height);
  std::rotate(fontCache + index, fontCache + index + 1, fontCache + kCacheEntries);
  CacheEntry& entry = fontCache[kCacheEntries - 1];
  if (entry.font == nullptr) entry.font = MakeHostFont();
  if (entry.font == nullptr) return nullptr;
  if (entry.height == 0) realizeEntry(entry, height, width, flags);
  return entry.font;
}

// The font objects stay; only their sizes are forgotten, newest first, down to the first unused.
void __DAUB_dpiAwareFont::forgetRealizedSizes() {
  for (int i = kCacheEntries - 1; i >= 0 && fontCache[i].height != 0; --i) {
    fontCache[i].height = 0;
  }
}

// The newest entry of this height or an unused one; else the least recently used, made unused.
int __DAUB_dpiAwareFont::findEntry(int height) {
  for (int i = kCacheEntries - 1; i >= 0; --i) {
    if (fontCache[i].height == height || fontCache[i].height == 0) return i;
  }
  fontCache[0].height = 0;
  return 0;
}

void __DAUB_dpiAwareFont::realizeEntry(CacheEntry& entry, int height, int width,
                                       std::uint32_t flags) {
  entry.height = height;
  LOGFONT sized = logFont;
  sized.lfHeight = height;
  sized.lfWidth = width;
  const HFONT handle = plaskCall<PlaskId::CreateFontIndirect>(&sized);
  entry.font->AttachHostFont(handle, static_cast<int>(flags) | DAUB_FONT_FLAG_OWNS_HANDLE);
}

void __DAUB_dpiAwareFont::copyStateInto(DAUB_IFont& font) {
  font.SetTextColor(textColor);
  font.SetBkColor(bkColor);
  font.SetExtraColor(extraColor);
  font.SetBkMode(bkMode);
  font.SetBlendMode(blendMode, blendAlpha);
  font.SetLineGap(lineGap);
}

dpiAwareFont::~dpiAwareFont() = default;

DAUB_IFont* dpiAwareFont::MakeHostFont() {
  return hostApi.DAUB_CreateFont != nullptr ? hostApi.DAUB_CreateFont() : nullptr;
}

dpiAwareFont* createViewFont(bool bold) {
  auto* font = new dpiAwareFont();
  font->logFont.lfHeight = bold ? 11 : 12;
  font->logFont.lfWeight = bold ? 700 : 400;
  std::strcpy(font->logFont.lfFaceName, "Arial");
  font->SetBkMode(0);
  return font;
}

dpiAwareFont* labelFont = nullptr;
dpiAwareFont* boldFont = nullptr;

dpiAwareFont& sharedLabelFont() {
  if (labelFont == nullptr) labelFont = createViewFont(false);
  return *labelFont;
}

dpiAwareFont& sharedBoldFont() {
  if (boldFont == nullptr) boldFont = createViewFont(true);
  return *boldFont;
}
