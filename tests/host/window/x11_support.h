// A private X server for tests and benchmarks that need a display, child processes of the X
// tools, and X window dumps read as pictures.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/daub.h"

// Xvfb on a free display number; stopped and cleaned up on destruction.
class XvfbServer {
 public:
  XvfbServer() = default;
  ~XvfbServer();
  XvfbServer(const XvfbServer&) = delete;
  XvfbServer& operator=(const XvfbServer&) = delete;

  // Starts it and sets DISPLAY for this process and its children; false with a reason.
  bool start(int width = 1024, int height = 768, std::string* error = nullptr);
  std::string display() const { return ":" + std::to_string(number_); }

 private:
  int number_ = -1;
  pid_t pid_ = -1;
};

// A child process started without waiting for it.
class ChildProcess {
 public:
  explicit ChildProcess(const std::vector<std::string>& argv);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  bool started() const { return pid_ > 0; }
  // True once it has ended; its exit status is then in status().
  bool finished();
  int status() const { return status_; }

 private:
  pid_t pid_ = -1;
  int status_ = -1;
};

// The picture of an X window dump as Xvfb writes it (24 or 32 bits per pixel), or null.
std::unique_ptr<DAUB_IBitmap> readXwd(const std::string& path, std::string* error = nullptr);
