// spatiola live end to end on a private JACK server (dummy driver): count and layout changes
// typed while it runs, the panned levels against an offline render, a new period, and the server
// going away. The recording round trip is edit --jack's, through the same live session.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/spatiola/jack_fixture.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using LiveJackTest = JackTest;

TEST_F(LiveJackTest, ChangesKeepTheClientItsWiringAndTheOfflineLevelsUntilTheServerGoes) {
  writeLevels(path("in.wav"), {0.5, -0.25}, 4800);
  ASSERT_EQ(spatiola({"render", path("in.wav"), path("out.wav"), "--layout", "5.1 surround",
                      "--set", "in 1 X=0.2", "--set", "in 2 Y=0.1"})
                .exitCode,
            0);
  const AudioData offline = readAudio(path("out.wav"));
  ASSERT_EQ(offline.channels, 6);

  JackServer server;
  ProbeClient probe(server.name(), {0.5f, -0.25f}, 6);
  LiveProgram program(server.name(),
                      {"--inputs", "2", "--layout", "stereo", "--set", "in 1 X=0.2",
                       "--connect-inputs", "probe:src_%d", "--connect-outputs", "probe:sink_%d"});
  const auto wiredInputs = [&](int count) {
    for (int i = 1; i <= 2; ++i) {
      const std::string n = std::to_string(i);
      if (probe.connections("spatiola:in_" + n) != std::vector<std::string>{"probe:src_" + n})
        return false;
    }
    return probe.ports("^spatiola:in_").size() == static_cast<std::size_t>(count);
  };
  ASSERT_TRUE(eventually([&] { return wiredInputs(2); })) << program.err();
  EXPECT_THAT(probe.connections("probe:sink_1"), ElementsAre("spatiola:left"));
  EXPECT_THAT(program.out(), HasSubstr("48000 Hz, 256 frames"));

  // A third input has no source to take: it says so, and the first two stay wired.
  program.send("inputs 3");
  EXPECT_TRUE(eventually([&] { return wiredInputs(3); }));
  program.send("inputs 2");
  EXPECT_TRUE(eventually([&] { return wiredInputs(2); }));
  EXPECT_THAT(program.err(), HasSubstr("could not connect to probe:src_3"));
  // The first two outputs are renamed, not replaced: their connections stay.
  program.send("layout 5.1 surround");
  program.send("set in 2 Y=0.1");
  EXPECT_TRUE(eventually([&] { return probe.ports("^spatiola:.*[a-zE]$").size() == 6; }));
  EXPECT_THAT(probe.connections("probe:sink_1"), ElementsAre("spatiola:front left"));
  EXPECT_THAT(probe.connections("probe:sink_2"), ElementsAre("spatiola:front right"));

  const auto matches = [&] {
    for (int s = 0; s < 6; ++s) {
      if (std::fabs(probe.last(s) - offline.at(offline.frames - 1, s)) > 1e-6) return false;
    }
    return true;
  };
  EXPECT_TRUE(eventually(matches))
      << "front left live " << probe.last(0) << ", offline " << offline.at(offline.frames - 1, 0);
  EXPECT_GT(std::fabs(probe.last(0)), 0.01);  // not silence matching silence
  // A new period reaches the plug-in through its dispatcher; the levels stay.
  ASSERT_TRUE(probe.setBufferSize(128));
  EXPECT_TRUE(eventually([&] {
    return program.err().find("48000 Hz, 128 frames") != std::string::npos;
  })) << program.err();
  for (int s = 0; s < 6; ++s) probe.clear(s);
  EXPECT_TRUE(eventually(matches)) << "front left live " << probe.last(0);

  server.kill();
  EXPECT_EQ(program.wait(), 1);
  EXPECT_THAT(program.err(), HasSubstr("spatiola: the JACK server stopped"));
}

}  // namespace
