#include "plugin/host_api.h"

#include "plugin/editor_link.h"
#include "plugin/window_layer.h"

HostApi hostApi;

namespace {

void* lookUpHostFunction(audioMasterCallback callback, const char* name) {
  const VstIntPtr address = callback(nullptr, kHostExtensionOpcode, kHostFunctionLookupIndex, 0,
                                     const_cast<char*>(name), 0.0f);
  return reinterpret_cast<void*>(address);
}

constexpr int kScratchWords = 5;

}  // namespace

void fetchHostFunctions(audioMasterCallback callback) {
#define HOST_API_FETCH(name, type) \
  hostApi.name = reinterpret_cast<type>(lookUpHostFunction(callback, #name));
  HOST_FUNCTION_LIST(HOST_API_FETCH)
#undef HOST_API_FETCH
}

HWND createLocalizedDialog(HINSTANCE module, int resourceId, HWND parent, DLGPROC dialogProc,
                           LPARAM param, int mode) {
  if (mode != 0) return nullptr;
  // The host fills the first four words; the fifth stays null as its end mark.
  void* scratch[kScratchWords] = {};
  if (hostApi.__localizePrepareDialog != nullptr) {
    const DLGPROC localized = hostApi.__localizePrepareDialog(
        "spatiola_", module, resourceId, dialogProc, param, scratch, kScratchWords);
    if (localized != nullptr) {
      dialogProc = localized;
      param = reinterpret_cast<LPARAM>(scratch);
    }
  }
  return plaskCall<PlaskId::PLASK_CreateDialog>(pluginDialogResources(), resourceId, parent,
                                                dialogProc, param);
}
