// Creating and destroying instances, and the bookkeeping all instances share.
#pragma once

#include <cstdint>

#include "model/panner_plugin.h"

// Number of PannerPlugin objects alive. [UI thread]
extern std::int32_t liveInstanceCount;

// [UI thread, effClose] Closes the editor, drops the shared drawing resources with the last
// instance and frees what the instance owns. The caller then deletes the object.
void destroyInstance(PannerPlugin* plugin);

// The AEffect dispatcher slot (plugin/dispatcher.cpp).
VstIntPtr dispatcher(AEffect* effect, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                     void* ptr, float opt);
