// What a render should tell about a Spatiola setup before it runs: inputs that reach no speaker
// (with what would make them reach one) and the speakers of a user setup that all sit at the
// centre. Computed with the model and the gain law, not by listening to the output.
#pragma once

#include <string>
#include <vector>

struct PannerPlugin;

// One sentence per finding; empty when every sounding input reaches a speaker.
std::vector<std::string> reachWarnings(PannerPlugin& model);
