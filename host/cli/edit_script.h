// The script of `spatiola edit --headless`: one command per line, what a user does to an editor
// (mouse, wheel, knobs, faders, keys, text, combo and menu choices), the clock, parameter changes
// as the host's automation makes them, saved states and pictures. The README documents it.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "host/window/driver/window_driver.h"

enum class ScriptVerb {
  Down,
  Up,
  Move,
  Click,
  DoubleClick,
  RightDown,
  RightUp,
  RightClick,
  Drag,
  Wheel,
  Knob,
  Fader,
  Type,
  Key,
  Choose,
  Menu,
  Wait,
  Set,
  SaveState,
  Snapshot,
};

// Where a mouse command acts: a control by id (0: the editor itself) and a point in its client
// pixels, its centre when none is given.
struct ScriptTarget {
  int controlId = 0;
  bool hasPoint = false;
  POINT point{};
};

struct ScriptStep {
  int line = 0;
  ScriptVerb verb = ScriptVerb::Wait;
  ScriptTarget target;
  int numbers[2] = {0, 0};  // drag dx dy; wheel notches; knob and fader pixels; item; ms; key
  unsigned modifiers = 0;   // winsys::kMod* bits
  std::string text;         // typed text, menu item, file, parameter
  float value = 0.0f;       // set
};

// Reads the whole script first; throws HostError "FILE:LINE: ..." at the first line it cannot
// read, so that nothing runs of a script with a mistake in it.
std::vector<ScriptStep> parseEditScript(std::istream& in, const std::string& name);

// What a script acts on besides the windows: the open editor and the plug-in behind it. The edit
// command puts a loaded instance behind it (EditorSession); a test can put an in-process one.
class EditScriptHost {
 public:
  static constexpr int kIdlePeriodMs = 50;

  virtual ~EditScriptHost() = default;
  // The plug-in's window, null once closed; and the window `snapshot` draws.
  virtual HWND editor() const = 0;
  virtual HWND frame() const = 0;
  // The host's idle calls: after each step and every kIdlePeriodMs of `wait`.
  virtual void idle() = 0;
  // A parameter by name or index set as automation does; throws HostError for an unknown one.
  virtual void setParameter(const std::string& nameOrIndex, float normalised) = 0;
  virtual std::vector<unsigned char> state() = 0;
};

struct ScriptRun {
  winsys::WindowSystem& system;
  winsys::WindowDriver& driver;
  EditScriptHost& host;
  std::string name;               // of the script, for messages
  std::ostream* notes = nullptr;  // where a step that does nothing is said to
  bool realTime = false;          // `wait` also lets the wall clock run (live audio beside)
};

// Runs the steps in order, with the host's idle calls after each and every 50 ms of `wait`;
// throws HostError "FILE:LINE: ..." when a step cannot be done (no such control, no such item).
void runEditScript(const std::vector<ScriptStep>& steps, const ScriptRun& run);
