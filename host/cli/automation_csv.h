// Automation files: one change per line, "time in seconds, parameter name or index, normalised
// value". Lines starting with '#' and empty lines are skipped, as is a first line that is a
// header ("time,parameter,value"). A field may be quoted with double quotes (names with commas);
// "" inside quotes is one quote.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

struct AutomationPoint {
  double seconds = 0.0;
  std::string parameter;  // a name, or the index as written
  float value = 0.0f;
  int line = 0;  // 1-based, for messages
};

// Points in time order (equal times keep file order). Throws HostError naming `sourceName`, the
// line and the field for anything it cannot read, e.g. "moves.csv:4: value 1.5 is outside 0..1".
std::vector<AutomationPoint> parseAutomationCsv(std::istream& in, const std::string& sourceName);
std::vector<AutomationPoint> loadAutomationCsv(const std::string& path);

// The sample at which a change at `seconds` takes effect.
std::int64_t samplePositionOf(double seconds, double sampleRate);
