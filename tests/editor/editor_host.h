// The plug-in's editor in the host's headless window system, in one process: the window layer and
// the host functions bound as the host binds them, an instance made through VSTPluginMain, its
// editor opened in a host frame, and every automation report kept.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "editor/control_list.h"
#include "host/services/host_function_table.h"
#include "host/services/window_table.h"
#include "host/window/backend/headless_backend.h"
#include "host/window/controls/host_controls.h"
#include "host/window/core/window_system.h"
#include "host/window/driver/window_driver.h"
#include "model/panner_plugin.h"
#include "platform/host_functions.h"
#include "plugin/plugin_entry.h"
#include "plugin/window_layer.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

// One call the plug-in made to report an edit: audioMasterAutomate or audioMasterEndEdit.
struct Report {
  std::int32_t opcode;
  std::int32_t index;
  float value;
  bool operator==(const Report&) const = default;
};

class EditorHost {
 public:
  // A track of `channels`, windows at `scale256`.
  explicit EditorHost(int channels = 2, int scale256 = 256) : channels_(channels) {
    current_ = this;
    auto headless = std::make_unique<winsys::HeadlessBackend>(scale256);
    backend = headless.get();
    system = std::make_unique<winsys::WindowSystem>(std::move(headless));
    winsys::WindowSystem::setCurrent(system.get());
    driver = std::make_unique<winsys::WindowDriver>(*system, *backend);
    bindWindowLayer(&findWindowFunction);
    effect = VSTPluginMain(&callback);
    frame = system->createFrame("editor", 520, 640, scale256, true);
  }
  ~EditorHost() {
    if (effect != nullptr) effect->dispatcher(effect, effClose, 0, 0, nullptr, 0.0f);
    system.reset();
    winsys::WindowSystem::setCurrent(nullptr);
    current_ = nullptr;
  }
  EditorHost(const EditorHost&) = delete;
  EditorHost& operator=(const EditorHost&) = delete;

  PannerPlugin& plugin() const { return *static_cast<PannerPlugin*>(effect->object); }
  VstIntPtr dispatch(std::int32_t opcode, std::int32_t index = 0, VstIntPtr value = 0,
                     void* ptr = nullptr) {
    return effect->dispatcher(effect, opcode, index, value, ptr, 0.0f);
  }
  // effEditOpen in the frame; the dialog, or null.
  HWND open() {
    dispatch(effEditOpen, 0, 0, frame);
    dialog = plugin().host.editorWindow;
    return dialog;
  }
  // The 50 ms timer's next tick, and the paint that follows.
  void tick(std::uint32_t milliseconds = 50) {
    driver->advance(milliseconds);
    system->paint();
  }

  HWND item(int id) const { return driver->control(dialog, id); }
  winsys::Window* window(int id) const { return system->find(item(id)); }
  LRESULT send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return system->send(item(id), message, wParam, lParam);
  }
  bool shown(int id) const {
    const winsys::Window* w = window(id);
    return w != nullptr && w->visible;
  }
  bool enabled(int id) const { return window(id)->enabled; }
  std::string text(int id) const { return window(id)->text; }
  RECT rect(int id) const { return driver->rectIn(item(id), dialog); }
  RECT clientRect() const { return system->find(dialog)->clientRect(); }
  template <typename Control>
  const Control& control(int id) const {
    return dynamic_cast<const Control&>(*window(id)->control);
  }
  std::vector<std::string> comboItems(int id) const {
    std::vector<std::string> items;
    const auto count = static_cast<int>(send(id, CB_GETCOUNT));
    for (int i = 0; i < count; ++i) {
      char text[128] = {};
      send(id, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      items.emplace_back(text);
    }
    return items;
  }
  int selection(int id) const { return static_cast<int>(send(id, CB_GETCURSEL)); }

  std::vector<Report> reports;
  winsys::HeadlessBackend* backend = nullptr;
  std::unique_ptr<winsys::WindowSystem> system;
  std::unique_ptr<winsys::WindowDriver> driver;
  AEffect* effect = nullptr;
  HWND frame = nullptr;
  HWND dialog = nullptr;

 private:
  static VstIntPtr callback(AEffect*, std::int32_t opcode, std::int32_t index, VstIntPtr, void* ptr,
                            float opt) {
    if (opcode == kHostExtensionOpcode && index == kHostFunctionLookupIndex) {
      return reinterpret_cast<VstIntPtr>(findHostFunction(static_cast<const char*>(ptr)));
    }
    if (opcode == kHostExtensionOpcode && index == kHostChannelCountIndex) {
      return current_->channels_;
    }
    if (opcode == audioMasterAutomate || opcode == audioMasterEndEdit) {
      current_->reports.push_back({opcode, index, opcode == audioMasterAutomate ? opt : 0.0f});
    }
    return 0;
  }

  int channels_;
  static inline EditorHost* current_ = nullptr;
};
