// Loading a plug-in for a command and bringing it into the state the options ask for: a saved
// state block, a Spatiola layout, single parameter values.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/core/plugin_instance.h"
#include "host/core/plugin_module.h"

struct PluginOptions {
  std::string pluginPath;  // empty: spatiola.so next to the executable
  std::string statePath;
  std::string layout;             // a preset name or a speaker count (Spatiola only)
  std::vector<std::string> sets;  // NAME=VALUE, normalised values
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

// Applies --state, --layout and --set in that order, then gives the plug-in an idle call.
// Without --state, Spatiola gets one input per track channel also beyond the 63 the host's
// channel-count query can announce.
void configurePlugin(PluginInstance& instance, const PluginOptions& options);

// "NAME=VALUE" split at the last '='; throws HostError for a missing '=' or a value outside 0..1.
ParameterSetting parseParameterSetting(const std::string& text);
// The index of a parameter by its exact name, else by its number; throws HostError naming it.
int resolveParameter(PluginInstance& instance, const std::string& nameOrIndex);

std::vector<unsigned char> readBinaryFile(const std::string& path);
void writeBinaryFile(const std::string& path, const std::vector<unsigned char>& bytes);

// Spatiola: unique id 'pkow'.
bool isSpatiola(const AEffect& effect);
// Names of the output channels when the plug-in tells them (Spatiola's speakers), else empty.
std::vector<std::string> outputChannelNames(PluginInstance& instance);
