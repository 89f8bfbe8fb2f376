// Running a parsed edit script on the headless window system through its driver.
#include <algorithm>
#include <chrono>
#include <thread>

#include "host/cli/edit_script.h"
#include "host/cli/plugin_setup.h"
#include "host/runtime/host_error.h"

namespace {

using winsys::MouseButton;

constexpr int kDragSteps = 4;

class StepRunner {
 public:
  StepRunner(const ScriptRun& run, const ScriptStep& step) : run_(run), step_(step) {}

  void operator()();

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw HostError(run_.name + ":" + std::to_string(step_.line) + ": " + what);
  }
  HWND window() const {
    const HWND editor = run_.host.editor();
    if (editor == nullptr) fail("the editor is closed");
    if (step_.target.controlId == 0) return editor;
    const HWND control = run_.driver.control(editor, step_.target.controlId);
    const std::string name = "control #" + std::to_string(step_.target.controlId);
    if (control == nullptr) fail("the editor has no " + name);
    // The mouse does nothing there and keys stay where the focus was: the script's author would
    // see later steps act on the wrong control, and no reason.
    if (!run_.system.find(control)->enabled && run_.notes != nullptr) {
      *run_.notes << run_.name << ":" << step_.line << ": note: " << name
                  << " is disabled and ignores the mouse (an editor may enable it on its timer: "
                     "wait first)\n";
    }
    return control;
  }
  POINT point(HWND w) const {
    return step_.target.hasPoint ? step_.target.point : run_.driver.centreOf(w);
  }
  void mouse();
  void dragBy(int dx, int dy) {
    const HWND w = window();
    const POINT from = point(w);
    run_.driver.drag(w, from, {from.x + dx, from.y + dy}, step_.modifiers, kDragSteps);
  }
  void choose() {
    if (!run_.driver.chooseComboItem(window(), step_.numbers[0])) {
      fail("control #" + std::to_string(step_.target.controlId) + " has no item " +
           std::to_string(step_.numbers[0]));
    }
  }
  void wait() {
    for (int left = step_.numbers[0]; left > 0; left -= EditScriptHost::kIdlePeriodMs) {
      const int ms = std::min(left, EditScriptHost::kIdlePeriodMs);
      if (run_.realTime) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
      run_.driver.advance(static_cast<std::uint32_t>(ms));
      run_.host.idle();
    }
  }
  void set() { run_.host.setParameter(step_.text, step_.value); }
  void snapshot() {
    std::string error;
    if (!run_.system.renderToPng(run_.host.frame(), step_.text, &error)) {
      fail("cannot write " + step_.text + ": " + error);
    }
  }

  const ScriptRun& run_;
  const ScriptStep& step_;
};

void StepRunner::mouse() {
  const HWND w = window();
  const POINT p = point(w);
  const unsigned mods = step_.modifiers;
  winsys::WindowDriver& d = run_.driver;
  switch (step_.verb) {
    case ScriptVerb::Down:
      return d.press(w, p, MouseButton::Left, mods);
    case ScriptVerb::Up:
      return d.release(w, p, MouseButton::Left, mods);
    case ScriptVerb::Move:
      return d.move(w, p, mods);
    case ScriptVerb::Click:
      return d.click(w, p, mods);
    case ScriptVerb::DoubleClick:
      d.click(w, p, mods);
      d.press(w, p, MouseButton::Left, mods, 2);
      return d.release(w, p, MouseButton::Left, mods);
    case ScriptVerb::RightDown:
      return d.press(w, p, MouseButton::Right, mods);
    case ScriptVerb::RightUp:
      return d.release(w, p, MouseButton::Right, mods);
    case ScriptVerb::RightClick:
      return d.click(w, p, mods, MouseButton::Right);
    case ScriptVerb::Wheel:
      return d.wheel(w, p, step_.numbers[0], mods);
    default:
      return;
  }
}

void StepRunner::operator()() {
  switch (step_.verb) {
    case ScriptVerb::Drag:
      return dragBy(step_.numbers[0], step_.numbers[1]);
    case ScriptVerb::Knob:
      return dragBy(0, -step_.numbers[0]);  // up turns it clockwise
    case ScriptVerb::Fader:
      return dragBy(step_.numbers[0], 0);
    case ScriptVerb::Type:
      return run_.driver.type(step_.text);
    case ScriptVerb::Key:
      return run_.driver.key(step_.numbers[0], step_.modifiers);
    case ScriptVerb::Choose:
      return choose();
    case ScriptVerb::Menu:
      return run_.driver.answerNextMenu(step_.text);
    case ScriptVerb::Wait:
      return wait();
    case ScriptVerb::Set:
      return set();
    case ScriptVerb::SaveState:
      return writeBinaryFile(step_.text, run_.host.state());
    case ScriptVerb::Snapshot:
      return snapshot();
    default:
      return mouse();
  }
}

}  // namespace

void runEditScript(const std::vector<ScriptStep>& steps, const ScriptRun& run) {
  for (const ScriptStep& step : steps) {
    const std::string place = run.name + ":" + std::to_string(step.line) + ": ";
    try {
      StepRunner{run, step}();
    } catch (const HostError& error) {
      const std::string what = error.what();
      throw HostError(what.starts_with(place) ? what : place + what);
    }
    run.host.idle();
    run.system.paint();
  }
}
