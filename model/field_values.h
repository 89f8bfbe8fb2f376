// What a field's value means outside the model: its range, how it maps to the host's normalised
// 0..1 and back, and what a change to it marks. The field tables (model/field_table.h) give one
// of each to every field.
#pragma once

#include <cstdint>

#include "model/channels.h"

// The values a saved setup may hold: the state block reader clamps into it, the scene import
// refuses anything outside it. Everything the plug-in itself can make lies inside.
struct ValueRange {
  double fallback;  // the default: taken when a saved block is too old to carry the field, or
                    // holds a non-finite value, and by a record made without it
  double low;
  double high;
};

// The farthest the editor can place anything: 0.48 / its smallest zoom 0.1.
constexpr double kPositionLimit = 4.8;

constexpr ValueRange kLevelRange{1.0, 0.0, 4.0};
constexpr ValueRange kSendRange{0.0, 0.0, 4.0};
constexpr ValueRange kPositionRange{0.0, -kPositionLimit, kPositionLimit};
constexpr ValueRange kDiffuseRange{0.0, 0.0, 1.0};
constexpr ValueRange kSignedRange{0.0, -1.0, 1.0};
constexpr ValueRange kInfluenceRange{1.0, 0.0, 2.0};
constexpr ValueRange kRoomScaleRange{1.0, 2e-6, 2.0};
// The zoom fader computes 0.1 + 0.85 * position in single precision: its top is the float just
// above 0.95.
constexpr ValueRange kZoomRange{0.48, 0.1, 0.9500000476837158};
constexpr ValueRange kFlagRange{0.0, 0.0, 1.0};

constexpr int kMaxFaderOffset = 60;  // strips of 16 rows in steps of 4 over 64 channels
constexpr int kFaderOffsetStep = 4;
constexpr int kMaxFaderMode = 1;                      // "Gain" or "LFE" / "Influence"
constexpr int kMaxGroupMode = 10 + kMaxSpeakers - 1;  // 10 fixed modes, then one per speaker
constexpr int kMaxLayoutPreset = 10;                  // "9.1 ITU-R"; -1 when there are no speakers

// How a field's value maps to the host's normalised value v (0..1) and back.
enum class ValueMapping : std::uint8_t {
  Level,      // linear factor 0..4, shown in dB: v = value / 4
  Signed,     // -1..1: v = (1 + value) / 2
  Unit,       // passed through unchanged both ways
  Double,     // 0..2: v = value / 2
  RoomScale,  // 0..2 as Double, but v <= 1e-6 gives the floor 2e-6
  Switch,     // a flag 0 or 1, on from v = 0.5
};

constexpr double kRoomScaleFloor = 2e-6;

constexpr double normalisedFrom(ValueMapping mapping, double value) {
  switch (mapping) {
    case ValueMapping::Level:
      return 0.25 * value;
    case ValueMapping::Signed:
      return (1.0 + value) * 0.5;
    case ValueMapping::Double:
    case ValueMapping::RoomScale:
      return 0.5 * value;
    case ValueMapping::Unit:
    case ValueMapping::Switch:
      break;
  }
  return value;
}

constexpr double valueFrom(ValueMapping mapping, double v) {
  switch (mapping) {
    case ValueMapping::Level:
      return 4.0 * v;
    case ValueMapping::Signed:
      return 2.0 * v - 1.0;
    case ValueMapping::Double:
      return 2.0 * v;
    case ValueMapping::RoomScale:
      return v <= 1e-6 ? kRoomScaleFloor : 2.0 * v;
    case ValueMapping::Switch:
      return v >= 0.5 ? 1.0 : 0.0;
    case ValueMapping::Unit:
      break;
  }
  return v;
}

static_assert(valueFrom(ValueMapping::Level, 0.25) == 1.0 &&
              normalisedFrom(ValueMapping::Level, 2.0) == 0.5);
static_assert(valueFrom(ValueMapping::Signed, 0.75) == 0.5 &&
              normalisedFrom(ValueMapping::Signed, -1.0) == 0.0);
static_assert(valueFrom(ValueMapping::Double, 0.25) == 0.5 &&
              normalisedFrom(ValueMapping::Double, 0.5) == 0.25);
static_assert(valueFrom(ValueMapping::RoomScale, 1e-6) == kRoomScaleFloor &&
              valueFrom(ValueMapping::RoomScale, 0.25) == 0.5 &&
              normalisedFrom(ValueMapping::RoomScale, 2.0) == 1.0);
static_assert(valueFrom(ValueMapping::Switch, 0.49) == 0.0 &&
              valueFrom(ValueMapping::Switch, 0.5) == 1.0 &&
              normalisedFrom(ValueMapping::Switch, 1.0) == 1.0);
static_assert(valueFrom(ValueMapping::Unit, 0.3) == 0.3 &&
              normalisedFrom(ValueMapping::Unit, -0.5) == -0.5);

// A parameter's display text: levels in decibels, everything else as the normalised value.
constexpr bool isShownInDecibels(ValueMapping mapping) {
  return mapping == ValueMapping::Level;
}
constexpr const char* displayUnit(ValueMapping mapping) {
  return isShownInDecibels(mapping) ? "dB" : "";
}

// What a change of the field marks: the gain rows to recompute and the editor's change bits.
enum class GainRows : std::uint8_t { None, Own, All };
struct ChangeMarks {
  GainRows rows;
  std::uint32_t changeFlags;
};
