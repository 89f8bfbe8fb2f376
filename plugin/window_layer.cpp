#include "plugin/window_layer.h"

#include <cstdint>
#include <cstdio>

#include "model/host_link.h"
#include "plugin/exports.h"

PlaskGenericFn plaskSlots[kPlaskFunctionCount] = {};
HINSTANCE moduleHandle = nullptr;

const PlatformApiEntry PlatformApiTable[kPlaskFunctionCount] = {
#define PLASK_TABLE_ENTRY(name) {#name, &plaskSlots[static_cast<int>(PlaskId::name)]},
    PLASK_FUNCTION_LIST(PLASK_TABLE_ENTRY)
#undef PLASK_TABLE_ENTRY
};

namespace {

// Called through slots of every signature: the C calling convention leaves the arguments to the
// caller, so ignoring them is safe.
std::intptr_t missingFunctionStub() {
  return 0;
}

constexpr DWORD kProcessAttach = 1;

}  // namespace

PlaskGenericFn missingFunctionStubAddress() {
  return reinterpret_cast<PlaskGenericFn>(&missingFunctionStub);
}

void bindWindowLayer(PlaskGetter getter) {
  for (const PlatformApiEntry& entry : PlatformApiTable) {
    void* address = getter(entry.name);
    if (address == nullptr) {
      std::printf("PLASK API not found: %s\n", entry.name);
      *entry.slot = missingFunctionStubAddress();
    } else {
      *entry.slot = reinterpret_cast<PlaskGenericFn>(address);
    }
  }
  asyncKeyState = plaskFunction<PlaskId::GetAsyncKeyState>();
}

// [host, process attach] Binds the window layer before anything uses it.
extern "C" SPATIOLA_EXPORT int PLASK_dllMain(HINSTANCE /*module*/, DWORD reason,
                                             PlaskGetter getter) noexcept {
  if (reason != kProcessAttach) return 1;
  if (getter == nullptr) return 0;
  bindWindowLayer(getter);
  return 1;
}

// [host, load and unload] Keeps the module handle for the editor's per-file option.
extern "C" SPATIOLA_EXPORT int DllMain(HINSTANCE module, DWORD reason) noexcept {
  if (reason == kProcessAttach) moduleHandle = module;
  return 1;
}
