// The fixture of the spatiola command's tests: a private directory, the built program, and the
// audio files that go in and come out.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "tests/host/services/temp_config.h"

struct CommandResult {
  int exitCode = -1;  // 128 + n when killed by signal n
  std::string out;
  std::string err;
};

// Runs a program the way a user would: argv[0] is its path, `stdinPath` (optional) is fed as
// standard input, and what it printed is kept. One still running after kCommandSeconds is stopped
// by SIGALRM (exit code 142).
constexpr unsigned kCommandSeconds = 60;
CommandResult runCommand(const std::vector<std::string>& argv, const std::string& stdinPath = "");

// The same in two steps, for tests that signal the program while it runs.
struct RunningCommand {
  int pid = -1;
  std::string outPath, errPath;
};
RunningCommand startCommand(const std::vector<std::string>& argv,
                            const std::string& stdinPath = "");
CommandResult finishCommand(const RunningCommand& command);
// Its exit code once it has ended, else -1 at once.
int exitCodeIfEnded(int pid);
// Polls `condition` until it holds, for at most `timeout`; true when it held.
bool eventually(const std::function<bool()>& condition,
                std::chrono::milliseconds timeout = std::chrono::seconds(10));
// The whole file as bytes; empty when it cannot be read.
std::string readFile(const std::string& path);

// An audio file as libsndfile reads it: interleaved samples and the file's description.
struct AudioData {
  int channels = 0, sampleRate = 0, format = 0;
  std::int64_t frames = 0;
  std::vector<int> channelMap;  // empty when the file has none
  std::vector<double> samples;
  double at(std::int64_t frame, int channel) const {
    return samples[static_cast<std::size_t>(frame * channels + channel)];
  }
  double peakDb(int channel) const;
  // Channels, frames, sample rate and libsndfile format, compared at once.
  std::tuple<int, int, int, int> shape() const {
    return {channels, static_cast<int>(frames), sampleRate, format};
  }
};

AudioData readAudio(const std::string& path);
// Interleaved frames as a 32-bit float WAVE file.
void writeAudio(const std::string& path, int channels, const std::vector<double>& samples,
                int sampleRate = 48000);
// Constant levels, one per channel: after the first block every gain has settled.
void writeLevels(const std::string& path, const std::vector<double>& levels, std::int64_t frames);

// Each test gets a private settings directory that also holds its files.
class CommandTest : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const { return config_.dir() + "/" + name; }
  // The built spatiola program with `args`.
  CommandResult spatiola(std::vector<std::string> args, const std::string& stdinPath = "");

  TempConfig config_;
};
