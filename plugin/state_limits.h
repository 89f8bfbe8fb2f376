// The ranges a saved setup's values are kept within, shared by the state block reader (which clamps
// hostile blocks into them) and the host's scene import (which refuses values outside them).
// Everything the plug-in itself can make lies inside, so its own blocks load unchanged.
#pragma once

#include <cstdint>

#include "model/channels.h"

struct ValueRange {
  double fallback;  // taken for a non-finite value
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

constexpr int kMaxFaderOffset = 60;  // strips of 16 rows in steps of 4 over 64 channels
constexpr int kMaxFaderMode = 1;     // "Gain" or "LFE" / "Influence"
constexpr int kMaxGroupMode = 10 + kMaxSpeakers - 1;  // 10 fixed modes, then one per speaker
