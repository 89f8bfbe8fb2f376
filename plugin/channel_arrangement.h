// The host's track channel-count changes and their idle-time report back to the host.
#pragma once

#include <cstdint>

#include "model/panner_plugin.h"

// [UI thread] effSetSpeakerArrangement: re-lays the speakers once for a larger count.
void changeArrangementFromStandardCall(PannerPlugin& plugin, std::int32_t channelCount);

// [UI thread] effVendorSpecific 42: as above, but any first call uses up the one re-layout and
// resets the meters.
void changeArrangementFromExtension(PannerPlugin& plugin, std::int32_t channelCount);

// [UI thread] effIdle: reports a pending change of the counts to the host.
void processPendingArrangement(PannerPlugin* plugin);

// [UI thread] Clears the meters and makes the engine re-size its matrices. Takes modelMutex.
void resetMeters(PannerPlugin& plugin);
