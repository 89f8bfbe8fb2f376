#include <strings.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "editor/view/daub_calls.h"
#include "editor/view/dpi_aware_font.h"
#include "editor/view/room_canvas.h"
#include "editor/view/space_render.h"

namespace {

constexpr DAUB_pixel kInputLabelColor = 0xFFC0C0C0;
constexpr DAUB_pixel kDotNumberColor = 0xFF000000;
constexpr DAUB_pixel kBandColor = 0xFF406070;
constexpr float kBandFillAlpha = 0.125f;
constexpr double kPi = 3.14159265358979323846;

// Inputs still called "channel N" show their number in the dot instead of a side label.
bool hasDefaultName(const InputChannel& input) {
  return strncasecmp(input.name, "channel ", 8) == 0;
}

// Labels first, so that every dot lies above every label. True when some input is soloed.
bool drawInputLabels(const RoomCanvas& canvas, DAUB_IBitmap* front) {
  bool anySolo = false;
  sharedLabelFont().SetTextColor(kInputLabelColor);
  for (int i = canvas.plugin.inputCount() - 1; i >= 0; --i) {
    const InputChannel& input = canvas.plugin.model.inputs[i];
    anySolo = anySolo || input.solo;
    if (hasDefaultName(input)) continue;
    const ViewPoint floor = projectInput(canvas.view, canvas.plugin, input).floor;
    const bool leftSide = input.x < 0.0;
    const int anchorX = floor.x + (leftSide ? -canvas.scaled(14) : canvas.scaled(14));
    drawSideLabel(canvas, front, input.name, anchorX, floor.y, leftSide);
  }
  return anySolo;
}

struct InputInk {
  DAUB_pixel color;
  float alpha;
};

void drawLine(DAUB_IBitmap* bitmap, int x0, int y0, int x1, int y1, InputInk ink, bool smooth) {
  daubCall<&HostApi::DAUB_LineInt>(bitmap, x0, y0, x1, y1, ink.color, ink.alpha,
                                   DAUB_BLIT_MODE_COPY, smooth);
}

// A plus for a selected input, a cross for a selected input that moves in reverse.
void drawSelectionMark(const RoomCanvas& canvas, DAUB_IBitmap* front, const InputChannel& input,
                       ViewPoint at, InputInk ink) {
  if (!input.reverse) {
    const int half = canvas.scaled(8);
    drawLine(front, at.x - half, at.y, at.x + half, at.y, ink, false);
    drawLine(front, at.x, at.y - half, at.x, at.y + half, ink, false);
    return;
  }
  const int half = canvas.scaled(7);
  drawLine(front, at.x - half, at.y - half, at.x + half, at.y + half, ink, true);
  drawLine(front, at.x - half, at.y + half, at.x + half, at.y - half, ink, true);
}

void drawDiffusion(const RoomCanvas& canvas, DAUB_IBitmap* front, const InputChannel& input,
                   const ProjectedPoint& p, InputInk ink) {
  double rx = canvas.view.sx * input.diffuse * p.sizeFactor;
  double ry = canvas.view.sy * input.diffuse * p.sizeFactor;
  if (input.diffuseBias > 0.0) rx *= 1.0 - input.diffuseBias;
  if (input.diffuseBias < 0.0) ry *= 1.0 + input.diffuseBias;
  drawEllipse(front, ink.color, static_cast<float>(p.raised.x), static_cast<float>(p.raised.y),
              static_cast<float>(rx), static_cast<float>(ry),
              static_cast<float>((1.0 - input.diffuseAngle) * kPi), ink.alpha);
}

void drawDotNumber(DAUB_IBitmap* front, int index, ViewPoint at) {
  char number[64];
  std::snprintf(number, sizeof number, "%d", index + 1);
  RECT box{at.x - 1, at.y, at.x, at.y + 1};
  sharedLabelFont().DrawText(front, number, -1, &box,
                             DT_NOCLIP | DT_SINGLELINE | DT_VCENTER | DT_CENTER);
}

void drawInput(const RoomCanvas& canvas, DAUB_IBitmap* front, int index, bool anySolo) {
  const InputChannel& input = canvas.plugin.model.inputs[index];
  const bool dimmed = input.mute || (anySolo && !input.solo);
  const InputInk ink{inputPalette[index & 7], dimmed ? 0.5f : 1.0f};
  const ProjectedPoint p = projectInput(canvas.view, canvas.plugin, input);
  if (input.selected) drawSelectionMark(canvas, front, input, p.floor, ink);
  if (input.z != 0.0) drawLine(front, p.floor.x, p.floor.y, p.raised.x, p.raised.y, ink, true);
  drawDiffusion(canvas, front, input, p, ink);
  daubCall<&HostApi::DAUB_FillCircle>(front, p.raised.x, p.raised.y, canvas.scaled(5), ink.color,
                                      ink.alpha, DAUB_BLIT_MODE_COPY, true);
  if (hasDefaultName(input)) drawDotNumber(front, index, p.raised);
}

}  // namespace

void drawInputLayer(const RoomCanvas& canvas, DAUB_IBitmap* front) {
  const bool anySolo = drawInputLabels(canvas, front);
  sharedLabelFont().SetTextColor(kDotNumberColor);
  // Last to first, so that lower indices end up on top.
  for (int i = canvas.plugin.inputCount() - 1; i >= 0; --i) drawInput(canvas, front, i, anySolo);
}

void drawSelectionBand(const RoomCanvas& canvas, DAUB_IBitmap* front) {
  if (!canvas.plugin.view.bandActive) return;
  const std::int32_t* band = canvas.plugin.view.bandRect;
  const int left = std::min(band[0], band[2]);
  const int top = std::min(band[1], band[3]);
  const int width = std::abs(band[2] - band[0]);
  const int height = std::abs(band[3] - band[1]);
  daubCall<&HostApi::DAUB_FillRect>(front, left, top, width, height, kBandColor, kBandFillAlpha,
                                    DAUB_BLIT_MODE_ADD);
  daubCall<&HostApi::DAUB_DrawRect>(front, left, top, width, height, kBandColor, 1.0f,
                                    DAUB_BLIT_MODE_COPY);
}
