// Real state blocks for the seed corpora and the replay tests: setups made with the model's own
// operations, saved in every version of the format.
#pragma once

#include <string>
#include <vector>

#include "fuzz/model_invariants.h"

struct NamedBytes {
  std::string name;
  Bytes bytes;
};

// The setup saved as a block of `version` (0-4; higher numbers are laid out as 4).
Bytes blockOfVersion(const PannerPlugin& plugin, int version);

// Every setup in every version 0-4, and a version above 4, named "<setup>-v<version>.bin".
std::vector<NamedBytes> seedStateBlocks();
