// What the live tests run against: a private JACK server on the dummy driver, the spatiola program
// running live with a pipe to its standard input, and a JACK client of the test's own that plays
// constant levels and keeps the last sample it received on each input.
#pragma once

#include <jack/jack.h>

#include <atomic>
#include <chrono>
#include <string>
#include <vector>

#include "tests/host/spatiola/command_fixture.h"

// jackd --no-realtime -d dummy -r 48000 -p 256 under a name no other test uses.
class JackServer {
 public:
  static bool available();  // jackd installed
  JackServer();
  ~JackServer();  // stops it unless killed
  JackServer(const JackServer&) = delete;
  JackServer& operator=(const JackServer&) = delete;
  const std::string& name() const { return name_; }
  void kill();  // stops it under its clients

 private:
  std::string name_;
  RunningCommand jackd_;
  bool running_ = false;
};

// `spatiola COMMAND --server NAME ARGS` (COMMAND: `live`, or `edit --jack`) with a pipe to its
// standard input.
class LiveProgram {
 public:
  LiveProgram(const std::string& server, std::vector<std::string> args,
              std::vector<std::string> command = {"live"});
  ~LiveProgram();  // quits, then kills it if it does not end
  LiveProgram(const LiveProgram&) = delete;
  LiveProgram& operator=(const LiveProgram&) = delete;
  void send(const std::string& line);
  // The exit code (128 + n for signal n), or -1 when it is still running after `timeout`.
  int wait(std::chrono::milliseconds timeout = std::chrono::seconds(10));
  std::string out() const { return readFile(program_.outPath); }
  std::string err() const { return readFile(program_.errPath); }

 private:
  RunningCommand program_;
  int stdinFd_ = -1;
  int exitCode_ = -1;
};

class ProbeClient {
 public:
  // Outputs "src_1".. playing `levels`, inputs "sink_1".. `sinks` of them.
  ProbeClient(const std::string& server, std::vector<float> levels, int sinks);
  ~ProbeClient();
  ProbeClient(const ProbeClient&) = delete;
  ProbeClient& operator=(const ProbeClient&) = delete;
  float last(int sink) const { return last_[static_cast<std::size_t>(sink)].load(); }
  void clear(int sink) { last_[static_cast<std::size_t>(sink)].store(0.0f); }
  // Asks the server for another period, as a user does in a JACK control application.
  bool setBufferSize(int frames);
  // Full names of the ports whose names match `pattern` (a regular expression).
  std::vector<std::string> ports(const std::string& pattern) const;
  std::vector<std::string> connections(const std::string& port) const;

 private:
  static int process(jack_nframes_t frames, void* self);
  jack_client_t* client_ = nullptr;
  std::vector<float> levels_;
  std::vector<jack_port_t*> sources_;
  std::vector<jack_port_t*> sinks_;
  std::vector<std::atomic<float>> last_;
};

// Skips its test where jackd is not installed.
class JackTest : public CommandTest {
 protected:
  void SetUp() override {
    if (!JackServer::available()) GTEST_SKIP() << "jackd is not installed (scripts/deps.sh)";
  }
};
