// The panning law written out speaker by speaker: the reference that every vector kernel must
// agree with. The audio routine uses the kernels (gain_law.h).
#pragma once

#include "model/panner_plugin.h"

// Input `input`'s row into row[0 .. speakerCount - 1]; nothing for an index outside the inputs.
// The caller holds modelMutex.
void scalarInputGains(const PannerPlugin& plugin, int input, double* row);
