// spatiola live end to end on a private JACK server (dummy driver): the panned levels against an
// offline render, count changes while running, and the server going away. The recording round
// trip is edit --jack's, through the same live session.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/spatiola/jack_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

class LiveJackTest : public JackTest {
 protected:
  // With `started`, once it has said that it runs.
  std::unique_ptr<LiveProgram> live(const JackServer& server, std::vector<std::string> args,
                                    bool started = true) {
    auto program = std::make_unique<LiveProgram>(server.name(), std::move(args));
    if (!started) return program;
    EXPECT_TRUE(eventually([&] { return program->out().find("JACK client") != std::string::npos; }))
        << program->err();
    return program;
  }
};

TEST_F(LiveJackTest, PannedLevelsMatchTheOfflineRender) {
  const std::vector<std::string> setup = {"--layout", "5.1 surround", "--set", "in 1 X=0.2"};
  writeLevels(path("in.wav"), {0.5, -0.25}, 4800);
  std::vector<std::string> render = {"render", path("in.wav"), path("out.wav"), "--set",
                                     "in 2 Y=0.1"};
  render.insert(render.end(), setup.begin(), setup.end());
  ASSERT_EQ(spatiola(render).exitCode, 0);
  const AudioData offline = readAudio(path("out.wav"));
  ASSERT_EQ(offline.channels, 6);

  JackServer server;
  ProbeClient probe(server.name(), {0.5f, -0.25f}, 6);
  std::vector<std::string> args = {
      "--inputs", "2", "--connect-inputs", "probe:src_%d", "--connect-outputs", "probe:sink_%d"};
  args.insert(args.end(), setup.begin(), setup.end());
  auto program = live(server, args);
  program->send("set in 2 Y=0.1");
  EXPECT_THAT(probe.ports("^spatiola:"),
              UnorderedElementsAre("spatiola:in_1", "spatiola:in_2", "spatiola:front left",
                                   "spatiola:front right", "spatiola:front center", "spatiola:LFE",
                                   "spatiola:back left", "spatiola:back right"));
  const auto matches = [&] {
    for (int s = 0; s < 6; ++s) {
      if (std::fabs(probe.last(s) - offline.at(offline.frames - 1, s)) > 1e-6) return false;
    }
    return true;
  };
  EXPECT_TRUE(eventually(matches))
      << "front left live " << probe.last(0) << ", offline " << offline.at(offline.frames - 1, 0);
  EXPECT_GT(std::fabs(probe.last(0)), 0.01);  // not silence matching silence
  EXPECT_THAT(program->out(), HasSubstr("48000 Hz, 256 frames"));

  // A new period reaches the plug-in through its dispatcher; the levels stay.
  ASSERT_TRUE(probe.setBufferSize(128));
  EXPECT_TRUE(eventually([&] {
    return program->err().find("48000 Hz, 128 frames") != std::string::npos;
  })) << program->err();
  for (int s = 0; s < 6; ++s) probe.clear(s);
  EXPECT_TRUE(eventually(matches)) << "front left live " << probe.last(0);
  program->send("quit");
  EXPECT_EQ(program->wait(), 0) << program->err();
}

TEST_F(LiveJackTest, CountChangesKeepTheClientAndTheConnections) {
  JackServer server;
  ProbeClient probe(server.name(), {0.1f, 0.2f, 0.3f, 0.4f}, 2);
  auto program = live(server, {"--inputs", "2", "--layout", "stereo", "--connect-inputs",
                               "probe:src_%d", "--connect-outputs", "probe:sink_%d"});
  const auto wiredInputs = [&](int count) {
    for (int i = 1; i <= 4; ++i) {
      const auto wired = probe.connections("spatiola:in_" + std::to_string(i));
      if (wired != (i <= count ? std::vector<std::string>{"probe:src_" + std::to_string(i)}
                               : std::vector<std::string>{})) {
        return false;
      }
    }
    return probe.ports("^spatiola:in_").size() == static_cast<std::size_t>(count);
  };
  ASSERT_TRUE(eventually([&] { return wiredInputs(2); }));
  EXPECT_THAT(probe.connections("probe:sink_1"), ElementsAre("spatiola:left"));

  program->send("inputs 4");
  EXPECT_TRUE(eventually([&] { return wiredInputs(4); }));
  program->send("inputs 3");
  EXPECT_TRUE(eventually([&] { return wiredInputs(3); }));
  // The first two outputs are renamed, not replaced: their connections stay.
  program->send("layout 5.1 surround");
  EXPECT_TRUE(eventually([&] { return probe.ports("^spatiola:.*[a-zE]$").size() == 6; }));
  EXPECT_THAT(probe.connections("probe:sink_1"), ElementsAre("spatiola:front left"));
  EXPECT_THAT(probe.connections("probe:sink_2"), ElementsAre("spatiola:front right"));
  EXPECT_EQ(program->wait(std::chrono::milliseconds(0)), -1) << "still running";
  program->send("quit");
  EXPECT_EQ(program->wait(), 0);
  EXPECT_THAT(program->err(), HasSubstr("could not connect to probe:sink_3"));
}

TEST_F(LiveJackTest, ServerGoneEndsWithAMessage) {
  JackServer server;
  auto program = live(server, {"--inputs", "2", "--play", path("none.wav")}, false);
  EXPECT_EQ(program->wait(), 1);
  EXPECT_THAT(program->err(), HasSubstr("cannot read " + path("none.wav")));

  auto running = live(server, {"--inputs", "2"});
  server.kill();
  EXPECT_EQ(running->wait(), 1);
  EXPECT_THAT(running->err(), HasSubstr("spatiola: the JACK server stopped"));

  auto absent = live(server, {}, false);
  EXPECT_EQ(absent->wait(), 1);
  EXPECT_THAT(absent->err(), HasSubstr("cannot connect to the JACK server '" + server.name()));
}

}  // namespace
