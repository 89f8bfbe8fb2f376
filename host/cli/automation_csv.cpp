#include "host/cli/automation_csv.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

#include "host/runtime/host_error.h"

namespace {

// Splits one line at commas outside double quotes; false for an unterminated quote.
bool splitFields(const std::string& line, std::vector<std::string>& fields) {
  fields.assign(1, std::string());
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (quoted && c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
      fields.back() += '"';
      ++i;
    } else if (c == '"') {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return !quoted;
}

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool parseNumber(const std::string& text, double& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return end == text.c_str() + text.size() && std::isfinite(value);
}

bool isHeader(const std::vector<std::string>& fields) {
  double ignored = 0.0;
  return !fields.empty() && !parseNumber(trimmed(fields[0]), ignored) &&
         trimmed(fields[0]).rfind("time", 0) == 0;
}

class LineError {
 public:
  LineError(const std::string& source, int line) : prefix_(source + ":" + std::to_string(line)) {}
  [[noreturn]] void fail(const std::string& what) const { throw HostError(prefix_ + ": " + what); }

 private:
  std::string prefix_;
};

AutomationPoint parsePoint(const std::vector<std::string>& fields, const LineError& error,
                           int line) {
  if (fields.size() != 3) {
    error.fail("expected 3 fields (time, parameter, value), found " +
               std::to_string(fields.size()));
  }
  AutomationPoint point;
  point.line = line;
  const std::string time = trimmed(fields[0]);
  if (!parseNumber(time, point.seconds) || point.seconds < 0.0) {
    error.fail("time '" + time + "' is not a number of seconds >= 0");
  }
  point.parameter = trimmed(fields[1]);
  if (point.parameter.empty()) error.fail("the parameter is empty");
  const std::string valueText = trimmed(fields[2]);
  double value = 0.0;
  if (!parseNumber(valueText, value)) error.fail("value '" + valueText + "' is not a number");
  if (value < 0.0 || value > 1.0) error.fail("value " + valueText + " is outside 0..1");
  point.value = static_cast<float>(value);
  return point;
}

}  // namespace

std::vector<AutomationPoint> parseAutomationCsv(std::istream& in, const std::string& sourceName) {
  std::vector<AutomationPoint> points;
  std::string line;
  std::vector<std::string> fields;
  for (int number = 1; std::getline(in, line); ++number) {
    const std::string content = trimmed(line);
    if (content.empty() || content[0] == '#') continue;
    const LineError error(sourceName, number);
    if (!splitFields(content, fields)) error.fail("a quote is not closed");
    if (points.empty() && number == 1 && isHeader(fields)) continue;
    points.push_back(parsePoint(fields, error, number));
  }
  std::stable_sort(
      points.begin(), points.end(),
      [](const AutomationPoint& a, const AutomationPoint& b) { return a.seconds < b.seconds; });
  return points;
}

std::vector<AutomationPoint> loadAutomationCsv(const std::string& path) {
  std::ifstream in(path);
  if (!in) throw HostError("cannot read the automation file " + path);
  return parseAutomationCsv(in, path);
}

std::int64_t samplePositionOf(double seconds, double sampleRate) {
  return std::llround(seconds * sampleRate);
}
