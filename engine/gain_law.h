// The panning law: one row of targetGains per input from the room's geometry, computed for a vector
// of speakers at a time by the kernels of this processor (gain_law_scalar.h has the plain law).
#pragma once

#include <cstdint>

#include "model/panner_plugin.h"

// [audio thread, under modelMutex] Row `input` of targetGains; nothing for an index outside the
// inputs or without speakers. targetGains must be sized inputCount x speakerCount.
void computeInputGains(PannerPlugin& plugin, int input);

// [audio thread, under modelMutex] The rows whose bits are set in `inputs`, the speakers prepared
// once for all of them.
void computeMarkedInputGains(PannerPlugin& plugin, std::uint64_t inputs);
