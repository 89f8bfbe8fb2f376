#include "host/services/host_function_table.h"

#include <array>
#include <cstring>
#include <string>

#include "host/services/fader_law.h"
#include "host/services/graphics_table.h"
#include "host/services/settings.h"
#include "host/window/accelerators.h"
#include "host/window/api/window_api.h"
#include "platform/host_functions.h"

namespace {

// [any thread] The pointer stays valid until the next call.
const char* hostGetResourcePath() {
  static thread_local std::string path;
  path = settingsDirectory();
  return path.c_str();
}

const char* hostGetIniFile() {
  static thread_local std::string path;
  path = settingsFilePath();
  return path.c_str();
}

double hostSliderToDb(double sliderPosition) {
  return faderPositionToDb(sliderPosition);
}

double hostDbToSlider(double levelDb) {
  return dbToFaderPosition(levelDb);
}

int hostGetSafeMode(const char* pluginPath) {
  return pluginPath == nullptr ? 0 : safeModeFlags(pluginPath);
}

void hostSetSafeMode(const char* pluginPath, int flags) {
  if (pluginPath != nullptr) setSafeModeFlags(pluginPath, flags);
}

HWND hostGetMainHwnd() {
  return nullptr;  // headless: there is no main window
}

// The scale of the window's top-level window when it is one of the window system's, else the
// host's display scale.
int hostDpiScaling(HWND window) {
  const int scale256 = winsys::windowScale256(window);
  return scale256 > 0 ? scale256 : displayScale256();
}

// The host ships no translations: texts and dialogs are used as the plug-in wrote them.
const char* hostLocalizeText(const char* text, const char* /*context*/, int /*flags*/) {
  return text;
}

void hostLocalizeMenu(const char* /*context*/, HMENU /*menu*/, const char* /*prefix*/) {}

void hostLocalizeDialog(HWND /*window*/, const char* /*context*/) {}

DLGPROC hostPrepareDialog(const char* /*context*/, HINSTANCE /*module*/, int /*resourceId*/,
                          DLGPROC /*dialogProc*/, LPARAM /*param*/, void** /*scratch*/,
                          int /*scratchWords*/) {
  return nullptr;  // keep the plug-in's own procedure and parameter
}

template <typename Fn>
void* address(Fn function) {
  return reinterpret_cast<void*>(function);
}

// Names offered here; the DAUB_* names come from the graphics library; the rest are unknown.
void* ownHostFunction(const std::string& name) {
  if (name == "GetResourcePath") return address<GetResourcePathFn>(hostGetResourcePath);
  if (name == "get_ini_file") return address<get_ini_fileFn>(hostGetIniFile);
  if (name == "SLIDER2DB") return address<SLIDER2DBFn>(hostSliderToDb);
  if (name == "DB2SLIDER") return address<DB2SLIDERFn>(hostDbToSlider);
  if (name == "plugin_register") return address<plugin_registerFn>(pluginRegister);
  if (name == "fxGetSafeMode") return address<fxGetSafeModeFn>(hostGetSafeMode);
  if (name == "fxSetSafeMode") return address<fxSetSafeModeFn>(hostSetSafeMode);
  if (name == "GetMainHwnd") return address<GetMainHwndFn>(hostGetMainHwnd);
  if (name == "GetWindowDPIScalingForDialog") {
    return address<GetWindowDPIScalingForDialogFn>(hostDpiScaling);
  }
  if (name == "__localizeFunc") return address<localizeFuncFn>(hostLocalizeText);
  if (name == "__localizeMenu") return address<localizeMenuFn>(hostLocalizeMenu);
  if (name == "__localizeInitializeDialog") {
    return address<localizeInitializeDialogFn>(hostLocalizeDialog);
  }
  if (name == "__localizePrepareDialog") return address<localizePrepareDialogFn>(hostPrepareDialog);
  return nullptr;
}

}  // namespace

void* findHostFunction(const char* name) {
  if (name == nullptr) return nullptr;
  if (std::strncmp(name, "DAUB_", 5) == 0) return findGraphicsHostFunction(name);
  return ownHostFunction(name);
}

const HostFunctionInfo* hostFunctionTable() {
  static const auto table = [] {
    std::array<HostFunctionInfo, kHostFunctionCount> entries{};
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const char* name = kHostFunctionNames[i].data();  // the literals end with a zero
      entries[i] = {name, findHostFunction(name) != nullptr};
    }
    return entries;
  }();
  return table.data();
}
