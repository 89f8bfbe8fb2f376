// The edit script's lines as the parser reads them, and the mistakes it names.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/cli/edit_script.h"
#include "host/runtime/host_error.h"
#include "host/window/backend/headless_backend.h"
#include "platform/win32_controls.h"

namespace {

// A step in a few words: verb, target, numbers, modifiers, text, value.
std::string describe(const ScriptStep& s) {
  std::ostringstream out;
  out << static_cast<int>(s.verb) << " #" << s.target.controlId;
  if (s.target.hasPoint) out << " @" << s.target.point.x << "," << s.target.point.y;
  out << " " << s.numbers[0] << " " << s.numbers[1] << " m" << s.modifiers << " '" << s.text << "' "
      << s.value;
  return out.str();
}

std::string parse(const std::string& script) {
  std::istringstream in(script);
  try {
    std::string all;
    for (const ScriptStep& step : parseEditScript(in, "s.txt")) {
      all += std::to_string(step.line) + ": " + describe(step) + "\n";
    }
    return all;
  } catch (const HostError& error) {
    return error.what();
  }
}

TEST(EditScript, ReadsOneCommandPerLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"down #1023 120 80 shift", "1: 0 #1023 @120,80 0 0 m1 '' 0\n"},
      {"  click 300 40", "1: 3 #0 @300,40 0 0 m0 '' 0\n"},
      {"# a comment\n\nrclick #1142 ctrl alt", "3: 7 #1142 0 0 m6 '' 0\n"},
      {"drag #1023 10 20 -5 7", "1: 8 #1023 @10,20 -5 7 m0 '' 0\n"},
      {"wheel #1075 -2", "1: 9 #1075 -2 0 m0 '' 0\n"},
      {"wheel #1075 5 6 -2", "1: 9 #1075 @5,6 -2 0 m0 '' 0\n"},
      {"drag #1023 10 20", "1: 8 #1023 10 20 m0 '' 0\n"},
      {"knob #1134 25 ctrl", "1: 10 #1134 25 0 m2 '' 0\n"},
      {"fader #1239 -40", "1: 11 #1239 -40 0 m0 '' 0\n"},
      {"type Front  left", "1: 12 #0 0 0 m0 'Front  left' 0\n"},
      {"key tab shift", "1: 13 #0 9 0 m1 '' 0\n"},
      {"key q", "1: 13 #0 81 0 m0 '' 0\n"},
      {"choose #1131 5", "1: 14 #1131 5 0 m0 '' 0\n"},
      {"menu Adjust inputs/outputs", "1: 15 #0 0 0 m0 'Adjust inputs/outputs' 0\n"},
      {"wait 120", "1: 16 #0 120 0 m0 '' 0\n"},
      {"set in 1 X 0.75", "1: 17 #0 0 0 m0 'in 1 X' 0.75\n"},
      {"save-state after.bin", "1: 18 #0 0 0 m0 'after.bin' 0\n"},
      {"snapshot my picture.png", "1: 19 #0 0 0 m0 'my picture.png' 0\n"},
  };
  for (const auto& [script, expected] : cases) EXPECT_EQ(parse(script), expected) << script;
}

TEST(EditScript, NamesTheLineOfAMistake) {
  const std::pair<const char*, const char*> cases[] = {
      {"wait 10\njump 3", "s.txt:2: 'jump' is no command (see the README's edit script)"},
      {"click", "s.txt:1: expected #ID, X Y or #ID X Y"},
      {"click #x1", "s.txt:1: '#x1' is no control: write #ID, for instance #1023"},
      {"click 10", "s.txt:1: missing y"},
      {"click 10 20 meta", "s.txt:1: 'meta' is no modifier (shift, ctrl, alt)"},
      {"wait -5", "s.txt:1: cannot wait a negative time"},
      {"wait soon", "s.txt:1: 'soon' is not a whole number (milliseconds)"},
      {"set in 1 X 1.5", "s.txt:1: '1.5' is no normalised value 0..1"},
      {"set 0.5", "s.txt:1: expected a parameter and a value 0..1"},
      {"key hyper",
       "s.txt:1: 'hyper' is no key: a letter, a digit, or return, escape, tab, space, "
       "backspace, delete, left, right, up, down, home, end, pageup, pagedown, f4"},
      {"snapshot", "s.txt:1: missing text"},
  };
  for (const auto& [script, expected] : cases) EXPECT_EQ(parse(script), expected) << script;
}

// A plug-in stand-in behind the runner: an editor window in a frame, and a record of what the
// script asked of it.
class RecordingHost : public EditScriptHost {
 public:
  explicit RecordingHost(winsys::WindowSystem& system) {
    frame_ = system.createFrame("frame", 200, 100, 256, false);
    winsys::CreateParams params;
    params.parent = frame_;
    params.rect = {0, 0, 200, 100};
    params.style = WS_CHILD | WS_VISIBLE;
    editor_ = system.create(params);
  }
  HWND editor() const override { return editor_; }
  HWND frame() const override { return frame_; }
  void idle() override { calls += "i"; }
  void setParameter(const std::string& name, float value) override {
    if (name == "nothing") throw HostError("no parameter is called nothing");
    calls += "[" + name + "=" + std::to_string(value) + "]";
  }
  std::vector<unsigned char> state() override { return {'s', 't'}; }

  std::string calls;

 private:
  HWND frame_ = nullptr;
  HWND editor_ = nullptr;
};

// The clock moves in the host's idle period, an idle call follows every step, and set, save-state
// and the mistakes found while running reach the host with their line.
TEST(EditScript, RunsEachStepWithTheHostsIdleCalls) {
  auto backend = std::make_unique<winsys::HeadlessBackend>(256);
  winsys::HeadlessBackend& headless = *backend;
  winsys::WindowSystem system(std::move(backend));
  winsys::WindowSystem::setCurrent(&system);
  winsys::WindowDriver driver(system, headless);
  RecordingHost host(system);
  const std::string statePath =
      (std::filesystem::temp_directory_path() / "edit_script_state.bin").string();
  const struct {
    std::string script;
    std::string calls;
    std::string error;
  } cases[] = {
      {"wait 120\n", "iiii", ""},
      {"wait 0\nset in 1 X 0.25\n", "i[in 1 X=0.250000]i", ""},
      {"save-state " + statePath + "\nclick #7\n", "i", "s.txt:2: the editor has no control #7"},
      {"set nothing 1\n", "", "s.txt:1: no parameter is called nothing"},
  };
  for (const auto& c : cases) {
    host.calls.clear();
    std::istringstream in(c.script);
    std::string error;
    try {
      runEditScript(parseEditScript(in, "s.txt"), {system, driver, host, "s.txt"});
    } catch (const HostError& e) {
      error = e.what();
    }
    EXPECT_EQ(host.calls, c.calls) << c.script;
    EXPECT_EQ(error, c.error) << c.script;
  }
  std::ifstream saved(statePath, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(saved), {}), "st");
  std::filesystem::remove(statePath);
  winsys::WindowSystem::setCurrent(nullptr);
}

}  // namespace
