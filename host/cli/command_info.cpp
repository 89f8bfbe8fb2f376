#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "host/cli/commands.h"

namespace {

struct FlagName {
  std::int32_t bit;
  const char* name;
};
constexpr FlagName kFlagNames[] = {
    {effFlagsHasEditor, "editor"},
    {effFlagsCanReplacing, "replacing"},
    {effFlagsProgramChunks, "program chunks"},
    {effFlagsIsSynth, "synth"},
    {effFlagsNoSoundInStop, "no sound in stop"},
    {effFlagsCanDoubleReplacing, "double replacing"},
};

std::string fourCharacters(std::int32_t id) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto c = static_cast<unsigned char>((static_cast<std::uint32_t>(id) >> shift) & 0xFFu);
    text += (c >= 0x20 && c < 0x7F) ? static_cast<char>(c) : '?';
  }
  return text;
}

std::vector<std::string> flagNames(std::int32_t flags) {
  std::vector<std::string> names;
  for (const FlagName& flag : kFlagNames) {
    if ((flags & flag.bit) != 0) names.emplace_back(flag.name);
  }
  return names;
}

nlohmann::ordered_json describe(PluginInstance& instance) {
  AEffect& effect = instance.effect();
  nlohmann::ordered_json info;
  info["path"] = instance.module().path();
  info["effect"] = instance.effectName();
  info["vendor"] = instance.vendorString();
  info["product"] = instance.productString();
  info["uniqueId"] = fourCharacters(effect.uniqueID);
  info["uniqueIdValue"] = effect.uniqueID;
  info["version"] = effect.version;
  info["vendorVersion"] = instance.vendorVersion();
  info["vstVersion"] = instance.vstVersion();
  info["category"] = instance.dispatch("effGetPlugCategory", effGetPlugCategory);
  info["inputs"] = instance.inputCount();
  info["outputs"] = instance.outputCount();
  info["programs"] = effect.numPrograms;
  info["initialDelay"] = effect.initialDelay;
  info["flagsValue"] = effect.flags;
  info["flags"] = flagNames(effect.flags);
  nlohmann::ordered_json parameters = nlohmann::ordered_json::array();
  for (int i = 0; i < instance.parameterCount(); ++i) {
    parameters.push_back({{"index", i},
                          {"name", instance.parameterName(i)},
                          {"value", instance.parameter(i)},
                          {"display", instance.parameterDisplay(i)},
                          {"label", instance.parameterLabel(i)}});
  }
  info["parameters"] = std::move(parameters);
  return info;
}

void printText(const nlohmann::ordered_json& info, std::ostream& out) {
  char line[512];
  const auto row = [&](const char* label, const std::string& value) {
    std::snprintf(line, sizeof(line), "%-13s %s\n", label, value.c_str());
    out << line;
  };
  char uniqueId[64];
  std::snprintf(uniqueId, sizeof(uniqueId), "%s (0x%08x)",
                info["uniqueId"].get<std::string>().c_str(),
                static_cast<unsigned>(info["uniqueIdValue"].get<std::int32_t>()));
  row("plug-in", info["path"].get<std::string>());
  row("effect", info["effect"].get<std::string>());
  row("vendor", info["vendor"].get<std::string>());
  row("product", info["product"].get<std::string>());
  row("unique id", uniqueId);
  row("version", std::to_string(info["version"].get<int>()));
  row("VST version", std::to_string(info["vstVersion"].get<int>()));
  row("inputs", std::to_string(info["inputs"].get<int>()));
  row("outputs", std::to_string(info["outputs"].get<int>()));
  row("programs", std::to_string(info["programs"].get<int>()));
  row("latency", std::to_string(info["initialDelay"].get<int>()) + " samples");
  std::string flags;
  for (const auto& name : info["flags"])
    flags += (flags.empty() ? "" : ", ") + name.get<std::string>();
  row("flags", flags.empty() ? "none" : flags);
  row("parameters", std::to_string(info["parameters"].size()));
  out << "\n";
  std::snprintf(line, sizeof(line), "%5s  %-28s %-10s %s\n", "index", "name", "value", "display");
  out << line;
  for (const auto& p : info["parameters"]) {
    std::snprintf(line, sizeof(line), "%5d  %-28s %-10.6f %s %s\n", p["index"].get<int>(),
                  p["name"].get<std::string>().c_str(), p["value"].get<double>(),
                  p["display"].get<std::string>().c_str(), p["label"].get<std::string>().c_str());
    out << line;
  }
}

}  // namespace

int runInfo(const InfoOptions& options, std::ostream& out, std::ostream& notes) {
  HostConfig config;
  config.trackChannels = options.trackChannels;
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, config);
  configurePlugin(*plugin.instance, options.plugin, notes);
  const nlohmann::ordered_json info = describe(*plugin.instance);
  if (options.json) {
    out << info.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << "\n";
  } else {
    printText(info, out);
  }
  return 0;
}
