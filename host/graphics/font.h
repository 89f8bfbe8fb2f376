// Host fonts: font handles of the window layer (CreateFontIndirect/DeleteObject) and font objects
// of the graphics library that draw text into bitmaps with Cairo, faces found through fontconfig.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "platform/daub.h"
#include "platform/win32_types.h"

namespace graphics {

// What a font handle stands for. lfHeight > 0 is the cell height (ascent + descent) in pixels,
// lfHeight < 0 the em size, 0 the default 12 px cell.
struct FontDescription {
  std::string face;
  int height = 0;
  int weight = 400;
  bool italic = false;
};

// [UI thread] The window layer's font functions. DeleteObject ignores objects that are not
// fonts of this library, so the window layer can pass every object through it.
HFONT CreateFontIndirect(const LOGFONT* logFont);
void DeleteObject(HGDIOBJ object);

// The description behind a live handle of ours, or null.
const FontDescription* fontDescriptionOf(HFONT font);

// The family fontconfig picks for a description ("Arial" gives a metric-compatible face).
std::string resolveFontFamily(const FontDescription& description);

struct RealizedFont;

// A host font object. Until a handle is attached it draws with the default description. Draw
// flags: DT_LEFT/DT_CENTER/DT_RIGHT, DT_VCENTER and DT_BOTTOM (single line), DT_SINGLELINE
// (otherwise lines break at '\n'), DT_NOCLIP (otherwise clipped to the rectangle) and DT_CALCRECT
// (measure only: right and bottom are set to enclose the text). Text is UTF-8; bytes that are not
// valid UTF-8 are read as Latin-1. Colours are non-premultiplied ARGB taken as they are (an alpha
// of 0 draws nothing); background mode 2 (opaque) fills each line's box with the background colour.
class CairoFont final : public DAUB_IFont {
 public:
  CairoFont();
  ~CairoFont() override;
  CairoFont(const CairoFont&) = delete;
  CairoFont& operator=(const CairoFont&) = delete;

  void AttachHostFont(HFONT font, int flags) override;
  DAUB_pixel SetTextColor(DAUB_pixel color) override;
  DAUB_pixel SetBkColor(DAUB_pixel color) override;
  DAUB_pixel SetExtraColor(DAUB_pixel color) override;
  int SetBkMode(int mode) override;
  void SetBlendMode(int mode, float alpha) override;
  // Returns the text's height, or with DT_VCENTER/DT_BOTTOM the offset from the rectangle's top
  // to the text's bottom; 0 when nothing could be drawn or measured.
  int DrawText(DAUB_IBitmap* bitmap, const char* text, int length, RECT* rect, UINT flags) override;
  DAUB_pixel GetTextColor() override { return textColor_; }
  HFONT GetFontHandle() override { return handle_; }
  int GetLineHeight() override;
  void SetLineGap(int gap) override { lineGap_ = gap; }

  // The face family in use, for diagnostics and tests.
  std::string familyName();
  int attachFlags() const { return attachFlags_; }

 private:
  const RealizedFont* realized();
  void releaseHandle();

  HFONT handle_ = nullptr;
  bool ownsHandle_ = false;
  int attachFlags_ = 0;
  FontDescription description_;
  std::unique_ptr<RealizedFont> realized_;
  DAUB_pixel textColor_ = 0xFF000000;
  DAUB_pixel bkColor_ = 0xFFFFFFFF;
  DAUB_pixel extraColor_ = 0;  // kept for callers; this library draws no effects with it
  int bkMode_ = 1;             // transparent
  int blendMode_ = DAUB_BLIT_MODE_COPY;
  float blendAlpha_ = 1.0f;
  int lineGap_ = 0;
};

// The description fonts use before a handle is attached, and the default text functions use.
FontDescription defaultFontDescription();

// A face realised at a description's size for callers that place glyphs themselves (the window
// layer's controls). Kept for the process's lifetime; null when no face matches. [any thread]
struct SharedScaledFont {
  cairo_scaled_font_t* font;
  int ascentPx;
  int descentPx;
};
const SharedScaledFont* sharedScaledFont(const FontDescription& description);

}  // namespace graphics
