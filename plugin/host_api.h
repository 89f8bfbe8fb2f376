// The host's extension functions, fetched by name at every VSTPluginMain. A name the host does not
// know leaves its slot null; callers of optional functions test the slot first.
#pragma once

#include "platform/host_functions.h"
#include "platform/vst2.h"

struct HostApi {
#define HOST_API_SLOT(name, type) type name = nullptr;
  HOST_FUNCTION_LIST(HOST_API_SLOT)
#undef HOST_API_SLOT
};

extern HostApi hostApi;

// [UI thread] Looks up all 39 names in order through `callback`, overwriting every slot.
void fetchHostFunctions(audioMasterCallback callback);

// [UI thread] Creates dialog `resourceId` of the plug-in's resource list through the host's
// localization when it offers it. Only mode 0 (modeless) is supported; other modes give null.
HWND createLocalizedDialog(HINSTANCE module, int resourceId, HWND parent, DLGPROC dialogProc,
                           LPARAM param, int mode);
