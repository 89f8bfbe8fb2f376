// The saved state block: the whole setup as one little-endian byte block, version 4 written,
// versions 0-4 read (higher versions read as 4).
#pragma once

#include <cstdint>

#include "model/panner_plugin.h"

constexpr std::int32_t kStateChunkVersion = 4;

// [UI thread] Fills the instance's stateChunkBuffer under modelMutex and returns its length; *data
// points at it until the instance's next call.
std::int32_t writeStateChunk(PannerPlugin& plugin, void** data);

// [UI thread] Loads a block of `length` bytes (a negative length reads as 0).
void readStateChunk(PannerPlugin& plugin, const void* data, std::int32_t length);
