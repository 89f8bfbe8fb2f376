// Shared by the window-layer functions plug-ins bind by name: each reaches the current window
// system and validates every handle it is given; without a system, or for a handle that is not a
// live one, it answers 0 like a system without a display.
#pragma once

#include <vector>

#include "host/window/core/window_system.h"
#include "platform/plask_api.h"

namespace winsys::api {

inline WindowSystem* system() {
  return WindowSystem::current();
}

inline Window* window(HWND handle) {
  WindowSystem* current = system();
  return current != nullptr ? current->find(handle) : nullptr;
}

struct ApiEntry {
  PlaskId id;
  void* address;
};

// Checks the implementation against the agreed signature of the name.
template <PlaskId Id>
ApiEntry entry(PlaskFn<Id> function) {
  return {Id, reinterpret_cast<void*>(function)};
}

std::vector<ApiEntry> windowFunctions();
std::vector<ApiEntry> messageFunctions();
std::vector<ApiEntry> dialogFunctions();
std::vector<ApiEntry> gdiFunctions();
std::vector<ApiEntry> menuFunctions();

}  // namespace winsys::api
