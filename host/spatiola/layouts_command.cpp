#include "host/spatiola/layouts_command.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "model/layouts.h"

namespace {

using OrderedJson = nlohmann::ordered_json;

// The presets as the model lays them out.
OrderedJson presetsAsJson() {
  OrderedJson presets = OrderedJson::array();
  for (int preset = 1; preset < kLayoutPresetCount; ++preset) {
    PannerPlugin model;
    applyLayoutPreset(model, preset);
    OrderedJson speakers = OrderedJson::array();
    for (const Speaker& s : model.model.speakers) {
      speakers.push_back({{"name", s.name},
                          {"x", s.x},
                          {"y", s.y},
                          {"z", s.z},
                          {"influence", s.influence},
                          {"lfe", s.isLfe != 0}});
    }
    presets.push_back({{"name", kLayoutPresetNames[preset]}, {"speakers", std::move(speakers)}});
  }
  return presets;
}

void printTable(const OrderedJson& presets, std::ostream& out) {
  char line[160];
  for (const OrderedJson& preset : presets) {
    out << preset["name"].get<std::string>() << " (" << preset["speakers"].size() << " speakers)\n";
    std::snprintf(line, sizeof line, "  %2s  %-20s %7s %7s %7s  %9s\n", "#", "speaker", "x", "y",
                  "z", "influence");
    out << line;
    int number = 0;
    for (const OrderedJson& s : preset["speakers"]) {
      std::snprintf(line, sizeof line, "  %2d  %-20s %7.3f %7.3f %7.3f  %9.3f%s\n", ++number,
                    s["name"].get<std::string>().c_str(), s["x"].get<double>(),
                    s["y"].get<double>(), s["z"].get<double>(), s["influence"].get<double>(),
                    s["lfe"].get<bool>() ? "  LFE" : "");
      out << line;
    }
    out << "\n";
  }
  out << "user setup: --layout N, 1 to 64 speakers named \"speaker A\" on; the first 16 stand at "
         "places of their own, the rest at the centre.\n"
         "--layout \"N ring\", 32 to 64 speakers on a sphere of radius 0.5, influence 0.5.\n"
         "x runs left (-1) to right, y back (-1) to front, z low (-1) to high. A speaker reaches "
         "about its influence in Absolute mode.\n";
}

}  // namespace

void addLayoutsCommand(CLI::App& app, LayoutsOptions& options) {
  CLI::App* layouts = app.add_subcommand(
      "layouts", "Spatiola's speaker layout presets: speakers, positions, influence");
  layouts->add_flag("--json", options.json, "machine-readable output");
}

int runLayouts(const LayoutsOptions& options, std::ostream& out) {
  const OrderedJson presets = presetsAsJson();
  if (options.json) {
    out << presets.dump(2) << "\n";
  } else {
    printTable(presets, out);
  }
  return 0;
}
