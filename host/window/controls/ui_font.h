// The host controls' font: an Arial-metric sans face, 12 px em at 100 %, in regular and bold,
// and text laid out with it once so that painting only places glyphs.
#pragma once

#include <cairo.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/win32_types.h"

namespace winsys {

struct UiFont {
  cairo_scaled_font_t* font = nullptr;  // null when no face could be found
  double ascentPx = 0;
  double descentPx = 0;
  double heightPx() const { return ascentPx + descentPx; }
};

// [UI thread] Cached per scale for the process's lifetime.
const UiFont& uiFont(int scale256, bool bold = false);
// A font handle of the same face and size for DrawText, cached likewise.
HFONT uiFontHandle(int scale256);

// A line of text laid out at the origin: its glyphs and the x of every character boundary.
class ShapedText {
 public:
  ShapedText() = default;
  ShapedText(const UiFont& font, std::string_view utf8);

  const std::string& text() const { return text_; }
  double widthPx() const { return boundaries_.empty() ? 0.0 : boundaries_.back().xPx; }
  bool empty() const { return text_.empty(); }
  // x of the boundary before byte `index` (a boundary or the end).
  double xAt(std::size_t index) const;
  // The boundary nearest to x.
  std::size_t indexAt(double xPx) const;
  // The boundary before / after `index`, stepping whole characters.
  std::size_t previous(std::size_t index) const;
  std::size_t next(std::size_t index) const;
  // Draws the line with its left end at x and its baseline at y, in the current source.
  void draw(cairo_t* cr, const UiFont& font, double x, double baselineY) const;

 private:
  struct Boundary {
    std::size_t index;
    double xPx;
  };
  std::string text_;
  std::vector<cairo_glyph_t> glyphs_;
  std::vector<Boundary> boundaries_;  // from index 0 to text size
};

// Draws `text` centred vertically in `box`, aligned by `align` (-1 left, 0 centre, 1 right),
// clipped to the box.
void drawTextInBox(cairo_t* cr, const UiFont& font, const ShapedText& text, const RECT& box,
                   int align);

}  // namespace winsys

namespace winsys {

// A control's text, laid out again only when the text or the font changes.
class CachedText {
 public:
  const ShapedText& get(const UiFont& font, const std::string& text) {
    if (font_ != &font || shaped_.text() != text || !valid_) {
      shaped_ = ShapedText(font, text);
      font_ = &font;
      valid_ = true;
    }
    return shaped_;
  }

 private:
  const UiFont* font_ = nullptr;
  ShapedText shaped_;
  bool valid_ = false;
};

}  // namespace winsys
