#include <cmath>

#include "editor/view/daub_calls.h"
#include "editor/view/space_render.h"

namespace {

constexpr int kEllipseSegments = 64;
// 2 pi as a float, split into equal steps.
constexpr float kSegmentAngleRad = 6.2831854820251465f * 0.015625f;

}  // namespace

void drawEllipse(DAUB_IBitmap* bitmap, DAUB_pixel color, float cx, float cy, float rx, float ry,
                 float angleRad, float alpha) {
  const float s = std::sin(angleRad);
  const float c = std::cos(angleRad);
  auto pointAt = [&](int j, float& px, float& py) {
    const float t = static_cast<float>(j) * kSegmentAngleRad;
    const float x = std::cos(t) * rx;
    const float y = std::sin(t) * ry;
    px = cx + c * x - s * y;
    py = cy - (s * x + c * y);
  };
  float x0 = 0, y0 = 0;
  pointAt(0, x0, y0);
  for (int j = 1; j <= kEllipseSegments; ++j) {
    float x1 = 0, y1 = 0;
    pointAt(j, x1, y1);
    daubCall<&HostApi::DAUB_Line>(bitmap, x0, y0, x1, y1, color, alpha, DAUB_BLIT_MODE_COPY, true);
    x0 = x1;
    y0 = y1;
  }
}
