// A room on a 200 x 200 view for the mouse-editing tests: zoom 0.5 gives 100 pixels per unit
// around the centre (100, 100) and the border limit L = 0.96. Also modifier keys held on demand and
// a window layer that records what reaches the editor's info label.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "model/counts.h"
#include "model/layouts.h"
#include "plugin/window_layer.h"
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

// One call of the window layer about the info label: "kill 10", "text 1287 50%R", "timer 10 2000".
class InfoLabelRecorder {
 public:
  InfoLabelRecorder() {
    calls_.clear();
    slot(PlaskId::KillTimer) = reinterpret_cast<PlaskGenericFn>(&killTimer);
    slot(PlaskId::SetDlgItemText) = reinterpret_cast<PlaskGenericFn>(&setText);
    slot(PlaskId::SetTimer) = reinterpret_cast<PlaskGenericFn>(&setTimer);
  }
  ~InfoLabelRecorder() {
    for (PlaskId id : {PlaskId::KillTimer, PlaskId::SetDlgItemText, PlaskId::SetTimer}) {
      slot(id) = nullptr;
    }
  }
  InfoLabelRecorder(const InfoLabelRecorder&) = delete;
  InfoLabelRecorder& operator=(const InfoLabelRecorder&) = delete;
  const std::vector<std::string>& calls() const { return calls_; }
  static HWND editor() { return reinterpret_cast<HWND>(0x5150); }

 private:
  static PlaskGenericFn& slot(PlaskId id) { return plaskSlots[static_cast<int>(id)]; }
  static int record(HWND window, std::string call) {
    calls_.push_back(window == editor() ? call : "elsewhere");
    return 1;
  }
  static BOOL killTimer(HWND window, UINT_PTR id) {
    return record(window, "kill " + std::to_string(id));
  }
  static BOOL setText(HWND window, int item, const char* text) {
    return record(window, "text " + std::to_string(item) + " " + text);
  }
  static UINT_PTR setTimer(HWND window, UINT_PTR id, UINT elapseMs, TIMERPROC) {
    record(window, "timer " + std::to_string(id) + " " + std::to_string(elapseMs));
    return id;
  }
  static inline std::vector<std::string> calls_;
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

// The host calls as (opcode, index, value) with automation values; end-of-edit calls carry 0.
struct Report {
  std::int32_t opcode, index;
  float value;
  // Positions reached by sums of pixel steps differ from the written decimals in the last bits.
  bool operator==(const Report& other) const {
    return opcode == other.opcode && index == other.index && std::fabs(value - other.value) < 1e-6f;
  }
};

inline void PrintTo(const Report& report, std::ostream* out) {
  *out << "{" << report.opcode << ", " << report.index << ", " << report.value << "}";
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

inline Report endEdit(int index) {
  return {audioMasterEndEdit, index, 0.0f};
}
