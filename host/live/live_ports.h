// The JACK ports of a live session and their wiring: one input port per plug-in input, one output
// port per plug-in output. Changing the counts keeps the ports that remain (and so their
// connections), renames those whose channel was renamed, registers and wires the new ones, and
// hands back the ones to drop. [UI thread]
#pragma once

#include <jack/jack.h>

#include <string>
#include <vector>

#include "host/live/jack_client.h"

// "system:playback_%d" with the 1-based port number; throws HostError for a pattern without
// exactly one %d.
std::string connectionTarget(const std::string& pattern, int portNumber);
void checkConnectionPattern(const std::string& pattern, const std::string& option);

class LivePorts {
 public:
  // Empty patterns connect nothing.
  LivePorts(JackClient& client, std::string connectInputs, std::string connectOutputs);

  // Registers, renames and picks ports to drop; returns the dropped ones, still registered: the
  // caller unregisters them with release() once the audio thread no longer uses them.
  std::vector<jack_port_t*> update(int inputs, const std::vector<std::string>& outputNames);
  void release(const std::vector<jack_port_t*>& ports);
  // Wires the ports registered since the last call after the patterns; returns a note naming the
  // targets that do not exist (empty when all were found).
  std::string connectNew();

  const std::vector<jack_port_t*>& inputs() const { return inputs_; }
  const std::vector<jack_port_t*>& outputs() const { return outputs_; }

 private:
  void resize(std::vector<jack_port_t*>& ports, const std::vector<std::string>& names, bool isInput,
              std::vector<jack_port_t*>& dropped);

  JackClient& client_;
  std::string connectInputs_;
  std::string connectOutputs_;
  std::vector<jack_port_t*> inputs_;
  std::vector<jack_port_t*> outputs_;
  std::size_t wiredInputs_ = 0;
  std::size_t wiredOutputs_ = 0;
};
