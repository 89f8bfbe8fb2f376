#include "engine/gain_law_scalar.h"

#include <cmath>
#include <limits>

#include "engine/gain_law_constants.h"

namespace {

constexpr double kOutOfReach = std::numeric_limits<double>::infinity();

struct Offset {
  double dx;
  double dy;
  double dz;
};

// Distance from the edge of the input's diffusion diamond (half-diagonals a along y, b along x)
// to the speaker; height only adds.
double diamondDistance(const InputChannel& input, Offset o) {
  const double diffuse = input.diffuse;
  const double h2 = o.dx * o.dx + o.dy * o.dy;
  const double h = std::sqrt(h2);
  const double v = std::sqrt(h2 + o.dz * o.dz) - h;
  double dx = o.dx;
  double dy = o.dy;
  if (input.diffuseAngle != 0.0) {
    const double turned = std::atan2(dy, dx) + input.diffuseAngle * kTurnPerAngle;
    dx = h * std::cos(turned);
    dy = h * std::sin(turned);
  }
  const double ax = std::fabs(dx);
  const double ay = std::fabs(dy);
  const double bias = input.diffuseBias;
  double a = diffuse;
  double b = diffuse;
  if (bias > 0) b = bias >= 1 ? diffuse * kBiasFloor : diffuse * (1 - bias);
  if (bias < 0) a = bias <= -1 ? diffuse * kBiasFloor : diffuse * (1 + bias);
  // The edge in this quadrant runs from (0, a) to (b, 0); u places the nearest point along it.
  const double ey = ay - a;
  const double u = (ax * b - a * ey) / (b * b + a * a);
  if (u < 0) return std::sqrt(ey * ey + ax * ax) + v;
  if (u > 1) return std::sqrt(ay * ay + (ax - b) * (ax - b)) + v;
  const double qx = b * u - ax;
  const double qy = a - u * a - ay;
  return qx < 0 && qy < 0 ? std::sqrt(qx * qx + qy * qy) + v : v;
}

// Distance in units of the speaker's reach; a speaker without reach is out of it.
double reachDistance(const PannerPlugin& plugin, const InputChannel& input, const Speaker& s) {
  const Offset o{s.x * plugin.model.spaceScaleX - input.x, s.y * plugin.model.spaceScaleY - input.y,
                 s.z * plugin.model.spaceScaleZ - input.z};
  double r = input.diffuse == 0.0 ? std::sqrt(o.dx * o.dx + o.dy * o.dy + o.dz * o.dz)
                                  : diamondDistance(input, o);
  r = r > kDeadZone ? (r - kDeadZone) / kDeadZoneDivisor : 0.0;
  if (!(s.influence > 0.0) || !std::isfinite(r)) return kOutOfReach;
  return r / s.influence;
}

// Speakers against a wall fade out as the input reaches the opposite wall.
double wallFade(double f, double speakerCoordinate, double scale, double inputCoordinate) {
  const double e = std::fabs(speakerCoordinate * scale - inputCoordinate);
  const double wall = 2.0 * scale;
  if (e <= wall - kNear) return f;
  return e >= wall ? 0.0 : f * (wall - e) / kNear;
}

double relativeWeight(const PannerPlugin& plugin, const InputChannel& input, const Speaker& s,
                      double d, double dmin) {
  double f = dmin >= kNear || d < kNear ? 1.0 : dmin / kNear;
  f = wallFade(f, s.x, plugin.model.spaceScaleX, input.x);
  f = wallFade(f, s.y, plugin.model.spaceScaleY, input.y);
  f = wallFade(f, s.z, plugin.model.spaceScaleZ, input.z);
  return f / std::exp2(kRelativeSlope * d);
}

double centreTrimmed(double w, double centerTrim, double speakerX) {
  if (centerTrim == 1.0 || std::fabs(speakerX) >= kCentreBand) return w;
  return w * (1.0 + (1.0 - 2.0 * std::fabs(speakerX)) * (centerTrim - 1.0));
}

bool normalises(std::uint32_t optionFlags) {
  return (optionFlags & kOptionRelativeInfluence) != 0 || (optionFlags & kOptionNormalizeOff) == 0;
}

}  // namespace

void scalarInputGains(const PannerPlugin& plugin, int input, double* row) {
  const int speakers = plugin.speakerCount();
  if (input < 0 || input >= plugin.inputCount()) return;
  const InputChannel& in = plugin.model.inputs[input];

  // Distances first (kept in the row), with the smallest panned one for the relative law.
  double dmin = kOutOfReach;
  for (int s = 0; s < speakers; ++s) {
    const Speaker& speaker = plugin.model.speakers[s];
    if (speaker.isLfe) {
      row[s] = kLfeFactor * in.lfeSend;
      continue;
    }
    row[s] = reachDistance(plugin, in, speaker);
    dmin = std::fmin(dmin, row[s]);
  }

  const bool relative = (plugin.model.optionFlags & kOptionRelativeInfluence) != 0;
  double total = 0.0;
  for (int s = 0; s < speakers; ++s) {
    const Speaker& speaker = plugin.model.speakers[s];
    if (speaker.isLfe) continue;
    const double d = row[s];
    double w = relative ? relativeWeight(plugin, in, speaker, d, dmin) : std::fmax(0.0, 1.0 - d);
    w = centreTrimmed(w, plugin.model.centerTrim, speaker.x);
    row[s] = w;
    total += w;
  }

  const bool divide = normalises(plugin.model.optionFlags) && total != 1.0 && total > 0.0;
  for (int s = 0; s < speakers; ++s) {
    const Speaker& speaker = plugin.model.speakers[s];
    double value = row[s];
    if (divide && !speaker.isLfe) value /= total;
    value *= speaker.gain * in.gain;
    row[s] =
        std::isfinite(value) ? value : 0.0;  // nothing the model holds may reach the mix as NaN
  }
}
