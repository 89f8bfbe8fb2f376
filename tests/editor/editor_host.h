// The plug-in's editor in the host's headless window system, in one process: the window layer and
// the host functions bound as the host binds them, an instance made through VSTPluginMain, its
// editor opened in a host frame, every automation report kept, and the controls operated as a user
// does: clicks, keys and combo choices.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "editor/control_list.h"
#include "editor/editor_dialog.h"
#include "host/services/host_function_table.h"
#include "host/services/window_table.h"
#include "host/window/accelerators.h"
#include "host/window/backend/headless_backend.h"
#include "host/window/controls/host_controls.h"
#include "host/window/core/window_system.h"
#include "host/window/driver/window_driver.h"
#include "model/counts.h"
#include "model/field_table.h"
#include "model/panner_plugin.h"
#include "platform/host_functions.h"
#include "plugin/plugin_entry.h"
#include "plugin/window_layer.h"
#include "tests/editor/host_reports.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

using winsys::kModAlt;
using winsys::kModControl;
using winsys::kModShift;

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

  InputChannel& input(int i) const { return plugin().model.inputs[i]; }
  Speaker& speaker(int s) const { return plugin().model.speakers[s]; }
  void click(int id, unsigned modifiers = 0) { driver->click(item(id), modifiers); }
  // A key to the control, which takes the focus first.
  void key(int id, int virtualKey, unsigned modifiers = 0) {
    system->setFocus(system->find(item(id)));
    driver->key(virtualKey, modifiers);
  }
  void choose(int comboId, int index) {
    ASSERT_TRUE(driver->chooseComboItem(item(comboId), index));
  }
  // Replaces the edit's text by typing, as a user who selected it all.
  void typeInto(int id, const std::string& text) {
    system->setFocus(system->find(item(id)));
    send(id, EM_SETSEL, 0, -1);
    driver->type(text);
  }
  // A click in the middle of a name row.
  POINT nameRow(Strip strip, int row) const {
    const StripGeometry g{plugin().view.viewScale};
    return {g.namesX(strip) + g.namesWidth() / 2,
            g.namesTop() + row * g.rowHeight() + g.rowHeight() / 2};
  }
  void clickName(Strip strip, int row, unsigned modifiers = 0) {
    driver->click(dialog, nameRow(strip, row), modifiers);
  }
  void doubleClickName(Strip strip, int row) { driver->doubleClick(dialog, nameRow(strip, row)); }
  static Report automate(int index, float value) { return {audioMasterAutomate, index, value}; }
  static Report end(int index) { return endEdit(index); }

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

// The editor of `inputs` channels and a user setup of `speakers`, open and refreshed once, with the
// host's keyboard hooks routed.
class BehaviourHost : public EditorHost {
 public:
  BehaviourHost(int inputs, int speakers) : EditorHost(inputs) {
    system->setAcceleratorSource(registeredAccelerators);
    setSpeakerCount(plugin(), speakers);
    open();
    tick();
    reports.clear();
  }
};
