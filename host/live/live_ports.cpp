#include "host/live/live_ports.h"

#include "host/live/port_names.h"
#include "host/runtime/host_error.h"

std::string connectionTarget(const std::string& pattern, int portNumber) {
  std::string target = pattern;
  const auto at = target.find("%d");
  if (at != std::string::npos) target.replace(at, 2, std::to_string(portNumber));
  return target;
}

void checkConnectionPattern(const std::string& pattern, const std::string& option) {
  const auto first = pattern.find('%');
  if (first == std::string::npos || pattern.compare(first, 2, "%d") != 0 ||
      pattern.find('%', first + 1) != std::string::npos) {
    throw HostError(option + " '" + pattern +
                    "' must name the ports with one %d for the port number, e.g. "
                    "system:playback_%d");
  }
}

LivePorts::LivePorts(JackClient& client, std::string connectInputs, std::string connectOutputs)
    : client_(client),
      connectInputs_(std::move(connectInputs)),
      connectOutputs_(std::move(connectOutputs)) {}

void LivePorts::resize(std::vector<jack_port_t*>& ports, const std::vector<std::string>& names,
                       bool isInput, std::vector<jack_port_t*>& dropped) {
  while (ports.size() > names.size()) {
    dropped.push_back(ports.back());
    ports.pop_back();
  }
  // Renaming in two passes never asks for a name another of these ports still holds.
  for (std::size_t i = 0; i < ports.size(); ++i) {
    if (client_.portShortName(ports[i]) != names[i]) {
      client_.renamePort(ports[i], names[i] + " (renaming)");
    }
  }
  for (std::size_t i = 0; i < ports.size(); ++i) {
    if (client_.portShortName(ports[i]) != names[i]) client_.renamePort(ports[i], names[i]);
  }
  for (std::size_t i = ports.size(); i < names.size(); ++i) {
    ports.push_back(client_.registerPort(names[i], isInput));
  }
}

std::vector<jack_port_t*> LivePorts::update(int inputs,
                                            const std::vector<std::string>& outputNames) {
  std::vector<jack_port_t*> dropped;
  const std::size_t maxBytes = client_.maxPortNameBytes();
  resize(inputs_, portNamesFor({}, inputs, "in_", maxBytes), true, dropped);
  resize(outputs_,
         portNamesFor(outputNames, static_cast<int>(outputNames.size()), "out_", maxBytes), false,
         dropped);
  wiredInputs_ = std::min(wiredInputs_, inputs_.size());
  wiredOutputs_ = std::min(wiredOutputs_, outputs_.size());
  return dropped;
}

void LivePorts::release(const std::vector<jack_port_t*>& ports) {
  for (jack_port_t* port : ports) client_.unregisterPort(port);
}

std::string LivePorts::connectNew() {
  std::string missing;
  auto wire = [&](const std::vector<jack_port_t*>& ports, std::size_t& wired,
                  const std::string& pattern, bool isInput) {
    for (; wired < ports.size(); ++wired) {
      if (pattern.empty()) continue;
      const std::string other = connectionTarget(pattern, static_cast<int>(wired) + 1);
      const std::string own = client_.portName(ports[wired]);
      const bool done = client_.portExists(other) &&
                        (isInput ? client_.connect(other, own) : client_.connect(own, other));
      if (!done) missing += (missing.empty() ? "" : ", ") + other;
    }
  };
  wire(inputs_, wiredInputs_, connectInputs_, true);
  wire(outputs_, wiredOutputs_, connectOutputs_, false);
  if (missing.empty()) return missing;
  return "note: could not connect to " + missing +
         " (no such JACK port); those ports stay unconnected";
}
