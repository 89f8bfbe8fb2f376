// Spatiola's speaker layout chosen on the command line: a preset name ("5.1 surround"), a
// speaker count for a user setup, or "N ring" for a user setup of 32..64 speakers on a sphere. It
// is applied as a state block: the plug-in's current block is read into a model, re-laid there and
// loaded back, so every other setting is kept.
#pragma once

#include <string>

class PluginInstance;

// [Spatiola only] Throws UsageError for unknown names and counts outside 1..64.
void applySpatiolaLayout(PluginInstance& instance, const std::string& layout);

// [Spatiola only] The same way, n inputs (1..64): for tracks wider than the 63 channels the
// plug-in takes from the host's query. Existing inputs keep their settings.
void setSpatiolaInputCount(PluginInstance& instance, int inputs);
