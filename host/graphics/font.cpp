#include "host/graphics/font.h"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>
#include <map>
#include <mutex>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/graphics/bitmap.h"
#include "host/graphics/paint_state.h"

namespace graphics {

// A face at one pixel size, ready to lay out and draw.
struct RealizedFont {
  cairo_scaled_font_t* font = nullptr;
  int ascentPx = 0;
  int descentPx = 0;
  std::string family;

  RealizedFont() = default;
  RealizedFont(const RealizedFont&) = delete;
  RealizedFont& operator=(const RealizedFont&) = delete;
  ~RealizedFont() { cairo_scaled_font_destroy(font); }
  int cellHeight() const { return ascentPx + descentPx; }
};

namespace {

constexpr int kDefaultCellHeightPx = 12;
constexpr int kOpaqueBackground = 2;
constexpr UINT kDrawBottom = 0x8;  // DT_BOTTOM, single line only

// ---- Font handles ----------------------------------------------------------------------------

std::mutex& handleMutex() {
  static std::mutex mutex;
  return mutex;
}

std::unordered_set<const FontDescription*>& liveHandles() {
  static std::unordered_set<const FontDescription*> handles;
  return handles;
}

// ---- Faces -------------------------------------------------------------------------------------

struct Face {
  cairo_font_face_t* face = nullptr;
  std::string family;
  double ascentPerEm = 0.9;  // of the face's design
  double descentPerEm = 0.2;
  double cellPerEm() const { return ascentPerEm + descentPerEm; }
};

std::string lowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// The rendering settings are fixed here rather than taken from the machine's fontconfig setup, so
// text looks the same (and reference images hold) everywhere.
void setRenderingOptions(FcPattern* pattern) {
  const char* objects[] = {FC_ANTIALIAS, FC_HINTING,    FC_HINT_STYLE,     FC_AUTOHINT,
                           FC_RGBA,      FC_LCD_FILTER, FC_EMBEDDED_BITMAP};
  for (const char* object : objects) FcPatternDel(pattern, object);
  FcPatternAddBool(pattern, FC_ANTIALIAS, FcTrue);
  FcPatternAddBool(pattern, FC_HINTING, FcTrue);
  FcPatternAddInteger(pattern, FC_HINT_STYLE, FC_HINT_SLIGHT);
  FcPatternAddBool(pattern, FC_AUTOHINT, FcFalse);
  FcPatternAddInteger(pattern, FC_RGBA, FC_RGBA_NONE);
  FcPatternAddBool(pattern, FC_EMBEDDED_BITMAP, FcFalse);
}

FcPattern* matchPattern(const FontDescription& description) {
  FcPattern* pattern = FcPatternCreate();
  const std::string family = description.face.empty() ? "sans-serif" : description.face;
  FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(family.c_str()));
  FcPatternAddInteger(pattern, FC_WEIGHT, FcWeightFromOpenType(description.weight));
  FcPatternAddInteger(pattern, FC_SLANT, description.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultNoMatch;
  FcPattern* matched = FcFontMatch(nullptr, pattern, &result);
  FcPatternDestroy(pattern);
  if (matched != nullptr) setRenderingOptions(matched);
  return matched;
}

std::string familyOf(FcPattern* matched) {
  FcChar8* family = nullptr;
  if (FcPatternGetString(matched, FC_FAMILY, 0, &family) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(family);
}

cairo_font_options_t* newFontOptions(bool hinted) {
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options,
                                    hinted ? CAIRO_HINT_STYLE_SLIGHT : CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options,
                                      hinted ? CAIRO_HINT_METRICS_ON : CAIRO_HINT_METRICS_OFF);
  return options;
}

cairo_scaled_font_t* newScaledFont(cairo_font_face_t* face, double emPx, bool hinted) {
  cairo_matrix_t fontMatrix, identity;
  cairo_matrix_init_scale(&fontMatrix, emPx, emPx);
  cairo_matrix_init_identity(&identity);
  cairo_font_options_t* options = newFontOptions(hinted);
  cairo_scaled_font_t* font = cairo_scaled_font_create(face, &fontMatrix, &identity, options);
  cairo_font_options_destroy(options);
  return font;
}

void readDesignMetrics(Face& face) {
  constexpr double kProbeEmPx = 1000.0;
  cairo_scaled_font_t* probe = newScaledFont(face.face, kProbeEmPx, false);
  cairo_font_extents_t extents;
  cairo_scaled_font_extents(probe, &extents);
  cairo_scaled_font_destroy(probe);
  if (extents.ascent + extents.descent < 0.1 * kProbeEmPx) return;  // keep the fallbacks
  face.ascentPerEm = extents.ascent / kProbeEmPx;
  face.descentPerEm = extents.descent / kProbeEmPx;
}

// Faces are matched once per (face, weight, italic) and kept for the process's lifetime.
const Face* findFace(const FontDescription& description) {
  static std::mutex mutex;
  static std::map<std::tuple<std::string, int, bool>, Face> faces;
  std::lock_guard lock(mutex);
  const auto key =
      std::make_tuple(lowerCase(description.face), description.weight, description.italic);
  if (auto it = faces.find(key); it != faces.end()) return &it->second;
  FcPattern* matched = matchPattern(description);
  if (matched == nullptr) return nullptr;
  Face face;
  face.face = cairo_ft_font_face_create_for_pattern(matched);
  face.family = familyOf(matched);
  FcPatternDestroy(matched);
  if (cairo_font_face_status(face.face) != CAIRO_STATUS_SUCCESS) {
    cairo_font_face_destroy(face.face);
    return nullptr;
  }
  readDesignMetrics(face);
  return &faces.emplace(key, face).first->second;
}

double emSizePx(const FontDescription& description, const Face& face) {
  if (description.height < 0) return -static_cast<double>(description.height);
  const int cellPx = description.height > 0 ? description.height : kDefaultCellHeightPx;
  return cellPx / face.cellPerEm();
}

// A cell height asked for is kept exactly; an em size gives the face's own cell.
void setCellMetrics(RealizedFont& font, const FontDescription& description, const Face& face,
                    double emPx) {
  font.ascentPx = static_cast<int>(std::lround(face.ascentPerEm * emPx));
  if (description.height >= 0) {
    const int cellPx = description.height > 0 ? description.height : kDefaultCellHeightPx;
    font.descentPx = cellPx - font.ascentPx;
  } else {
    font.descentPx = static_cast<int>(std::lround(face.descentPerEm * emPx));
  }
}

std::unique_ptr<RealizedFont> realize(const FontDescription& description) {
  const Face* face = findFace(description);
  if (face == nullptr) return nullptr;
  auto realized = std::make_unique<RealizedFont>();
  const double emPx = emSizePx(description, *face);
  realized->font = newScaledFont(face->face, emPx, true);
  if (cairo_scaled_font_status(realized->font) != CAIRO_STATUS_SUCCESS) return nullptr;
  setCellMetrics(*realized, description, *face, emPx);
  realized->family = face->family;
  return realized;
}

// ---- Text --------------------------------------------------------------------------------------

bool isContinuation(unsigned char c) {
  return (c & 0xC0) == 0x80;
}

// Length of the well-formed UTF-8 sequence at `i`, or 0.
std::size_t sequenceLength(std::string_view bytes, std::size_t i) {
  const auto lead = static_cast<unsigned char>(bytes[i]);
  if (lead < 0x80) return 1;
  std::size_t length = 0;
  unsigned char low = 0x80, high = 0xBF;  // allowed range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;   // overlong
    if (lead == 0xED) high = 0x9F;  // surrogates
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (i + length > bytes.size()) return 0;
  const auto second = static_cast<unsigned char>(bytes[i + 1]);
  if (second < low || second > high) return 0;
  for (std::size_t k = 2; k < length; ++k) {
    if (!isContinuation(static_cast<unsigned char>(bytes[i + k]))) return 0;
  }
  return length;
}

// Names from old setups may be Latin-1: such bytes are kept as the characters they were.
std::string toValidUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size();) {
    if (const std::size_t length = sequenceLength(bytes, i); length > 0) {
      text.append(bytes.substr(i, length));
      i += length;
      continue;
    }
    const auto c = static_cast<unsigned char>(bytes[i++]);
    text += static_cast<char>(0xC0 | (c >> 6));
    text += static_cast<char>(0x80 | (c & 0x3F));
  }
  return text;
}

