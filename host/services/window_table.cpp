// The single place that decides what each window-layer name is bound to.
#include "host/services/window_table.h"

#include <array>
#include <cstring>
#include <string_view>
#include <unordered_map>

#include "host/services/graphics_table.h"
#include "host/services/profile_files.h"
#include "host/window/api/window_api.h"
#include "host/window/control_registry.h"
#include "host/window/key_state.h"
#include "host/window/window_headless.h"
#include "host/window/window_utilities.h"

namespace {

// Checks the implementation against the agreed signature of the entry.
template <PlaskId Id>
void* real(PlaskFn<Id> function) {
  return reinterpret_cast<void*>(function);
}

void* realImplementation(PlaskId id) {
  switch (id) {
    case PlaskId::lstrcpyn:
      return real<PlaskId::lstrcpyn>(windowLstrcpyn);
    case PlaskId::GetAsyncKeyState:
      return real<PlaskId::GetAsyncKeyState>(hostAsyncKeyState);
    case PlaskId::MulDiv:
      return real<PlaskId::MulDiv>(windowMulDiv);
    case PlaskId::GetTickCount:
      return real<PlaskId::GetTickCount>(windowGetTickCount);
    case PlaskId::Sleep:
      return real<PlaskId::Sleep>(windowSleep);
    case PlaskId::WinIntersectRect:
      return real<PlaskId::WinIntersectRect>(windowIntersectRect);
    case PlaskId::WinOffsetRect:
      return real<PlaskId::WinOffsetRect>(windowOffsetRect);
    case PlaskId::WinSetRect:
      return real<PlaskId::WinSetRect>(windowSetRect);
    case PlaskId::WinUnionRect:
      return real<PlaskId::WinUnionRect>(windowUnionRect);
    case PlaskId::PLASK_RegisterCustomControlCreator:
      return real<PlaskId::PLASK_RegisterCustomControlCreator>(registerControlCreator);
    case PlaskId::PLASK_UnregisterCustomControlCreator:
      return real<PlaskId::PLASK_UnregisterCustomControlCreator>(unregisterControlCreator);
    case PlaskId::GetPrivateProfileInt:
      return real<PlaskId::GetPrivateProfileInt>(profileGetInt);
    case PlaskId::GetPrivateProfileString:
      return real<PlaskId::GetPrivateProfileString>(profileGetString);
    case PlaskId::GetPrivateProfileSection:
      return real<PlaskId::GetPrivateProfileSection>(profileGetSection);
    case PlaskId::GetPrivateProfileStruct:
      return real<PlaskId::GetPrivateProfileStruct>(profileGetStruct);
    case PlaskId::WritePrivateProfileString:
      return real<PlaskId::WritePrivateProfileString>(profileWriteString);
    case PlaskId::WritePrivateProfileSection:
      return real<PlaskId::WritePrivateProfileSection>(profileWriteSection);
    case PlaskId::WritePrivateProfileStruct:
      return real<PlaskId::WritePrivateProfileStruct>(profileWriteStruct);
    default:
      return nullptr;
  }
}

WindowFunctionEntry entryFor(int index) {
  const auto id = static_cast<PlaskId>(index);
  const char* name = kPlaskNames[index];
  if (void* system = winsys::findWindowApiFunction(id)) {
    return {name, system, WindowFunctionKind::Real};
  }
  if (void* own = realImplementation(id)) return {name, own, WindowFunctionKind::Real};
  if (void* font = findGraphicsWindowFunction(name)) {
    return {name, font, WindowFunctionKind::Graphics};
  }
  return {name, reinterpret_cast<void*>(&headlessWindowFunction), WindowFunctionKind::Headless};
}

const std::array<WindowFunctionEntry, kPlaskFunctionCount>& table() {
  static const auto entries = [] {
    std::array<WindowFunctionEntry, kPlaskFunctionCount> built{};
    for (int i = 0; i < kPlaskFunctionCount; ++i) built[i] = entryFor(i);
    return built;
  }();
  return entries;
}

}  // namespace

const WindowFunctionEntry* windowFunctionTable() {
  return table().data();
}

void* findWindowFunction(const char* name) {
  static const auto byName = [] {
    std::unordered_map<std::string_view, void*> map;
    for (const WindowFunctionEntry& entry : table()) map.emplace(entry.name, entry.address);
    return map;
  }();
  if (name == nullptr) return nullptr;
  const auto found = byName.find(name);
  return found == byName.end() ? nullptr : found->second;
}
