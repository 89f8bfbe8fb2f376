#include "host/window/api/window_api.h"

#include <array>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "host/window/api/api_support.h"

namespace winsys {

namespace {

std::mutex& moduleMutex() {
  static std::mutex mutex;
  return mutex;
}

std::map<HINSTANCE, std::string>& moduleFiles() {
  static std::map<HINSTANCE, std::string> files;
  return files;
}

// Win32: at most size - 1 characters and a zero; the answer is the characters copied.
DWORD apiGetModuleFileName(HINSTANCE module, char* out, DWORD size) {
  if (out == nullptr || size == 0) return 0;
  std::string path;
  {
    const std::lock_guard lock(moduleMutex());
    const auto found = moduleFiles().find(module);
    if (found == moduleFiles().end()) return 0;
    path = found->second;
  }
  const std::size_t count = std::min<std::size_t>(path.size(), size - 1);
  std::memcpy(out, path.data(), count);
  out[count] = '\0';
  return static_cast<DWORD>(count);
}

std::array<void*, kPlaskFunctionCount> buildTable() {
  std::array<void*, kPlaskFunctionCount> table{};
  for (const auto& family :
       {api::windowFunctions(), api::messageFunctions(), api::dialogFunctions(),
        api::gdiFunctions(), api::menuFunctions(),
        std::vector<api::ApiEntry>{api::entry<PlaskId::GetModuleFileName>(apiGetModuleFileName)}}) {
    for (const api::ApiEntry& entry : family)
      table[static_cast<std::size_t>(entry.id)] = entry.address;
  }
  return table;
}

}  // namespace

void* findWindowApiFunction(PlaskId id) {
  static const std::array<void*, kPlaskFunctionCount> table = buildTable();
  const auto index = static_cast<std::size_t>(id);
  return index < table.size() ? table[index] : nullptr;
}

int windowScale256(HWND window) {
  WindowSystem* system = WindowSystem::current();
  const Window* found = system != nullptr ? system->find(window) : nullptr;
  return found != nullptr ? system->scale256Of(found) : 0;
}

void registerModuleFile(HINSTANCE module, const char* path) {
  const std::lock_guard lock(moduleMutex());
  moduleFiles()[module] = path != nullptr ? path : "";
}

}  // namespace winsys
