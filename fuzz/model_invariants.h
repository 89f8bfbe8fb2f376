// The promises a loaded model keeps whatever block, parameter or call made it: the counts within
// the model's limits, numParams in step with them, names terminated, every value finite and inside
// the ranges a saved setup is kept within. A broken promise aborts (FUZZ_CHECK).
#pragma once

#include <cstdint>
#include <vector>

#include "model/panner_plugin.h"

using Bytes = std::vector<std::uint8_t>;

// [fuzz] Checks everything above; `savedRanges` adds the state reader's ranges for every real.
void checkModelInvariants(const PannerPlugin& plugin, bool savedRanges);

// [fuzz] The instance's state block as writeStateChunk hands it out.
Bytes savedBlock(PannerPlugin& plugin);

// [fuzz] Loads `block`, saves it again and checks the copy is byte for byte the block.
void checkStableRoundTrip(PannerPlugin& plugin, const Bytes& block);
