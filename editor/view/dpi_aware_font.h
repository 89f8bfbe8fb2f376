// A font that looks like a host font but realises a host font of the right pixel height for each
// bitmap it draws into, so text stays sharp at every display scaling. Keeps four realised sizes,
// most recently used last.
#pragma once

#include <cstdint>

#include "platform/daub.h"

// The wrapper: implements the font interface over a LOGFONT template and a cache of host fonts.
class __DAUB_dpiAwareFont : public DAUB_IFont {
 public:
  static constexpr int kCacheEntries = 4;

  struct CacheEntry {
    DAUB_IFont* font;
    std::int32_t height;  // 0: not realised for any size
  };

  ~__DAUB_dpiAwareFont() override;
  __DAUB_dpiAwareFont(const __DAUB_dpiAwareFont&) = delete;
  __DAUB_dpiAwareFont& operator=(const __DAUB_dpiAwareFont&) = delete;

  void AttachHostFont(HFONT font, int flags) override;
  DAUB_pixel SetTextColor(DAUB_pixel color) override;
  DAUB_pixel SetBkColor(DAUB_pixel color) override;
  DAUB_pixel SetExtraColor(DAUB_pixel color) override;
  int SetBkMode(int mode) override;
  void SetBlendMode(int mode, float alpha) override;
  int DrawText(DAUB_IBitmap* bitmap, const char* text, int length, RECT* rect, UINT flags) override;
  DAUB_pixel GetTextColor() override;
  HFONT GetFontHandle() override;
  int GetLineHeight() override;
  void SetLineGap(int gap) override;
  virtual DAUB_IFont* MakeHostFont() = 0;

  // [UI thread] The host font for `bitmap`'s scale (null: unscaled), realised on a cache miss;
  // null when no host font can be made.
  DAUB_IFont* realizeForBitmap(DAUB_IBitmap* bitmap);

  const CacheEntry& cacheEntry(int index) const { return fontCache[index]; }

  LOGFONT logFont{};
  std::uint32_t (*flagsCallback)(int) = nullptr;

 protected:
  __DAUB_dpiAwareFont() = default;

 private:
  void forgetRealizedSizes();
  int findEntry(int height);
  void realizeEntry(CacheEntry& entry, int height, int width, std::uint32_t flags);
  void copyStateInto(DAUB_IFont& font);

  CacheEntry fontCache[kCacheEntries] = {};
  std::uint32_t lastFlags = 0;
  DAUB_pixel textColor = 0;
  DAUB_pixel bkColor = 0;
  DAUB_pixel extraColor = 0;
  int bkMode = 0;
  int blendMode = 0;
  float blendAlpha = 1.0f;
  int lineGap = 0;
};

// The font the views use: host fonts come from the host's DAUB_CreateFont.
class dpiAwareFont final : public __DAUB_dpiAwareFont {
 public:
  dpiAwareFont() = default;
  ~dpiAwareFont() override;
  dpiAwareFont(const dpiAwareFont&) = delete;
  dpiAwareFont& operator=(const dpiAwareFont&) = delete;
  DAUB_IFont* MakeHostFont() override;
};

// [UI thread] A new view font: Arial 12 px normal, or 11 px bold; transparent background.
dpiAwareFont* createViewFont(bool bold);

// The process-wide fonts, null until first use; deleted with the last instance.
extern dpiAwareFont* labelFont;
extern dpiAwareFont* boldFont;

// [UI thread] The shared fonts, made on first use.
dpiAwareFont& sharedLabelFont();
dpiAwareFont& sharedBoldFont();
