// A room on a 200 x 200 view for the mouse-editing tests: zoom 0.5 gives 100 pixels per unit
// around the centre (100, 100) and the border limit L = 0.96. Also modifier keys held on demand.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "editor/view/space_mouse.h"
#include "model/counts.h"
#include "model/layouts.h"
#include "plugin/window_layer.h"
#include "tests/editor/host_reports.h"
#include "tests/model/model_fixture.h"

constexpr int kViewSize = 200;

// Shift, Ctrl and Alt (keys 16, 17, 18) as the window layer's key state reports them while alive.
class HeldKeys {
 public:
  HeldKeys(bool shift, bool ctrl, bool alt) {
    held_ = {shift, ctrl, alt};
    asyncKeyState = [](int key) -> short {
      return key >= VK_SHIFT && key <= VK_MENU && held_[key - VK_SHIFT] ? -32768 : 0;
    };
  }
  ~HeldKeys() { asyncKeyState = nullptr; }
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;

 private:
  static inline std::array<bool, 3> held_{};
};

struct Place {
  double x, y, z;
};

// `inputs` placed as given, none selected; the default speaker layout; change marks cleared.
inline std::unique_ptr<PannerPlugin> makeRoom(const std::vector<Place>& inputs) {
  auto plugin = makeInstance(static_cast<int>(inputs.size()));
  plugin->view.zoom = 0.5;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    InputChannel& input = plugin->model.inputs[static_cast<int>(i)];
    input.x = inputs[i].x;
    input.y = inputs[i].y;
    input.z = inputs[i].z;
    input.selected = 0;
  }
  plugin->model.dirtyInputs = 0;
  plugin->model.changeFlags = 0;
  return plugin;
}

// A user setup of `speakers` (influence 1) beside one input far off in a corner.
inline std::unique_ptr<PannerPlugin> makeUserSetup(const std::vector<Place>& speakers) {
  auto plugin = makeRoom({{-0.9, -0.9, 0.0}});
  setSpeakerCount(*plugin, static_cast<int>(speakers.size()));
  for (int s = 0; s < plugin->speakerCount(); ++s) {
    setSpeaker(*plugin, s, "speaker", speakers[s].x, speakers[s].y, speakers[s].z, 1.0);
  }
  plugin->model.dirtyInputs = 0;
  plugin->model.changeFlags = 0;
  return plugin;
}

constexpr double kPlaceTolerance = 1e-9;

inline void expectPlace(const InputChannel& input, const Place& place,
                        const std::string& what = "") {
  EXPECT_NEAR(input.x, place.x, kPlaceTolerance) << what;
  EXPECT_NEAR(input.y, place.y, kPlaceTolerance) << what;
  EXPECT_NEAR(input.z, place.z, kPlaceTolerance) << what;
}

// A button down and a drag step in the editor's view.
inline bool grab(PannerPlugin& plugin, int x, int y) {
  return hitTestAndGrab(plugin, x, y, kViewSize, kViewSize, false);
}
inline bool drag(PannerPlugin& plugin, int x, int y) {
  return dragTo(plugin, x, y, kViewSize, kViewSize);
}

inline void selectInputs(PannerPlugin& plugin, const std::vector<int>& indexes) {
  for (int i : indexes) plugin.model.inputs[i].selected = 1;
}

inline std::vector<int> selectedInputs(const PannerPlugin& plugin) {
  std::vector<int> selected;
  for (int i = 0; i < plugin.inputCount(); ++i) {
    if (plugin.model.inputs[i].selected) selected.push_back(i);
  }
  return selected;
}

inline std::vector<Report> reportsOf(const RecordingHost& host) {
  std::vector<Report> reports;
  for (const HostCall& call : host.calls()) {
    reports.push_back({call.opcode, call.index, call.opcode == audioMasterAutomate ? call.opt : 0});
  }
  return reports;
}

inline Report automate(int index, double coordinate) {
  return {audioMasterAutomate, index, static_cast<float>((coordinate + 1.0) * 0.5)};
}
