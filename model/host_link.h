// The model's few links outward, each a process-wide seam that the plug-in shell fills:
// the host callback, the asynchronous key state of the window layer, and the editor's reaction
// to the input lock. The model calls them; it never includes window or editor code.
#pragma once

#include <cstdint>

#include "platform/vst2.h"

struct PannerPlugin;

// The callback of the latest VSTPluginMain call; null until a host gave one. [any thread]
extern audioMasterCallback hostCallback;

// Calls the host when a callback exists; answers 0 otherwise. Never call it under modelMutex.
VstIntPtr callHost(PannerPlugin& plugin, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                   void* ptr, float opt);

// Window layer's GetAsyncKeyState; null (no key held) until the layer is bound. [UI thread]
extern short (*asyncKeyState)(int virtualKey);
bool isKeyHeld(int virtualKey);

// Called by setLockInputs so that an open editor enables or disables its input controls.
extern void (*onLockInputsChanged)(PannerPlugin& plugin);
