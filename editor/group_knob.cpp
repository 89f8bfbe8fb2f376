// The knob's step in each group mode. Moves that could leave the visible square first shrink the
// shared step over all selected inputs in index order (later inputs see the shrunken step), then
// apply it, so the selection moves as one and stops when its first member reaches the border.
#include "editor/group_knob.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "editor/group_edit.h"
#include "editor/view/space_mouse_edit.h"

namespace {

// The border a coordinate lies beyond: -limit, limit, or 0 inside.
double borderBeyond(double coordinate, double limit) {
  if (coordinate < -limit) return -limit;
  return coordinate > limit ? limit : 0.0;
}

double& axisOf(InputChannel& input, int mode) {
  if (mode == kGroupLeftRight) return input.x;
  return mode == kGroupBackFront ? input.y : input.z;
}

void moveAlongAxis(PannerPlugin& plugin, int mode, double d, double limit) {
  forEachSelectedInput(plugin, [&](InputChannel& input) {
    const double c = axisOf(input, mode);
    const double s = reverseSign(input);
    if (const double edge = borderBeyond(c + s * d, limit); edge != 0.0) d = s * (edge - c);
  });
  forEachSelectedInput(plugin,
                       [&](InputChannel& input) { axisOf(input, mode) += reverseSign(input) * d; });
}

// q = +1 moves along (1, 1), q = -1 along (1, -1).
void moveAlongDiagonal(PannerPlugin& plugin, double q, double d, double limit) {
  double dx = d;
  double dy = q * d;
  forEachSelectedInput(plugin, [&](InputChannel& input) {
    const double s = reverseSign(input);
    const double nx = input.x + s * dx;
    const double ny = input.y + s * dy;
    if (const double e = borderBeyond(nx, limit); e != 0.0) {
      dx = s * (e - input.x);
      dy = q * (e - input.x);
    }
    if (const double f = borderBeyond(ny, limit); f != 0.0) {
      dy = s * (f - input.y);
      dx = q * (f - input.y);
    }
  });
  forEachSelectedInput(plugin, [&](InputChannel& input) {
    input.x += reverseSign(input) * dx;
    input.y += reverseSign(input) * dy;
  });
}

void expandOrContract(PannerPlugin& plugin, double d, double limit) {
  forEachSelectedInput(plugin, [&](InputChannel& input) {
    const double s = reverseSign(input);
    const double bearingRad = std::atan2(input.y, input.x);
    const double r = radiusOf(input);
    double nr = r + s * d;
    if (nr < kMinRadius) {
      d = s * (kMinRadius - r);
      nr = kMinRadius;
    }
    const double c = std::cos(bearingRad);
    if (const double e = borderBeyond(c * nr, limit); e != 0.0) d = s * (e / c - r);
    const double sn = std::sin(bearingRad);
    if (const double f = borderBeyond(sn * nr, limit); f != 0.0) d = s * (f / sn - r);
  });
  forEachSelectedInput(plugin, [&](InputChannel& input) {
    setRadius(input, std::fmax(radiusOf(input) + reverseSign(input) * d, kMinRadius));
  });
}

// d = 0.25 is a quarter turn clockwise seen from above. No border: the distance is kept.
void rotate(PannerPlugin& plugin, double d) {
  const double turnRad = -2.0 * std::numbers::pi * d;
  forEachSelectedInput(plugin, [&](InputChannel& input) {
    const double bearingRad = std::atan2(input.y, input.x) + reverseSign(input) * turnRad;
    const double r = radiusOf(input);
    input.x = r * std::cos(bearingRad);
    input.y = r * std::sin(bearingRad);
  });
}

// Into -1..1 by whole turns (2 is a full turn of the spread). Values from elsewhere than the knob
// may lie far off; they come near in one step first.
double wrapTurn(double angle) {
  if (std::fabs(angle) > 3.0) angle = std::remainder(angle, 2.0);
  while (angle < -1.0) angle += 2.0;
  while (angle > 1.0) angle -= 2.0;
  return angle;
}

void stepDiffusion(PannerPlugin& plugin, int mode, double d) {
  forEachSelectedInput(plugin, [&](InputChannel& input) {
    const double step = reverseSign(input) * d;
    if (mode == kGroupDiffusionLevel) input.diffuse = std::clamp(input.diffuse + step, 0.0, 1.0);
    if (mode == kGroupDiffusionBias) {
      input.diffuseBias = std::clamp(input.diffuseBias + step, -1.0, 1.0);
    }
    if (mode == kGroupDiffusionRotate) input.diffuseAngle = wrapTurn(input.diffuseAngle + step);
  });
}

struct Point {
  double x;
  double y;
  double z;
};

// The line from an input to a speaker: its direction as bearing and elevation, and how far the
// input lands from the speaker along it, split into horizontal length and offsets per axis.
struct Reach {
  double dx, dy, dz;  // speaker minus input
  double azRad, elRad;
  double dist, h, ex, ey, ez;
};

Reach reachToward(const Point& p, const InputChannel& q, double step) {
  Reach r{};
  r.dx = p.x - q.x;
  r.dy = p.y - q.y;
  r.dz = p.z - q.z;
  r.azRad = std::atan2(r.dy, r.dx);
  r.elRad = std::atan2(r.dz, std::sqrt(r.dx * r.dx + r.dy * r.dy));
  r.dist = std::sqrt(r.dx * r.dx + r.dy * r.dy + r.dz * r.dz) - step;
  return r;
}

// Pulls the landing point back along the line until each coordinate is inside the border, x then
// y then z. False when a coordinate lies beyond it while the line does not move along that axis
// (the input and the speaker both lie beyond it): no point of the line is inside.
bool limitReach(const Point& p, Reach& r, double limit) {
  r.h = std::cos(r.elRad) * r.dist;
  r.ex = std::cos(r.azRad) * r.h;
  if (const double edge = borderBeyond(p.x - r.ex, limit); edge != 0.0) {
    if (r.dx == 0.0) return false;
    r.ex = p.x - edge;
    r.h = r.ex / std::cos(r.azRad);
    r.dist = r.h / std::cos(r.elRad);
  }
  r.ey = r.h * std::sin(r.azRad);
  if (const double edge = borderBeyond(p.y - r.ey, limit); edge != 0.0) {
    if (r.dy == 0.0) return false;
    r.ey = p.y - edge;
    r.h = r.ey / std::sin(r.azRad);
    r.ex = std::cos(r.azRad) * r.h;
    r.dist = r.h / std::cos(r.elRad);
  }
  r.ez = r.dist * std::sin(r.elRad);
  if (const double edge = borderBeyond(p.z - r.ez, limit); edge != 0.0) {
    if (r.dz == 0.0) return false;
    r.ez = p.z - edge;
    r.dist = r.ez / std::sin(r.elRad);
    r.h = r.dist * std::cos(r.elRad);
    r.ey = std::sin(r.azRad) * r.h;
    r.ex = std::cos(r.azRad) * r.h;
  }
  return true;
}

// A step larger than the distance lands on the speaker: an input never passes through it.
void moveTowardSpeaker(const Point& p, InputChannel& input, double d, double limit) {
  Reach r = reachToward(p, input, reverseSign(input) * d);
  if (r.dist <= 0.0) {
    input.x = p.x;
    input.y = p.y;
    input.z = p.z;
    return;
  }
  if (!limitReach(p, r, limit)) return;
  input.x = p.x - r.ex;
  input.y = p.y - r.ey;
  input.z = p.z - r.ez;
}

// The position of the k-th speaker that is not LFE, as the mode combo lists them.
std::optional<Point> targetSpeaker(const PannerPlugin& plugin, int k) {
  for (int i = 0; i < plugin.speakerCount(); ++i) {
    const Speaker& speaker = plugin.model.speakers[i];
    if (!speaker.isLfe && k-- == 0) return Point{speaker.x, speaker.y, speaker.z};
  }
  return std::nullopt;
}

void moveTowardSpeaker(PannerPlugin& plugin, int k, double d, double limit) {
  const std::optional<Point> p = targetSpeaker(plugin, k);
  if (!p) return;
  forEachSelectedInput(plugin,
                       [&](InputChannel& input) { moveTowardSpeaker(*p, input, d, limit); });
}

}  // namespace

void knobStep(PannerPlugin& plugin, int mode, double d) {
  const double limit = positionLimit(plugin);
  switch (mode) {
    case kGroupLeftRight:
    case kGroupBackFront:
    case kGroupLowHigh:
      return moveAlongAxis(plugin, mode, d, limit);
    case kGroupBackLeftFrontRight:
      return moveAlongDiagonal(plugin, 1.0, d, limit);
    case kGroupFrontLeftBackRight:
      return moveAlongDiagonal(plugin, -1.0, d, limit);
    case kGroupExpandContract:
      return expandOrContract(plugin, d, limit);
    case kGroupRotate:
      return rotate(plugin, d);
    case kGroupDiffusionLevel:
    case kGroupDiffusionBias:
    case kGroupDiffusionRotate:
      return stepDiffusion(plugin, mode, d);
    default:
      if (mode >= kGroupToSpeaker) moveTowardSpeaker(plugin, mode - kGroupToSpeaker, d, limit);
  }
}
