// The audio routine and the engine's per-instance working storage.
#pragma once

#include <cstdint>

#include "model/panner_plugin.h"
#include "platform/vst2.h"

// [UI thread, instance creation] Chooses the mixing kernels for this processor and allocates the
// engine's storage. Returns false when memory cannot be had.
bool createMixEngine(PannerPlugin& plugin);

// [UI thread, teardown] Frees what createMixEngine and the blocks allocated.
void destroyMixEngine(PannerPlugin& plugin);

// [audio thread] once per block; takes modelMutex for bookkeeping and the gain law only.
void processDoubleReplacing(AEffect* effect, double** inputs, double** outputs,
                            std::int32_t sampleFrames);

// [audio thread] Single-precision and accumulating slots: only double precision is processed, so
// these leave every buffer untouched.
void processReplacing(AEffect* effect, float** inputs, float** outputs, std::int32_t sampleFrames);
void processAccumulating(AEffect* effect, float** inputs, float** outputs,
                         std::int32_t sampleFrames);
