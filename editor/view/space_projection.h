// Where the room's points land in a view bitmap: the floor position, the position raised by height
// (a perspective from above the room's centre) and the size factor of raised things. Shared by the
// drawing and the mouse editing so that what is hit is exactly what is drawn.
#pragma once

#include <cmath>

#include "model/panner_plugin.h"

struct ViewPoint {
  int x;
  int y;
};

// The projection of one bitmap: centre in pixels, pixels per model unit.
struct ViewGeometry {
  int cx;
  int cy;
  double sx;
  double sy;
};

struct ProjectedPoint {
  ViewPoint floor;
  ViewPoint raised;
  double sizeFactor;  // 1 on the floor, 1 + 0.25 * spaceScaleZ * z when raised
};

// Round to nearest in the current rounding mode.
inline int roundToPixel(double value) {
  return static_cast<int>(std::nearbyint(value));
}

// A size given for 100 % at DPI scale `scale256` (256 = 100 %), truncated toward zero.
inline int scaledSize(int size100, int scale256) {
  return size100 * scale256 / 256;
}

inline ViewGeometry viewGeometry(const PannerPlugin& plugin, int width, int height) {
  return {width / 2, height / 2, width * plugin.view.zoom, height * plugin.view.zoom};
}

// dx, dy: the floor offsets from the centre in pixels (y up).
inline ProjectedPoint projectOffsets(const ViewGeometry& view, const PannerPlugin& plugin, int dx,
                                     int dy, double z) {
  const ViewPoint floor{view.cx + dx, view.cy - dy};
  if (z == 0.0) return {floor, floor, 1.0};
  const double lift = 0.25 * plugin.model.spaceScaleZ * z;
  const double shift = view.sy * lift;
  const ViewPoint raised{floor.x + roundToPixel((dx / view.sx) * shift),
                         floor.y + roundToPixel((-dy / view.sy) * shift)};
  return {floor, raised, 1.0 + lift};
}

// Inputs are placed in the view's unit square, not scaled by the room size.
inline ProjectedPoint projectInput(const ViewGeometry& view, const PannerPlugin& plugin,
                                   const InputChannel& input) {
  return projectOffsets(view, plugin, roundToPixel(view.sx * input.x),
                        roundToPixel(view.sy * input.y), input.z);
}

inline ProjectedPoint projectSpeaker(const ViewGeometry& view, const PannerPlugin& plugin,
                                     const Speaker& speaker) {
  return projectOffsets(view, plugin, roundToPixel(plugin.model.spaceScaleX * speaker.x * view.sx),
                        roundToPixel(plugin.model.spaceScaleY * speaker.y * view.sy), speaker.z);
}
