#include "host/cli/edit_script.h"

#include <cctype>
#include <charconv>
#include <cstdlib>
#include <sstream>

#include "host/runtime/host_error.h"
#include "platform/win32_controls.h"

namespace {

// How the words after a verb read.
enum class Shape {
  Target,         // TARGET [MODS]
  TargetTwo,      // TARGET DX DY [MODS]
  TargetOne,      // TARGET N [MODS]
  Control,        // #ID N [MODS]
  KeyName,        // NAME [MODS]
  Rest,           // the rest of the line as it stands
  Milliseconds,   // N
  ParameterValue  // NAME-OR-INDEX VALUE
};

struct VerbSyntax {
  const char* word;
  ScriptVerb verb;
  Shape shape;
};

constexpr VerbSyntax kVerbs[] = {{"down", ScriptVerb::Down, Shape::Target},
                                 {"up", ScriptVerb::Up, Shape::Target},
                                 {"move", ScriptVerb::Move, Shape::Target},
                                 {"click", ScriptVerb::Click, Shape::Target},
                                 {"dblclick", ScriptVerb::DoubleClick, Shape::Target},
                                 {"rdown", ScriptVerb::RightDown, Shape::Target},
                                 {"rup", ScriptVerb::RightUp, Shape::Target},
                                 {"rclick", ScriptVerb::RightClick, Shape::Target},
                                 {"drag", ScriptVerb::Drag, Shape::TargetTwo},
                                 {"wheel", ScriptVerb::Wheel, Shape::TargetOne},
                                 {"knob", ScriptVerb::Knob, Shape::Control},
                                 {"fader", ScriptVerb::Fader, Shape::Control},
                                 {"type", ScriptVerb::Type, Shape::Rest},
                                 {"key", ScriptVerb::Key, Shape::KeyName},
                                 {"choose", ScriptVerb::Choose, Shape::Control},
                                 {"menu", ScriptVerb::Menu, Shape::Rest},
                                 {"wait", ScriptVerb::Wait, Shape::Milliseconds},
                                 {"set", ScriptVerb::Set, Shape::ParameterValue},
                                 {"save-state", ScriptVerb::SaveState, Shape::Rest},
                                 {"snapshot", ScriptVerb::Snapshot, Shape::Rest}};

struct NamedKey {
  const char* name;
  int virtualKey;
};
constexpr NamedKey kKeys[] = {
    {"return", VK_RETURN}, {"enter", VK_RETURN},   {"escape", VK_ESCAPE}, {"tab", VK_TAB},
    {"space", VK_SPACE},   {"backspace", VK_BACK}, {"delete", VK_DELETE}, {"left", VK_LEFT},
    {"right", VK_RIGHT},   {"up", VK_UP},          {"down", VK_DOWN},     {"home", VK_HOME},
    {"end", VK_END},       {"pageup", VK_PRIOR},   {"pagedown", VK_NEXT}, {"f4", VK_F4}};

struct NamedModifier {
  const char* name;
  unsigned bit;
};
constexpr NamedModifier kModifiers[] = {
    {"shift", winsys::kModShift}, {"ctrl", winsys::kModControl}, {"alt", winsys::kModAlt}};

// The words of one line, read left to right; every mistake names the line.
class LineReader {
 public:
  LineReader(const std::string& text, std::string place) : place_(std::move(place)) {
    std::istringstream words(text);
    for (std::string word; words >> word;) words_.push_back(word);
  }

  [[noreturn]] void fail(const std::string& what) const { throw HostError(place_ + ": " + what); }
  bool done() const { return next_ >= words_.size(); }
  const std::string& peek() const { return words_[next_]; }
  std::string take(const char* what) {
    if (done()) fail("missing " + std::string(what));
    return words_[next_++];
  }
  static bool isInteger(const std::string& word, int& value) {
    const char* end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    return error == std::errc() && stop == end;
  }
  int integer(const char* what) {
    const std::string word = take(what);
    int value = 0;
    if (!isInteger(word, value)) fail("'" + word + "' is not a whole number (" + what + ")");
    return value;
  }
  bool nextIsInteger() const {
    int ignored = 0;
    return !done() && isInteger(peek(), ignored);
  }
  std::size_t left() const { return words_.size() - next_; }
  int integersAhead() const {
    int count = 0;
    int ignored = 0;
    for (std::size_t i = next_; i < words_.size() && isInteger(words_[i], ignored); ++i) ++count;
    return count;
  }

