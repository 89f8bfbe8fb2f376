// The window layer's own implementations of the window-layer names, by name index.
#pragma once

#include "platform/plask_api.h"

namespace winsys {

// The implementation of a window-layer name, or null when the window system has none (the
// binding table then answers it with the graphics library or the failure stub).
void* findWindowApiFunction(PlaskId id);

// The display scale (1/256) of a window of the current window system: its top-level window's;
// 0 when there is no current system or the handle is not one of its windows.
int windowScale256(HWND window);

// The file of a plug-in module handle, as GetModuleFileName answers it; registered by the host
// when it loads the module. [any thread]
void registerModuleFile(HINSTANCE module, const char* path);

}  // namespace winsys