struct TextLine {
  cairo_glyph_t* glyphs = nullptr;
  int glyphCount = 0;
  int widthPx = 0;
};

// Glyph runs of a block of text, laid out at the origin.
class TextBlock {
 public:
  TextBlock(const RealizedFont& font, std::string_view text, bool singleLine) {
    std::size_t start = 0;
    while (true) {
      const std::size_t end = singleLine ? std::string_view::npos : text.find('\n', start);
      std::string_view line = text.substr(start, end == std::string_view::npos ? end : end - start);
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      lines_.push_back(shape(font, line));
      if (end == std::string_view::npos) break;
      start = end + 1;
    }
  }
  ~TextBlock() {
    for (TextLine& line : lines_) cairo_glyph_free(line.glyphs);
  }
  TextBlock(const TextBlock&) = delete;
  TextBlock& operator=(const TextBlock&) = delete;

  std::vector<TextLine>& lines() { return lines_; }
  int widthPx() const {
    int width = 0;
    for (const TextLine& line : lines_) width = std::max(width, line.widthPx);
    return width;
  }

 private:
  static TextLine shape(const RealizedFont& font, std::string_view text) {
    TextLine line;
    if (text.empty()) return line;
    if (cairo_scaled_font_text_to_glyphs(
            font.font, 0, 0, text.data(), static_cast<int>(text.size()), &line.glyphs,
            &line.glyphCount, nullptr, nullptr, nullptr) != CAIRO_STATUS_SUCCESS) {
      return TextLine{};
    }
    cairo_text_extents_t extents;
    cairo_scaled_font_glyph_extents(font.font, line.glyphs, line.glyphCount, &extents);
    line.widthPx = static_cast<int>(std::lround(extents.x_advance));
    return line;
  }

