// The editor of a track with `inputs` channels and `speakers` speakers of a user setup, opened in
// the host's headless window system with the host's keyboard hooks routed, so that the tests
// operate the controls as a user does: clicks, keys and combo choices.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "editor/editor_dialog.h"
#include "host/window/accelerators.h"
#include "model/counts.h"
#include "model/field_table.h"
#include "tests/editor/editor_host.h"

using winsys::kModAlt;
using winsys::kModControl;
using winsys::kModShift;

// The host's per-plug-in option flags go to a settings file of this test alone.
class PrivateSettings {
 public:
  PrivateSettings() {
    directory_ =
        std::filesystem::temp_directory_path() / ("spatiola-editor-" + std::to_string(::getpid()));
    std::filesystem::create_directories(directory_);
    setenv("XDG_CONFIG_HOME", directory_.c_str(), 1);
  }
  ~PrivateSettings() {
    unsetenv("XDG_CONFIG_HOME");
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }
  PrivateSettings(const PrivateSettings&) = delete;
  PrivateSettings& operator=(const PrivateSettings&) = delete;

 private:
  std::filesystem::path directory_;
};

class BehaviourHost : public EditorHost {
 public:
  BehaviourHost(int inputs, int speakers) : EditorHost(inputs) {
    system->setAcceleratorSource(registeredAccelerators);
    setSpeakerCount(plugin(), speakers);
    open();
    tick();
    reports.clear();
  }

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

  // The middle of a name row, in the dialog's client pixels.
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
  static Report end(int index) { return {audioMasterEndEdit, index, 0.0f}; }
};
