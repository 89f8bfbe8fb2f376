#include "host/cli/live_control.h"

#include <poll.h>
#include <unistd.h>

#include "host/runtime/host_error.h"

namespace {

std::string argumentOf(const std::string& line, const std::string& word) {
  const auto start = line.find_first_not_of(' ', word.size());
  return start == std::string::npos ? std::string() : line.substr(start);
}

bool startsWith(const std::string& line, const std::string& word) {
  return line.rfind(word, 0) == 0 && (line.size() == word.size() || line[word.size()] == ' ');
}

const PluginExtension& extensionOrThrow(const LiveControl& control, const std::string& what) {
  const PluginExtension* extension = extensionFor(control.plugin, control.instance);
  if (extension == nullptr) throw HostError(what + " applies to Spatiola only");
  return *extension;
}

}  // namespace

bool runControlLine(const LiveControl& control, const std::string& line) {
  if (line.empty() || line[0] == '#') return true;
  if (line == "quit") return false;
  if (startsWith(line, "set")) {
    const ParameterSetting setting = parseParameterSetting(argumentOf(line, "set"));
    const int index = resolveParameter(control.instance, setting.parameter);
    control.session.setParameter(index, setting.value);
  } else if (startsWith(line, "inputs")) {
    const std::string count = argumentOf(line, "inputs");
    if (count.empty() || count.size() > 3 ||
        count.find_first_not_of("0123456789") != std::string::npos) {
      throw HostError("inputs '" + count + "' is not a count");
    }
    const PluginExtension& extension = extensionOrThrow(control, "inputs");
    control.session.whileSuspended(
        [&] { extension.setInputCount(control.instance, std::stoi(count)); });
  } else if (startsWith(line, "layout")) {
    const PluginExtension& extension = extensionOrThrow(control, "layout");
    control.session.whileSuspended(
        [&] { extension.applyLayout(control.instance, argumentOf(line, "layout")); });
  } else {
    throw HostError("unknown control line '" + line +
                    "' (set NAME=VALUE, inputs N, layout NAME, quit)");
  }
  return true;
}

bool LineReader::poll(const std::function<void(const std::string&)>& onLine) {
  while (!ended_) {
    pollfd ready{fd_, POLLIN, 0};
    if (::poll(&ready, 1, 0) <= 0) break;
    char bytes[4096];
    const ssize_t got = read(fd_, bytes, sizeof bytes);
    if (got <= 0) {
      ended_ = true;
      break;
    }
    pending_.append(bytes, static_cast<std::size_t>(got));
  }
  for (auto end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
    std::string line = pending_.substr(0, end);
    pending_.erase(0, end + 1);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    onLine(line);
  }
  return !ended_;
}