  std::vector<TextLine> lines_;
};

struct TextPlacement {
  int topPx;         // top of the first line's cell
  int lineStridePx;  // from one line's top to the next
  int heightPx;      // of the whole block
};

TextPlacement placeVertically(const RealizedFont& font, const RECT& rect, UINT flags, int lineCount,
                              int lineGapPx) {
  const int stride = font.cellHeight() + lineGapPx;
  const int height = lineCount * font.cellHeight() + (lineCount - 1) * lineGapPx;
  int top = rect.top;
  if ((flags & DT_SINGLELINE) != 0 && (flags & DT_VCENTER) != 0) {
    top = rect.top + static_cast<int>(std::floor((rect.bottom - rect.top - height) / 2.0 + 0.5));
  } else if ((flags & DT_SINGLELINE) != 0 && (flags & kDrawBottom) != 0) {
    top = rect.bottom - height;
  }
  return {top, stride, height};
}

int alignedLeft(const RECT& rect, UINT flags, int widthPx) {
  if ((flags & DT_RIGHT) != 0) return rect.right - widthPx;
  if ((flags & DT_CENTER) != 0) {
    return static_cast<int>(std::floor((rect.left + rect.right - widthPx) / 2.0 + 0.5));
  }
  return rect.left;
}

}  // namespace

// ---- Handles ---------------------------------------------------------------------------------

HFONT CreateFontIndirect(const LOGFONT* logFont) {
  if (logFont == nullptr) return nullptr;
  auto* description = new FontDescription;
  description->face.assign(logFont->lfFaceName,
                           strnlen(logFont->lfFaceName, sizeof(logFont->lfFaceName)));
  description->height = logFont->lfHeight;
  description->weight = logFont->lfWeight > 0 ? std::min(logFont->lfWeight, 1000) : 400;
  description->italic = logFont->lfItalic != 0;
  std::lock_guard lock(handleMutex());
  liveHandles().insert(description);
  return reinterpret_cast<HFONT>(description);
}

void DeleteObject(HGDIOBJ object) {
  const auto* description = reinterpret_cast<const FontDescription*>(object);
  {
    std::lock_guard lock(handleMutex());
    if (liveHandles().erase(description) == 0) return;
  }
  delete description;
}

const FontDescription* fontDescriptionOf(HFONT font) {
  const auto* description = reinterpret_cast<const FontDescription*>(font);
  std::lock_guard lock(handleMutex());
  return liveHandles().contains(description) ? description : nullptr;
}

std::string resolveFontFamily(const FontDescription& description) {
  const Face* face = findFace(description);
  return face != nullptr ? face->family : std::string{};
}

FontDescription defaultFontDescription() {
  return {"Arial", kDefaultCellHeightPx, 400, false};
}

const SharedScaledFont* sharedScaledFont(const FontDescription& description) {
  static std::mutex mutex;
  static std::map<std::tuple<std::string, int, int, bool>,
                  std::pair<std::unique_ptr<RealizedFont>, SharedScaledFont>>
      fonts;
  std::lock_guard lock(mutex);
  const auto key = std::make_tuple(lowerCase(description.face), description.height,
                                   description.weight, description.italic);
  auto it = fonts.find(key);
  if (it == fonts.end()) {
    std::unique_ptr<RealizedFont> realized = realize(description);
    if (realized == nullptr) return nullptr;
    const SharedScaledFont shared{realized->font, realized->ascentPx, realized->descentPx};
    it = fonts.emplace(key, std::make_pair(std::move(realized), shared)).first;
  }
  return &it->second.second;
}

