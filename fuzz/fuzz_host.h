// The smallest host an instance can be made with: it serves get_ini_file and the track's channel
// count, answers every other request with 0 and checks what the plug-in tells it.
#pragma once

#include "platform/vst2.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

// The channel count the host reports for the track when an instance is made.
void setFuzzHostChannels(std::int32_t channels);

// [fuzz] Makes an instance through VSTPluginMain; aborts when the entry point refuses.
AEffect* createFuzzInstance();
