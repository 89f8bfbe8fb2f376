#include "host/live/port_names.h"

#include <set>

namespace {

std::string sanitised(const std::string& name) {
  std::string out = name;
  for (char& c : out) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == ':' || byte < 0x20 || byte == 0x7f) c = '_';
  }
  return out;
}

// At most `maxBytes`, ending on a whole UTF-8 character.
std::string cut(const std::string& name, std::size_t maxBytes) {
  if (name.size() <= maxBytes) return name;
  std::size_t end = maxBytes;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
  return name.substr(0, end);
}

std::string unique(const std::string& name, std::set<std::string>& taken, std::size_t maxBytes) {
  std::string candidate = name;
  for (int n = 2; taken.count(candidate) != 0; ++n) {
    const std::string suffix = " " + std::to_string(n);
    candidate = cut(name, maxBytes - suffix.size()) + suffix;
  }
  taken.insert(candidate);
  return candidate;
}

}  // namespace

std::vector<std::string> portNamesFor(const std::vector<std::string>& channelNames, int count,
                                      const std::string& fallbackPrefix, std::size_t maxBytes) {
  std::vector<std::string> names;
  std::set<std::string> taken;
  for (int i = 0; i < count; ++i) {
    const auto at = static_cast<std::size_t>(i);
    std::string name = at < channelNames.size() ? sanitised(channelNames[at]) : std::string();
    if (name.find_first_not_of(' ') == std::string::npos) {
      name = fallbackPrefix + std::to_string(i + 1);
    }
    names.push_back(unique(cut(name, maxBytes), taken, maxBytes));
  }
  return names;
}
