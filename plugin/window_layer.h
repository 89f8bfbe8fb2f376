// The window layer lent by the host, bound by name through PLASK_dllMain. Every call into it goes
// through a slot of the table; an unbound slot answers 0 like a missing function would.
#pragma once

#include <type_traits>

#include "platform/plask_api.h"

// One pair per name of the import list: the name and the slot that receives its address.
struct PlatformApiEntry {
  const char* name;
  PlaskGenericFn* slot;
};

extern PlaskGenericFn plaskSlots[kPlaskFunctionCount];
extern const PlatformApiEntry PlatformApiTable[kPlaskFunctionCount];

// The plug-in's module handle, kept by DllMain. [any thread, read-only after load]
extern HINSTANCE moduleHandle;

// The routine bound to every name the host lacks: takes any arguments, returns 0.
PlaskGenericFn missingFunctionStubAddress();

// Binds every slot through `getter`; a name it does not know gets the stub and one line on standard
// output.
void bindWindowLayer(PlaskGetter getter);

template <typename Fn>
struct PlaskResult;
template <typename R, typename... A>
struct PlaskResult<R (*)(A...)> {
  using Type = R;
};

template <PlaskId Id>
PlaskFn<Id> plaskFunction() {
  return reinterpret_cast<PlaskFn<Id>>(plaskSlots[static_cast<int>(Id)]);
}

// Calls the window-layer function `Id`; answers 0 (or nothing) while the slot is unbound.
template <PlaskId Id, typename... Args>
auto plaskCall(Args... args) {
  using Result = typename PlaskResult<PlaskFn<Id>>::Type;
  const PlaskFn<Id> fn = plaskFunction<Id>();
  if constexpr (std::is_void_v<Result>) {
    if (fn != nullptr) fn(args...);
  } else {
    if (fn == nullptr) return Result{};
    return fn(args...);
  }
}

// True when `Id` is bound to a function of the host (not unbound, not the stub).
template <PlaskId Id>
bool plaskAvailable() {
  const PlaskGenericFn slot = plaskSlots[static_cast<int>(Id)];
  return slot != nullptr && slot != missingFunctionStubAddress();
}
