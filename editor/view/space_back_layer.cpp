#include <strings.h>

#include <cmath>

#include "editor/view/daub_calls.h"
#include "editor/view/dpi_aware_font.h"
#include "editor/view/room_canvas.h"
#include "editor/view/shared_drawing.h"
#include "editor/view/space_render.h"

namespace {

constexpr DAUB_pixel kBackground = 0xFF202020;
constexpr DAUB_pixel kRoomLines = 0xFF707070;
constexpr DAUB_pixel kInfluence = 0xFF484848;
constexpr DAUB_pixel kSpeakerColor = 0xFFFFFF00;

void drawAxesAndRoom(const RoomCanvas& canvas, DAUB_IBitmap* back) {
  const ViewGeometry& v = canvas.view;
  daubCall<&HostApi::DAUB_LineInt>(back, v.cx - canvas.width / 2, v.cy, 2 * v.cx, v.cy, kRoomLines,
                                   1.0f, DAUB_BLIT_MODE_COPY, false);
  daubCall<&HostApi::DAUB_LineInt>(back, v.cx, v.cy - canvas.height / 2, v.cx, 2 * v.cy, kRoomLines,
                                   1.0f, DAUB_BLIT_MODE_COPY, false);
  const int rx = roundToPixel(v.sx * canvas.plugin.model.spaceScaleX);
  const int ry = roundToPixel(v.sy * canvas.plugin.model.spaceScaleY);
  daubCall<&HostApi::DAUB_DrawRect>(back, v.cx - rx, v.cy - ry, 2 * rx, 2 * ry, kRoomLines, 1.0f,
                                    DAUB_BLIT_MODE_COPY);
}

void drawInfluenceCircles(const RoomCanvas& canvas, DAUB_IBitmap* back) {
  for (const Speaker& speaker : canvas.plugin.model.speakers) {
    if (speaker.isLfe) continue;
    const ProjectedPoint p = projectSpeaker(canvas.view, canvas.plugin, speaker);
    const double k = p.sizeFactor * speaker.influence;
    drawEllipse(back, kInfluence, static_cast<float>(p.raised.x), static_cast<float>(p.raised.y),
                static_cast<float>(k * canvas.view.sx), static_cast<float>(k * canvas.view.sy),
                0.0f, 1.0f);
  }
}

bool anySpeakerSoloed(const PannerPlugin& plugin) {
  for (const Speaker& speaker : plugin.model.speakers) {
    if (speaker.solo) return true;
  }
  return false;
}

void drawCrosshair(const RoomCanvas& canvas, DAUB_IBitmap* back, ViewPoint at) {
  const int half = canvas.scaled(6);
  daubCall<&HostApi::DAUB_LineInt>(back, at.x - half, at.y, at.x + half, at.y, kSpeakerColor, 1.0f,
                                   DAUB_BLIT_MODE_COPY, false);
  daubCall<&HostApi::DAUB_LineInt>(back, at.x, at.y - half, at.x, at.y + half, kSpeakerColor, 1.0f,
                                   DAUB_BLIT_MODE_COPY, false);
}

// The icon turned so that its wide end faces the view centre.
void drawSpeakerIcon(const RoomCanvas& canvas, DAUB_IBitmap* back, const Speaker& speaker,
                     ViewPoint at, int icon) {
  if (speakerIcons[icon] == nullptr) return;
  const int half = canvas.scaled(kSpeakerIconSize / 2);
  const int size = canvas.scaled(kSpeakerIconSize);
  const auto angleRad = static_cast<float>(std::atan2(speaker.x, speaker.y));
  daubCall<&HostApi::DAUB_RotatedBlit>(back, speakerIcons[icon], at.x - half, at.y - half, size,
                                       size, 0.0f, 0.0f, 16.0f, 16.0f, angleRad, false, 1.0f,
                                       DAUB_BLIT_USE_ALPHA | DAUB_BLIT_FILTER_BILINEAR, 0.0f, 0.0f);
}

// Names like "speaker A" are shown without the word.
const char* speakerLabelText(const Speaker& speaker) {
  return strncasecmp(speaker.name, "speaker ", 8) == 0 ? speaker.name + 8 : speaker.name;
}

void drawSpeaker(const RoomCanvas& canvas, DAUB_IBitmap* back, int index, bool anySolo) {
  const Speaker& speaker = canvas.plugin.model.speakers[index];
  const int icon =
      speaker.mute || (anySolo && !speaker.solo) ? kSpeakerIconDimmed : kSpeakerIconActive;
  const ProjectedPoint p = projectSpeaker(canvas.view, canvas.plugin, speaker);
  if (index == canvas.plugin.view.dragSpeaker) drawCrosshair(canvas, back, p.floor);
  if (speaker.z != 0.0) {
    daubCall<&HostApi::DAUB_LineInt>(back, p.floor.x, p.floor.y, p.raised.x, p.raised.y,
                                     kSpeakerColor, 1.0f, DAUB_BLIT_MODE_COPY, true);
  }
  drawSpeakerIcon(canvas, back, speaker, p.raised, icon);
  if (canvas.plugin.model.layoutPreset != 0) return;
  const bool leftSide = speaker.x < 0.0;
  const int anchorX = p.raised.x + (leftSide ? -canvas.scaled(12) : canvas.scaled(12));
  drawSideLabel(canvas, back, speakerLabelText(speaker), anchorX, p.raised.y, leftSide);
}

}  // namespace

void drawBackLayer(const RoomCanvas& canvas, DAUB_IBitmap* back) {
  back->resize(canvas.width, canvas.height);
  daubCall<&HostApi::DAUB_Clear>(back, kBackground);
  drawAxesAndRoom(canvas, back);
  drawInfluenceCircles(canvas, back);
  const bool anySolo = anySpeakerSoloed(canvas.plugin);
  sharedLabelFont().SetTextColor(kSpeakerColor);
  for (int i = 0; i < canvas.plugin.speakerCount(); ++i) {
    if (!canvas.plugin.model.speakers[i].isLfe) drawSpeaker(canvas, back, i, anySolo);
  }
}
