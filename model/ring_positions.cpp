#include <cmath>

#include "model/layouts.h"

namespace {

constexpr double kRadius = 0.5;
constexpr int kMaxLayers = 3;
constexpr int kMaxPoints = 64;

// Ring sizes per layer proportional to the layer's circumference, adjusted to use exactly `rest`
// points (upper and lower rings together).
void ringSizes(int layers, int rest, double layerStep, int* perRing) {
  double cosines[kMaxLayers + 1] = {};
  double sum = 0.0;
  for (int j = 1; j <= layers; ++j) {
    cosines[j] = std::cos(j * layerStep);
    sum += cosines[j];
  }
  const int pairs = rest / 2;  // an upper and a lower point each
  int total = 0;
  for (int j = 1; j <= layers; ++j) {
    perRing[j] = static_cast<int>(cosines[j] * pairs / sum);
    total += 2 * perRing[j];
  }
  while (total > rest) {
    for (int j = 1; j <= layers && total > rest; ++j) {
      if (perRing[j] > 0) {
        --perRing[j];
        total -= 2;
      }
    }
  }
  while (total < rest) {
    for (int j = layers; j >= 1 && total < rest; --j) {
      ++perRing[j];
      total += 2;
    }
  }
}

void addRing(Position3* points, int& count, int size, double elevation, double zSign) {
  for (int k = 0; k < size; ++k) {
    const double angle = 2.0 * M_PI * k / size;
    points[count++] = {kRadius * std::sin(angle) * std::cos(elevation),
                       kRadius * std::cos(angle) * std::cos(elevation),
                       zSign * kRadius * std::sin(elevation)};
  }
}

}  // namespace

void computeRingPositions(int n, Position3* out) {
  if (n <= 0) return;
  if (n > kMaxPoints) n = kMaxPoints;
  // Small counts make more points than asked (the poles are always there): build, then copy n.
  Position3 points[kMaxPoints + 4];
  int count = 0;
  const int equator = ((n / 4 + 1) & ~1) | (n % 2);  // same parity as n, so the rest is even
  for (int k = 0; k < equator; ++k) {
    const double angle = 2.0 * M_PI * k / equator;
    points[count++] = {kRadius * std::sin(angle), kRadius * std::cos(angle), 0.0};
  }
  const int layers = n < 48 ? 2 : 3;
  const int rest = n - equator - 2;
  if (rest >= 1) {
    const double layerStep = (M_PI / 2) / (layers + 1);
    int perRing[kMaxLayers + 1] = {};
    ringSizes(layers, rest, layerStep, perRing);
    for (int j = 1; j <= layers; ++j) {
      if (perRing[j] == 0) continue;
      addRing(points, count, perRing[j], j * layerStep, 1.0);
      addRing(points, count, perRing[j], j * layerStep, -1.0);
    }
  }
  points[count++] = {0.0, 0.0, kRadius};
  points[count++] = {0.0, 0.0, -kRadius};
  for (int i = 0; i < n && i < count; ++i) out[i] = points[i];
}
