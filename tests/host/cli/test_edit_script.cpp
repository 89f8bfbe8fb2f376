// The edit script's lines as the parser reads them, and the mistakes it names; the runner is driven
// end to end on Spatiola's editor (tests/host/spatiola).
#include <gtest/gtest.h>

#include <sstream>

#include "host/cli/edit_script.h"
#include "host/runtime/host_error.h"

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
      {"# a comment\n\nrclick #1142 ctrl alt", "3: 7 #1142 0 0 m6 '' 0\n"},
      {"drag #1023 10 20 -5 7", "1: 8 #1023 @10,20 -5 7 m0 '' 0\n"},
      {"wheel #1075 -2", "1: 9 #1075 -2 0 m0 '' 0\n"},
      {"knob #1134 25 ctrl", "1: 10 #1134 25 0 m2 '' 0\n"},
      {"fader #1239 -40", "1: 11 #1239 -40 0 m0 '' 0\n"},
      {"type Front  left", "1: 12 #0 0 0 m0 'Front  left' 0\n"},
      {"key tab shift", "1: 13 #0 9 0 m1 '' 0\n"},
      {"choose #1131 5", "1: 14 #1131 5 0 m0 '' 0\n"},
      {"menu Adjust inputs/outputs", "1: 15 #0 0 0 m0 'Adjust inputs/outputs' 0\n"},
      {"wait 120", "1: 16 #0 120 0 m0 '' 0\n"},
      {"set in 1 X 0.75", "1: 17 #0 0 0 m0 'in 1 X' 0.75\n"},
      {"snapshot my picture.png", "1: 19 #0 0 0 m0 'my picture.png' 0\n"},
  };
  for (const auto& [script, expected] : cases) EXPECT_EQ(parse(script), expected) << script;
}

TEST(EditScript, NamesTheLineOfAMistake) {
  const std::pair<const char*, const char*> cases[] = {
      {"wait 10\njump 3", "s.txt:2: 'jump' is no command (see the README's edit script)"},
      {"click", "s.txt:1: expected #ID, X Y or #ID X Y"},
      {"click #x1", "s.txt:1: '#x1' is no control: write #ID, for instance #1023"},
      {"click 10 20 meta", "s.txt:1: 'meta' is no modifier (shift, ctrl, alt)"},
      {"wait -5", "s.txt:1: cannot wait a negative time"},
      {"wait soon", "s.txt:1: 'soon' is not a whole number (milliseconds)"},
      {"set in 1 X 1.5", "s.txt:1: '1.5' is no normalised value 0..1"},
      {"key hyper",
       "s.txt:1: 'hyper' is no key: a letter, a digit, or return, escape, tab, space, "
       "backspace, delete, left, right, up, down, home, end, pageup, pagedown, f4"},
      {"snapshot", "s.txt:1: missing text"},
  };
  for (const auto& [script, expected] : cases) EXPECT_EQ(parse(script), expected) << script;
}

}  // namespace
