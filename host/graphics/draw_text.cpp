// Font creation and the library's own one-call text functions.
#include "host/graphics/drawing.h"
#include "host/graphics/font.h"

namespace graphics {

DAUB_IFont* DAUB_CreateFont() {
  return new CairoFont;
}

void DAUB_MeasureText(const char* text, int* width, int* height) {
  CairoFont font;
  RECT rect{0, 0, 0, 0};
  const int measured = text != nullptr ? font.DrawText(nullptr, text, -1, &rect, DT_CALCRECT) : 0;
  if (width != nullptr) *width = measured > 0 ? rect.right : 0;
  if (height != nullptr) *height = measured;
}

void DAUB_DrawText(DAUB_IBitmap* bm, int x, int y, const char* text, DAUB_pixel color, float alpha,
                   int mode) {
  if (bm == nullptr || text == nullptr) return;
  CairoFont font;
  font.SetTextColor(color);
  font.SetBlendMode(mode, alpha);
  RECT rect{x, y, x, y};
  font.DrawText(bm, text, -1, &rect, DT_LEFT | DT_NOCLIP);
}

}  // namespace graphics