 private:
  std::string place_;
  std::vector<std::string> words_;
  std::size_t next_ = 1;  // after the verb
};

int controlId(LineReader& reader) {
  const std::string word = reader.take("#ID");
  int id = 0;
  if (word.size() < 2 || word[0] != '#' || !LineReader::isInteger(word.substr(1), id)) {
    reader.fail("'" + word + "' is no control: write #ID, for instance #1023");
  }
  return id;
}

// A control's own point follows its #ID only when more numbers follow than the command needs
// after the target: "wheel #1075 -2" turns at the centre, "wheel #1075 5 5 -2" at (5, 5).
ScriptTarget target(LineReader& reader, int numbersAfter = 0) {
  ScriptTarget t;
  if (!reader.done() && reader.peek().starts_with("#")) {
    t.controlId = controlId(reader);
    if (reader.integersAhead() < 2 + numbersAfter) return t;
  } else if (!reader.nextIsInteger()) {
    reader.fail("expected #ID, X Y or #ID X Y");
  }
  t.hasPoint = true;
  t.point = {reader.integer("x"), reader.integer("y")};
  return t;
}

unsigned modifiers(LineReader& reader) {
  unsigned bits = 0;
  while (!reader.done()) {
    const std::string word = reader.take("modifier");
    bool known = false;
    for (const NamedModifier& m : kModifiers) {
      if (word == m.name) {
        bits |= m.bit;
        known = true;
      }
    }
    if (!known) reader.fail("'" + word + "' is no modifier (shift, ctrl, alt)");
  }
  return bits;
}

int virtualKey(LineReader& reader) {
  const std::string name = reader.take("key name");
  for (const NamedKey& key : kKeys) {
    if (name == key.name) return key.virtualKey;
  }
  if (name.size() == 1 && std::isalnum(static_cast<unsigned char>(name[0]))) {
    return std::toupper(static_cast<unsigned char>(name[0]));
  }
  reader.fail("'" + name + "' is no key: a letter, a digit, or return, escape, tab, space, " +
              "backspace, delete, left, right, up, down, home, end, pageup, pagedown, f4");
}

// The text after the verb, trimmed; it may hold spaces.
std::string restOfLine(const std::string& line, LineReader& reader) {
  const std::size_t start = line.find_first_not_of(" \t", line.find_first_of(" \t"));
  const std::size_t end = line.find_last_not_of(" \t\r");
  if (start == std::string::npos || end == std::string::npos || end < start) {
    reader.fail("missing text");
  }
  return line.substr(start, end - start + 1);
}

// The name may hold spaces ("in 1 X"); the value is the last word.
void parameterAndValue(const std::string& line, LineReader& reader, ScriptStep& step) {
  if (reader.left() < 2) reader.fail("expected a parameter and a value 0..1");
  const std::string rest = restOfLine(line, reader);
  const std::size_t cut = rest.find_last_of(" \t");
  const std::string valueText = rest.substr(cut + 1);
  char* end = nullptr;
  const double value = std::strtod(valueText.c_str(), &end);
  if (end != valueText.c_str() + valueText.size() || !(value >= 0.0 && value <= 1.0)) {
    reader.fail("'" + valueText + "' is no normalised value 0..1");
  }
  step.text = rest.substr(0, rest.find_last_not_of(" \t", cut) + 1);
  step.value = static_cast<float>(value);
}

void readShape(Shape shape, const std::string& line, LineReader& reader, ScriptStep& step) {
  switch (shape) {
    case Shape::Target:
      step.target = target(reader);
      break;
    case Shape::TargetTwo:
      step.target = target(reader, 2);
      step.numbers[0] = reader.integer("dx");
      step.numbers[1] = reader.integer("dy");
      break;
    case Shape::TargetOne:
      step.target = target(reader, 1);
      step.numbers[0] = reader.integer("notches");
      break;
    case Shape::Control:
      step.target.controlId = controlId(reader);
      step.numbers[0] = reader.integer(step.verb == ScriptVerb::Choose ? "item" : "pixels");
      break;
    case Shape::KeyName:
      step.numbers[0] = virtualKey(reader);
      break;
    case Shape::Rest:
      step.text = restOfLine(line, reader);
      return;
    case Shape::Milliseconds:
      step.numbers[0] = reader.integer("milliseconds");
      if (step.numbers[0] < 0) reader.fail("cannot wait a negative time");
      break;
    case Shape::ParameterValue:
      parameterAndValue(line, reader, step);
      return;
  }
  step.modifiers = modifiers(reader);
}

ScriptStep parseLine(const std::string& line, const std::string& place, int number) {
  LineReader reader(line, place);
  std::string verb;
  std::istringstream(line) >> verb;
  for (const VerbSyntax& syntax : kVerbs) {
    if (verb != syntax.word) continue;
    ScriptStep step;
    step.line = number;
    step.verb = syntax.verb;
    readShape(syntax.shape, line, reader, step);
    return step;
  }
  reader.fail("'" + verb + "' is no command (see the README's edit script)");
}

}  // namespace

std::vector<ScriptStep> parseEditScript(std::istream& in, const std::string& name) {
  std::vector<ScriptStep> steps;
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos || line[first] == '#') continue;
    steps.push_back(parseLine(line.substr(first), name + ":" + std::to_string(number), number));
  }
  return steps;
}
