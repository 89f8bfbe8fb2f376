#include "host/window/controls/ui_font.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <memory>

#include "host/graphics/font.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

graphics::FontDescription uiDescription(int scale256, bool bold) {
  // A negative height is the em size in pixels.
  const int emPx = std::max(1, static_cast<int>(std::lround(theme::kFontEmPx * scale256 / 256.0)));
  return {"Arial", -emPx, bold ? 700 : 400, false};
}

}  // namespace

const UiFont& uiFont(int scale256, bool bold) {
  static std::map<std::pair<int, bool>, UiFont> fonts;
  auto [it, added] = fonts.try_emplace({scale256, bold});
  if (added) {
    if (const graphics::SharedScaledFont* shared =
            graphics::sharedScaledFont(uiDescription(scale256, bold))) {
      it->second = {shared->font, static_cast<double>(shared->ascentPx),
                    static_cast<double>(shared->descentPx)};
    }
  }
  return it->second;
}

HFONT uiFontHandle(int scale256) {
  static auto& handles = *new std::map<int, HFONT>;  // never destroyed: the handles live on
  auto [it, added] = handles.try_emplace(scale256, nullptr);
  if (added) {
    const graphics::FontDescription description = uiDescription(scale256, false);
    LOGFONT logFont{};
    logFont.lfHeight = description.height;
    logFont.lfWeight = description.weight;
    std::strncpy(logFont.lfFaceName, description.face.c_str(), sizeof logFont.lfFaceName - 1);
    it->second = graphics::CreateFontIndirect(&logFont);
  }
  return it->second;
}

ShapedText::ShapedText(const UiFont& font, std::string_view utf8) : text_(utf8) {
  boundaries_.push_back({0, 0.0});
  if (font.font == nullptr || text_.empty()) return;
  cairo_glyph_t* glyphs = nullptr;
  int glyphCount = 0;
  cairo_text_cluster_t* clusters = nullptr;
  int clusterCount = 0;
  cairo_text_cluster_flags_t flags{};
  if (cairo_scaled_font_text_to_glyphs(font.font, 0, 0, text_.data(),
                                       static_cast<int>(text_.size()), &glyphs, &glyphCount,
                                       &clusters, &clusterCount, &flags) != CAIRO_STATUS_SUCCESS) {
    return;
  }
  glyphs_.assign(glyphs, glyphs + glyphCount);
  cairo_text_extents_t extents;
  cairo_scaled_font_glyph_extents(font.font, glyphs, glyphCount, &extents);
  std::size_t byte = 0;
  int glyph = 0;
  for (int c = 0; c < clusterCount; ++c) {
    byte += static_cast<std::size_t>(clusters[c].num_bytes);
    glyph += clusters[c].num_glyphs;
    const double x = glyph < glyphCount ? glyphs[glyph].x : extents.x_advance;
    boundaries_.push_back({byte, x});
  }
  cairo_glyph_free(glyphs);
  cairo_text_cluster_free(clusters);
}

double ShapedText::xAt(std::size_t index) const {
  for (const Boundary& b : boundaries_) {
    if (b.index >= index) return b.xPx;
  }
  return widthPx();
}

std::size_t ShapedText::indexAt(double xPx) const {
  std::size_t best = 0;
  double bestDistance = 1e300;
  for (const Boundary& b : boundaries_) {
    const double distance = std::fabs(b.xPx - xPx);
    if (distance < bestDistance) {
      best = b.index;
      bestDistance = distance;
    }
  }
  return best;
}

std::size_t ShapedText::previous(std::size_t index) const {
  std::size_t before = 0;
  for (const Boundary& b : boundaries_) {
    if (b.index >= index) break;
    before = b.index;
  }
  return before;
}

std::size_t ShapedText::next(std::size_t index) const {
  for (const Boundary& b : boundaries_) {
    if (b.index > index) return b.index;
  }
  return boundaries_.back().index;
}

void ShapedText::draw(cairo_t* cr, const UiFont& font, double x, double baselineY) const {
  if (glyphs_.empty() || font.font == nullptr) return;
  std::vector<cairo_glyph_t> placed = glyphs_;
  for (cairo_glyph_t& g : placed) {
    g.x += x;
    g.y += baselineY;
  }
  cairo_set_scaled_font(cr, font.font);
  cairo_show_glyphs(cr, placed.data(), static_cast<int>(placed.size()));
}

void drawTextInBox(cairo_t* cr, const UiFont& font, const ShapedText& text, const RECT& box,
                   int align) {
  if (text.empty()) return;
  const double boxWidth = box.right - box.left;
  double x = box.left;
  if (align == 0) x = box.left + std::floor((boxWidth - text.widthPx()) / 2 + 0.5);
  if (align > 0) x = box.right - text.widthPx();
  const double baseline =
      box.top + std::floor((box.bottom - box.top - font.heightPx()) / 2 + 0.5) + font.ascentPx;
  cairo_save(cr);
  cairo_rectangle(cr, box.left, box.top, boxWidth, box.bottom - box.top);
  cairo_clip(cr);
  text.draw(cr, font, x, baseline);
  cairo_restore(cr);
}

}  // namespace winsys
