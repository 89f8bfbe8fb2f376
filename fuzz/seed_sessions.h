// Host sessions in fuzz_dispatcher's encoding, for its seed corpus.
#pragma once

#include <vector>

#include "fuzz/seed_blocks.h"

std::vector<NamedBytes> seedSessions();
