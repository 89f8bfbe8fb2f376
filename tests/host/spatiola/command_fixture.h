// The fixture of the spatiola command's tests: a private directory, the built program, and the
// audio files that go in and come out.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
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
// The first frame after `from` whose sample on `channel` differs from the one at `from` (-1: none).
std::int64_t firstChange(const AudioData& audio, int channel, std::int64_t from);
// Each move (a sample) changes channel 0 of `out` within the block of `period` frames it starts.
void expectMovesWithinTheirBlocks(const AudioData& out, const std::vector<std::int64_t>& moves,
                                  std::int64_t period);
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
