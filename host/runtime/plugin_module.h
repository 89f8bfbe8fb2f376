// A VST 2.x plug-in file loaded with dlopen: its entry point, and the window layer and module
// handle bound before any instance is made.
#pragma once

#include <string>

#include "platform/vst2.h"

using VstEntryPoint = AEffect* (*)(audioMasterCallback callback);

class PluginModule {
 public:
  // Loads the file and binds it; throws HostError with a message naming the file when it is not
  // a loadable shared object or exports no entry point.
  explicit PluginModule(const std::string& path);
  ~PluginModule();
  PluginModule(const PluginModule&) = delete;
  PluginModule& operator=(const PluginModule&) = delete;

  // The absolute path, as messages and per-plug-in settings name the plug-in.
  const std::string& path() const { return path_; }
  // "VSTPluginMain" or the legacy "main".
  const char* entryName() const { return entryName_; }
  bool exportsWindowBinding() const { return exportsWindowBinding_; }

  // Calls the entry point; null when the plug-in refused to make an instance.
  AEffect* createEffect(audioMasterCallback callback) const;

 private:
  void bindWindowLayer();

  std::string path_;
  void* handle_ = nullptr;
  VstEntryPoint entry_ = nullptr;
  const char* entryName_ = "";
  bool exportsWindowBinding_ = false;
};
