// The lines `spatiola live` takes on its standard input while the audio runs. [UI thread]
#pragma once

#include <functional>
#include <string>

#include "host/cli/plugin_setup.h"
#include "host/live/live_session.h"

struct LiveControl {
  PluginInstance& instance;
  const PluginOptions& plugin;
  LiveSession& session;
};

// Carries out one line: "set NAME=VALUE" (recorded as automation when recording), "inputs N" and
// "layout NAME" (Spatiola), "quit". Returns false for "quit"; throws HostError for a line it
// cannot carry out.
bool runControlLine(const LiveControl& control, const std::string& line);

// Reads whole lines from a file descriptor without waiting.
class LineReader {
 public:
  explicit LineReader(int fd) : fd_(fd) {}
  // Calls `onLine` for every complete line that has arrived; false once the input has ended.
  bool poll(const std::function<void(const std::string&)>& onLine);

 private:
  int fd_;
  bool ended_ = false;
  std::string pending_;
};
