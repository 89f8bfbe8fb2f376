// Count changes and change marking of the model. Each count change re-sizes under modelMutex,
// stores numParams, and tells the host after the lock is released.
#pragma once

#include "model/panner_plugin.h"

// Targets of markInputsDirty besides an input index.
constexpr int kDirtyAllInputs = -1;
constexpr int kDirtySelectedInputs = -2;

// [any thread] The caller holds modelMutex (or accepts a lost mark). Inputs at or past the count
// are left alone.
void markInputsDirty(PannerPlugin& plugin, int target);

// [UI thread] Stores the lock and lets an open editor follow it.
void setLockInputs(PannerPlugin& plugin, bool on);

// [UI thread] n inputs (0..64); existing inputs are kept, new ones get the default places.
void setInputCount(PannerPlugin& plugin, int n);

// [UI thread] n speakers (0..64) of a custom layout with generated names.
void setSpeakerCount(PannerPlugin& plugin, int n);
