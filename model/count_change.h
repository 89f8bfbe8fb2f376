// The steps every change of the input or speaker count shares: bookkeeping under modelMutex, then
// the host's notifications once the lock is released.
#pragma once

#include "model/panner_plugin.h"

enum class CountKind { Inputs, Speakers };

struct CountChange {
  CountKind kind;
  int oldCount;
  int newCount;
  int inputCount;  // inputs when the change was made: the speaker parameters start after them
};

// [under modelMutex] Marks the matrices for re-sizing, stores numParams, resets the fader strip.
void finishCountChange(PannerPlugin& plugin, const CountChange& change);

// [after modelMutex is released] Tells the host which parameters moved; nothing when the count
// stayed.
void notifyCountChange(PannerPlugin& plugin, const CountChange& change);

// The name of generated speaker i: "speaker A" .. "speaker Z", "speaker A2" ...
void speakerNameFor(int index, char* name, int capacity);
