#include "host/runtime/plugin_module.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "host/runtime/crash_guard.h"
#include "host/runtime/file_problem.h"
#include "host/runtime/host_error.h"
#include "host/runtime/load_errors.h"
#include "host/services/window_table.h"
#include "host/window/api/window_api.h"
#include "platform/plask_api.h"

namespace {

using PlaskDllMainFn = int (*)(HINSTANCE module, int reason, PlaskGetter getter);
using DllMainFn = int (*)(HINSTANCE module, int reason);
constexpr int kProcessAttach = 1;

// dlopen searches the library path for a bare name; a plug-in file is always meant literally.
// Links are kept, so that messages name the file as the user knows it.
std::string absolutePath(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::absolute(path, ignored).lexically_normal().string();
}

template <typename Fn>
Fn symbol(void* handle, const char* name) {
  return reinterpret_cast<Fn>(dlsym(handle, name));
}

}  // namespace

PluginModule::PluginModule(const std::string& path) : path_(absolutePath(path)) {
  installCrashReporter();
  if (access(path_.c_str(), R_OK) != 0) {
    throw HostError("cannot read the plug-in " + path_ + ": " + fileProblem(errno));
  }
  if (const std::string mismatch = elfMismatch(path_); !mismatch.empty()) throw HostError(mismatch);
  {
    const PluginCall call(path_.c_str(), "loading (dlopen)");
    handle_ = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
  }
  if (handle_ == nullptr) {
    throw HostError(describeLoadFailure(path_, dlerror()));
  }
  entry_ = symbol<VstEntryPoint>(handle_, "VSTPluginMain");
  entryName_ = "VSTPluginMain";
  if (entry_ == nullptr) {
    entry_ = symbol<VstEntryPoint>(handle_, "main");
    entryName_ = "main";
  }
  if (entry_ == nullptr) {
    throw HostError(path_ + " is not a VST 2.x plug-in: it exports neither VSTPluginMain nor main");
  }
  bindWindowLayer();
}

// The file stays mapped: plug-ins commonly leave threads or atexit handlers behind that would
// run in unmapped code after dlclose.
PluginModule::~PluginModule() = default;

void PluginModule::bindWindowLayer() {
  auto* module = static_cast<HINSTANCE>(handle_);
  winsys::registerModuleFile(module, path_.c_str());
  if (const auto plaskMain = symbol<PlaskDllMainFn>(handle_, "PLASK_dllMain")) {
    exportsWindowBinding_ = true;
    const PluginCall call(path_.c_str(), "PLASK_dllMain");
    plaskMain(module, kProcessAttach, findWindowFunction);
  }
  if (const auto dllMain = symbol<DllMainFn>(handle_, "DllMain")) {
    const PluginCall call(path_.c_str(), "DllMain");
    dllMain(module, kProcessAttach);
  }
}

AEffect* PluginModule::createEffect(audioMasterCallback callback) const {
  const PluginCall call(path_.c_str(), entryName_);
  return entry_(callback);
}