// ---- Font objects ------------------------------------------------------------------------------

CairoFont::CairoFont() : description_(defaultFontDescription()) {}

CairoFont::~CairoFont() {
  releaseHandle();
}

void CairoFont::releaseHandle() {
  if (ownsHandle_ && handle_ != nullptr) DeleteObject(reinterpret_cast<HGDIOBJ>(handle_));
  handle_ = nullptr;
  ownsHandle_ = false;
}

void CairoFont::AttachHostFont(HFONT font, int flags) {
  if (font != handle_) releaseHandle();
  handle_ = font;
  ownsHandle_ = (flags & DAUB_FONT_FLAG_OWNS_HANDLE) != 0;
  attachFlags_ = flags;
  // The description is copied: a handle lent without ownership may be deleted by its owner.
  const FontDescription* description = fontDescriptionOf(font);
  description_ = description != nullptr ? *description : defaultFontDescription();
  realized_.reset();
}

DAUB_pixel CairoFont::SetTextColor(DAUB_pixel color) {
  return std::exchange(textColor_, color);
}
DAUB_pixel CairoFont::SetBkColor(DAUB_pixel color) {
  return std::exchange(bkColor_, color);
}
DAUB_pixel CairoFont::SetExtraColor(DAUB_pixel color) {
  return std::exchange(extraColor_, color);
}
int CairoFont::SetBkMode(int mode) {
  return std::exchange(bkMode_, mode);
}

void CairoFont::SetBlendMode(int mode, float alpha) {
  blendMode_ = mode;
  blendAlpha_ = alpha;
}

const RealizedFont* CairoFont::realized() {
  if (realized_ == nullptr) realized_ = realize(description_);
  return realized_.get();
}

int CairoFont::GetLineHeight() {
  const RealizedFont* font = realized();
  return font != nullptr ? font->cellHeight() + lineGap_ : 0;
}

std::string CairoFont::familyName() {
  const RealizedFont* font = realized();
  return font != nullptr ? font->family : std::string{};
}

int CairoFont::DrawText(DAUB_IBitmap* bitmap, const char* text, int length, RECT* rect,
                        UINT flags) {
  const RealizedFont* font = realized();
  if (text == nullptr || rect == nullptr || font == nullptr) return 0;
  const std::size_t byteCount =
      length < 0 ? std::strlen(text) : strnlen(text, static_cast<std::size_t>(length));
  const std::string utf8 = toValidUtf8({text, byteCount});
  TextBlock block(*font, utf8, (flags & DT_SINGLELINE) != 0);
  const TextPlacement placement =
      placeVertically(*font, *rect, flags, static_cast<int>(block.lines().size()), lineGap_);
  const bool placedFromTop =
      (flags & DT_SINGLELINE) == 0 || (flags & (DT_VCENTER | kDrawBottom)) == 0;
  const int result =
      placedFromTop ? placement.heightPx : placement.topPx + placement.heightPx - rect->top;
  if ((flags & DT_CALCRECT) != 0) {
    rect->right = rect->left + block.widthPx();
    rect->bottom = rect->top + placement.heightPx;
    return placement.heightPx;
  }
  CairoBitmap* target = asCairoBitmap(bitmap);
  if (target == nullptr) return 0;

  const DrawScope scope(*target);
  cairo_t* cr = scope.cr();
  if ((flags & DT_NOCLIP) == 0) {
    cairo_rectangle(cr, rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top);
    cairo_clip(cr);
  }
  cairo_set_scaled_font(cr, font->font);
  int lineTop = placement.topPx;
  for (TextLine& line : block.lines()) {
    const int left = alignedLeft(*rect, flags, line.widthPx);
    if (bkMode_ == kOpaqueBackground) {
      cairo_rectangle(cr, left, lineTop, line.widthPx, font->cellHeight());
      setPaint(cr, bkColor_, blendAlpha_, blendMode_);
      cairo_fill(cr);
    }
    for (int g = 0; g < line.glyphCount; ++g) {
      line.glyphs[g].x += left;
      line.glyphs[g].y += lineTop + font->ascentPx;
    }
    setPaint(cr, textColor_, blendAlpha_, blendMode_);
    cairo_show_glyphs(cr, line.glyphs, line.glyphCount);
    lineTop += placement.lineStridePx;
  }
  return result;
}

}  // namespace graphics
