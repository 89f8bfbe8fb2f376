#include "editor/view/space_render.h"

#include "editor/view/daub_calls.h"
#include "editor/view/dpi_aware_font.h"
#include "editor/view/room_canvas.h"
#include "editor/view/shared_drawing.h"

const DAUB_pixel inputPalette[kInputPaletteSize] = {
    0xFFFFFFFF, 0xFFFF4040, 0xFF32CD32, 0xFF6A5ACD, 0xFF1E90FF, 0xFF808080, 0xFF8B4513, 0xFFF0E68C,
};

namespace {

// The back layer is kept between paints unless the speakers changed or the size differs.
bool backLayerStale(DAUB_IBitmap* back, int width, int height, std::uint32_t flags) {
  return (flags & kChangeSpeakers) != 0 || back->getWidth() != width || back->getHeight() != height;
}

}  // namespace

void renderSpace(PannerPlugin& plugin, DAUB_IBitmap* front, DAUB_IBitmap* back,
                 std::uint32_t flags) {
  if (front == nullptr || (flags & (kChangeSpeakers | kChangeInputs)) == 0) return;
  makeSharedDrawingResources();
  if (back == nullptr) back = front;
  const int width = front->getWidth();
  const int height = front->getHeight();
  const RoomCanvas canvas{plugin, viewGeometry(plugin, width, height), width, height,
                          advisoryScale256(front)};
  if (backLayerStale(back, width, height, flags)) drawBackLayer(canvas, back);
  if (front != back) {
    daubCall<&HostApi::DAUB_Blit>(front, back, 0, 0, 0, 0, width, height, 1.0f,
                                  DAUB_BLIT_MODE_COPY);
  }
  drawInputLayer(canvas, front);
  drawSelectionBand(canvas, front);
}

void drawSideLabel(const RoomCanvas& canvas, DAUB_IBitmap* bitmap, const char* text, int anchorX,
                   int anchorY, bool leftSide) {
  const int half = canvas.scaled(5);
  RECT box{anchorX - half, anchorY - half, anchorX + half, anchorY + half};
  const UINT flags = DT_NOCLIP | DT_SINGLELINE | DT_VCENTER | (leftSide ? DT_RIGHT : DT_LEFT);
  sharedLabelFont().DrawText(bitmap, text, -1, &box, flags);
}
