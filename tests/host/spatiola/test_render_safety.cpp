// Renders that lose nothing and surprise no one: interruptions that leave no file behind, the same
// bytes for the same render in every format, overs counted and told, and notes for what a render
// cannot do.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/host/runtime/test_support.h"
#include "tests/host/spatiola/command_fixture.h"

namespace {

const std::string kProbe = std::string(PROBE_DIR) + "/probe.so";
const std::string kSynth = std::string(PROBE_DIR) + "/probe_synth.so";

using RenderSafety = CommandTest;

}  // namespace

TEST_F(RenderSafety, InterruptedRendersRemoveTheirFileAndSaySo) {
  writeLevels(path("long.wav"), {0.5}, 48000 * 20);
  setenv("PROBE_PROCESS_SLEEP_US", "2000", 1);  // 20 s of audio take about 4 s
  const std::pair<int, const char*> signals[] = {
      {SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};
  for (const auto& [signalNumber, name] : signals) {
    const RunningCommand running = startCommand(
        {SPATIOLA_EXE, "render", "--plugin", kProbe, path("long.wav"), path("out.wav")});
    for (int wait = 0; wait < 500 && !std::filesystem::exists(path("out.wav.partial")); ++wait) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    kill(running.pid, signalNumber);
    const CommandResult run = finishCommand(running);
    EXPECT_EQ(run.exitCode, 128 + signalNumber) << name;
    EXPECT_TRUE(run.err.ends_with("spatiola: interrupted by " + std::string(name) +
                                  " while writing " + path("out.wav") +
                                  "; the unfinished file was removed\n"))
        << run.err;
    EXPECT_FALSE(std::filesystem::exists(path("out.wav.partial")) ||
                 std::filesystem::exists(path("out.wav")));
  }
  unsetenv("PROBE_PROCESS_SLEEP_US");
}

// libsndfile stamps the time into PEAK chunks and draws Ogg serial numbers from the clock: the
// second round of renders runs in another second.
TEST_F(RenderSafety, TheSameRenderGivesTheSameBytesInEveryFormat) {
  std::vector<double> samples;
  for (int f = 0; f < 4800; ++f) samples.push_back(0.5 * std::sin(f * 0.05));
  writeAudio(path("in.wav"), 1, samples);
  const char* const formats[] = {"wav", "w64", "rf64", "aiff", "flac", "caf", "ogg"};
  std::string first[std::size(formats)];
  for (int round = 0; round < 2; ++round) {
    const std::time_t started = std::time(nullptr);
    for (std::size_t k = 0; k < std::size(formats); ++k) {
      const std::string out = path(std::string("out.") + formats[k]);
      ASSERT_EQ(spatiola({"render", "--plugin", kProbe, path("in.wav"), out}).exitCode, 0);
      if (round == 0) {
        first[k] = readFile(out);
      } else {
        EXPECT_EQ(readFile(out), first[k]) << formats[k];
      }
    }
    while (std::time(nullptr) == started)
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_EQ(readAudio(path("out.ogg")).frames, 4800);
}

// The probe doubles its input at "gain" 1: 0.75 becomes 1.5 in every sample, which an integer file
// clips.
TEST_F(RenderSafety, OversAreCountedInTheTableAndWarnedOf) {
  writeLevels(path("in.wav"), {0.75, 0.25}, 1000);
  const CommandResult run = spatiola({"render", "--plugin", kProbe, "--set", "gain=1",
                                      "--sample-format", "pcm16", path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_TRUE(run.out.starts_with("rendered 1000 samples (2 -> 2 channels, 48000 Hz) to ") &&
              contains(run.out, "3.52       3.52     1000\n2    2"))
      << run.out;
  const std::string overs = "overs: 1000 samples above 0 dBFS in channel 1, clipped in the file\n";
  EXPECT_TRUE(run.out.ends_with(overs)) << run.out;
  EXPECT_EQ(run.err, "warning: 1000 samples clipped in " + path("out.wav") +
                         ": its integer format holds nothing above 0 dBFS; lower the level to "
                         "keep them\n");
  EXPECT_NEAR(std::fabs(readAudio(path("out.wav")).at(0, 0)), 1.0, 1e-4);
}

// An instrument is known by either sign: no inputs, or the synth flag.
TEST_F(RenderSafety, NotesSayWhatTheRenderCannotDo) {
  std::ofstream(path("late.csv")) << "1,gain,0.5\n";
  const auto instrument = [](const std::string& inputs) {
    return "note: the plug-in is an instrument (" + inputs +
           "); this host sends it no MIDI, so it plays no notes\n";
  };
  const struct {
    const char* probeInputs;  // else the file's channel count
    std::vector<std::string> args;
    double level;
    int frames;
    std::string note;
  } cases[] = {
      {nullptr, {"--plugin", kSynth}, 0.5, 100, instrument("0 inputs")},
      {"1", {"--plugin", kSynth}, 0.5, 100, instrument("1 input")},
      {"0", {"--plugin", kProbe}, 0.5, 100, instrument("0 inputs")},
      {nullptr,
       {"--plugin", kProbe, "--automation", path("late.csv")},
       0.5,
       48000,  // the change at 1 s falls just after the last sample
       "note: automation after the end of the input (48000 samples) is not applied\n"},
      {nullptr,
       {"--plugin", kProbe, "--set", "gain=1"},  // doubled: one over, kept in floats
       0.75,
       1,
       "warning: 1 sample in " + path("out.wav") +
           " is above 0 dBFS; the floating-point file keeps it, an integer format would clip it\n"},
      {nullptr,
       {"--plugin", kProbe},
       NAN,
       1,
       "warning: the plug-in's output holds 1 sample that is no number (NaN or infinity)\n"},
  };
  for (const auto& c : cases) {
    if (c.probeInputs != nullptr) setenv("PROBE_INPUTS", c.probeInputs, 1);
    writeLevels(path("in.wav"), {c.level, 0.25}, c.frames);
    std::vector<std::string> command = {"render"};
    command.insert(command.end(), c.args.begin(), c.args.end());
    command.insert(command.end(), {path("in.wav"), path("out.wav")});
    const CommandResult run = spatiola(command);
    EXPECT_EQ(std::pair(run.exitCode, run.err), std::pair(0, c.note));
    unsetenv("PROBE_INPUTS");
  }
}

TEST_F(RenderSafety, BenchNeverHandsThePluginAnEmptyBlock) {
  const CommandResult run = spatiola({"bench", "--plugin", kProbe, "--random-blocks", "--block",
                                      "4", "--seconds", "0.01", "--repeat", "1"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
}
