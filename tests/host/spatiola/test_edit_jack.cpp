// spatiola edit --jack on a private JACK server, scripted headless: a typed count re-registers the
// ports, which outlive the server; recorded gestures render offline to the same positions at the
// same samples.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

#include "host/cli/automation_csv.h"
#include "tests/host/spatiola/jack_fixture.h"

namespace {

constexpr int kPeriod = 256;
constexpr double kRate = 48000.0;

using EditJackTest = JackTest;

// "3" typed as the input count: a third port, wired as the first two were, on the same client.
// Then the server goes: the editor runs on to its end, which says so.
TEST_F(EditJackTest, CountTypedInTheEditorAddsAWiredPortAndTheServersEndIsSaid) {
  std::ofstream(path("count.txt")) << "wait 1000\nclick 692 27\nkey end\nkey backspace\ntype 3\n"
                                   << "wait 2000\n";
  JackServer server;
  ProbeClient probe(server.name(), {0.1f, 0.2f, 0.3f}, 0);
  LiveProgram edit(server.name(),
                   {"--headless", "--script", path("count.txt"), "--layout", "stereo",
                    "--connect-inputs", "probe:src_%d"},
                   {"edit", "--jack"});
  const auto wired = [&](int input) {
    const std::string n = std::to_string(input);
    return probe.connections("spatiola:in_" + n) == std::vector<std::string>{"probe:src_" + n};
  };
  ASSERT_TRUE(eventually([&] { return wired(1) && wired(2); })) << edit.err();
  EXPECT_TRUE(probe.ports("^spatiola:in_3$").empty());
  EXPECT_TRUE(eventually([&] { return wired(1) && wired(2) && wired(3); })) << edit.err();
  server.kill();
  EXPECT_EQ(edit.wait(), 1);
  const std::string said = "spatiola: the JACK server stopped (";
  const std::size_t at = edit.err().find(said);
  EXPECT_NE(at, std::string::npos) << edit.err();
  EXPECT_EQ(edit.err().find(said, at + 1), std::string::npos) << "said once";
}

// The first frame after `from` whose sample on channel 0 differs from the one at `from` (-1: none).
std::int64_t firstChange(const AudioData& audio, std::int64_t from) {
  for (std::int64_t f = from + 1; f < audio.frames; ++f) {
    if (std::fabs(audio.at(f, 0) - audio.at(from, 0)) > 1e-7) return f;
  }
  return -1;
}

nlohmann::json firstInput(const CommandResult& sceneExport) {
  return nlohmann::json::parse(sceneExport.out)["inputs"][0];
}

// Two drags of input 1 while audio runs, then a move as automation; the render from the start
// state with the recorded CSV moves where the recording says and ends where the editor did.
TEST_F(EditJackTest, RecordedGesturesRenderOfflineToTheBlock) {
  writeLevels(path("tone.wav"), {0.5}, 48000);
  std::ofstream(path("drags.txt")) << "wait 300\ndrag 203 188 20 0\nwait 300\ndrag 223 188 0 30\n"
                                   << "wait 300\nset in 1 X 0.8\nwait 300\n";
  {
    JackServer server;
    const CommandResult edit = spatiola(
        {"edit", "--headless", "--script", path("drags.txt"), "--jack", "--server", server.name(),
         "--play", path("tone.wav"), "--layout", "stereo", "--record-automation", path("moves.csv"),
         "--save-start-state", path("start.bin"), "--save-state", path("end.bin")});
    ASSERT_EQ(edit.exitCode, 0) << edit.err;
    EXPECT_EQ(edit.err.find("spatiola:"), std::string::npos) << "a clean end says nothing";
  }
  const std::vector<AutomationPoint> moves = loadAutomationCsv(path("moves.csv"));
  ASSERT_FALSE(moves.empty());
  // Each gesture's first block: the output before it is steady.
  std::vector<std::int64_t> gestures;
  for (const AutomationPoint& move : moves) {
    const std::int64_t at = samplePositionOf(move.seconds, kRate);
    EXPECT_EQ(at % kPeriod, 0) << "on a block's first sample";
    if (gestures.empty() || at - gestures.back() > 4800) gestures.push_back(at);
  }
  ASSERT_EQ(gestures.size(), 3u) << readFile(path("moves.csv"));

  const std::int64_t end = samplePositionOf(moves.back().seconds, kRate) + 4800;
  writeLevels(path("long.wav"), {0.5}, end);
  ASSERT_EQ(spatiola({"render", path("long.wav"), path("out.wav"), "--state", path("start.bin"),
                      "--automation", path("moves.csv"), "--block", "256", "--save-state",
                      path("rendered.bin")})
                .exitCode,
            0);
  const AudioData out = readAudio(path("out.wav"));
  for (const std::int64_t at : gestures) {
    const std::int64_t moved = firstChange(out, at - kPeriod);
    EXPECT_GE(moved, at);
    EXPECT_LT(moved, at + kPeriod);
  }
  const nlohmann::json edited = firstInput(spatiola({"scene", "export", path("end.bin")}));
  const nlohmann::json rendered = firstInput(spatiola({"scene", "export", path("rendered.bin")}));
  for (const char* axis : {"x", "y"}) {
    EXPECT_NEAR(rendered[axis].get<double>(), edited[axis].get<double>(), 1e-6) << axis;
  }
  EXPECT_NE(edited["x"].get<double>(),
            firstInput(spatiola({"scene", "export", path("start.bin")}))["x"].get<double>())
      << "the drags moved input 1";
}

}  // namespace
