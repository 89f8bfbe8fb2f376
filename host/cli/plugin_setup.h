// Loading a plug-in for a command and bringing it into the state the options ask for: a saved
// state block, a layout of the plug-in's extension, single parameter values.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "host/cli/plugin_extension.h"
#include "host/runtime/plugin_instance.h"
#include "host/runtime/plugin_module.h"

struct PluginOptions {
  std::string pluginPath;  // empty: spatiola.so next to the executable
  std::string statePath;
  std::string layout;                          // a preset name or a speaker count (Spatiola only)
  std::vector<std::string> sets;               // NAME=VALUE, normalised values
  const PluginExtension* extension = nullptr;  // what the program knows of its own plug-in
};

struct ParameterSetting {
  std::string parameter;  // name or index as written
  float value = 0.0f;
};

// A module with one instance; the module outlives the instance.
struct LoadedPlugin {
  std::unique_ptr<PluginModule> module;
  std::unique_ptr<PluginInstance> instance;
};

// spatiola.so in the directory of the running executable.
std::string defaultPluginPath();

LoadedPlugin loadPlugin(const std::string& path, const HostConfig& config);

// The options' extension when it recognises the instance's plug-in, else null.
const PluginExtension* extensionFor(const PluginOptions& options, PluginInstance& instance);

// Applies --state, --layout and --set in that order, then gives the plug-in an idle call.
// Without --state, a plug-in with an extension gets one input per track channel also beyond the
// 63 the host's channel-count query can announce, and announces its settled channel counts. A state
// block the plug-in would not write back byte for byte is loaded with a note to `notes`; an empty
// one is an error.
void configurePlugin(PluginInstance& instance, const PluginOptions& options, std::ostream& notes);

// The bytes of a state file; throws HostError when it cannot be read or is empty.
std::vector<unsigned char> readStateFile(const std::string& path);

// "NAME=VALUE" split at the last '='; throws HostError for a missing '=' or a value outside 0..1.
ParameterSetting parseParameterSetting(const std::string& text);
// The index of a parameter by its exact name, else by its number; throws HostError naming it.
int resolveParameter(PluginInstance& instance, const std::string& nameOrIndex);

std::vector<unsigned char> readBinaryFile(const std::string& path);
// Through a temporary file: `path` is replaced only by a complete file.
void writeBinaryFile(const std::string& path, const std::vector<unsigned char>& bytes);

// Names of the output channels when the plug-in's extension tells them, else empty.
std::vector<std::string> outputChannelNames(PluginInstance& instance, const PluginOptions& options);
