// The panning law: one row of targetGains per input from the room's geometry.
#pragma once

#include "model/panner_plugin.h"

// [audio thread, under modelMutex] Row `input` of targetGains; nothing for an index outside the
// inputs or without speakers. targetGains must be sized inputCount x speakerCount.
void computeInputGains(PannerPlugin& plugin, int input);
