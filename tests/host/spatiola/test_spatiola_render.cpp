// The spatiola program with the Spatiola plug-in: layouts, speaker positions in the file, levels
// against the gain law, state files and the demo; bench has its own tests.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "engine/gain_law.h"
#include "host/graphics/png_io.h"
#include "model/panner_plugin.h"
#include "plugin/state_chunk.h"
#include "tests/host/runtime/test_support.h"
#include "tests/host/spatiola/command_fixture.h"

namespace {

// The gain matrix the engine computes for a saved setup, [input][speaker].
std::vector<double> gainsOf(const std::string& state, int& speakers) {
  PannerPlugin model;
  readStateChunk(model, state.data(), static_cast<std::int32_t>(state.size()));
  speakers = model.speakerCount();
  model.mix.targetGains.resize(model.inputCount() * speakers);
  model.model.gainRows = model.inputCount();
  model.model.gainCols = speakers;
  for (int i = 0; i < model.inputCount(); ++i) computeInputGains(model, i);
  return {model.mix.targetGains.begin(), model.mix.targetGains.end()};
}

class SpatiolaRender : public CommandTest {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(SPATIOLA_PLUGIN)) GTEST_SKIP() << "spatiola.so is not built";
  }
};

}  // namespace

TEST_F(SpatiolaRender, LevelsFollowTheGainLawAndTheFileNamesItsSpeakers) {
  writeLevels(path("in.wav"), {0.5, 0.25}, 4800);
  const CommandResult run =
      spatiola({"render", "--layout", "5.1 surround", "--set", "in 1 X=0.2", "--set",
                "in 2 diffuse=0.5", "--set", "in 2 LFE send=0.125", "--save-state",
                path("state.bin"), path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const AudioData out = readAudio(path("out.wav"));
  ASSERT_EQ(out.shape(), std::tuple(6, 4800, 48000, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT));
  EXPECT_EQ(
      out.channelMap,
      (std::vector<int>{SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER,
                        SF_CHANNEL_MAP_LFE, SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT}));
  int speakers = 0;
  const std::vector<double> gains = gainsOf(readFile(path("state.bin")), speakers);
  ASSERT_EQ(speakers, 6);
  for (int s = 0; s < 6; ++s) {
    for (int frame : {0, 4799})  // no fade-in
      EXPECT_NEAR(out.at(frame, s), 0.5 * gains[s] + 0.25 * gains[6 + s], 1e-6)
          << s << "@" << frame;
  }
  EXPECT_GT(*std::max_element(gains.begin(), gains.end()), 0.2);  // somewhere audible
  EXPECT_GT(gains[6 + 3], 0.0);  // input 2's LFE send reaches the LFE speaker
  EXPECT_TRUE(contains(run.out, "4    LFE")) << run.out;
}

TEST_F(SpatiolaRender, UserSetupsHaveNoPositionsAndStatesReproduceARender) {
  writeLevels(path("in.wav"), {0.5, -0.5, 0.25}, 2000);
  const CommandResult first =
      spatiola({"render", "--layout", "12", "--set", "in 3 Y=0.1", "--save-state",
                path("state.bin"), path("in.wav"), path("first.wav")});
  ASSERT_EQ(first.exitCode, 0) << first.err;
  const AudioData a = readAudio(path("first.wav"));
  // No mask claims positions.
  EXPECT_EQ(a.shape(), std::tuple(12, 2000, 48000, SF_FORMAT_WAV | SF_FORMAT_FLOAT));
  EXPECT_TRUE(contains(first.out, "speaker L")) << first.out;
  const CommandResult second =
      spatiola({"render", "--state", path("state.bin"), path("in.wav"), path("second.wav")});
  ASSERT_EQ(second.exitCode, 0) << second.err;
  EXPECT_EQ(readAudio(path("second.wav")).samples, a.samples);
  // A file with fewer channels than the state's inputs: the others hear silence.
  writeLevels(path("mono.wav"), {0.5}, 2000);
  const CommandResult mono =
      spatiola({"render", "--state", path("state.bin"), path("mono.wav"), path("mono-out.wav")});
  ASSERT_EQ(mono.exitCode, 0) << mono.err;
  EXPECT_TRUE(contains(mono.err, "inputs 2..3 receive silence")) << mono.err;
  int speakers = 0;
  const std::vector<double> gains = gainsOf(readFile(path("state.bin")), speakers);
  const AudioData m = readAudio(path("mono-out.wav"));
  for (int s = 0; s < speakers; ++s) EXPECT_NEAR(m.at(1999, s), 0.5 * gains[s], 1e-6) << s;
}

TEST_F(SpatiolaRender, SixtyFourChannelFilesGetAnInputEach) {
  std::vector<double> levels(64, 0.0);
  levels[63] = 0.5;  // only the last channel, beyond what the channel-count query can announce
  writeLevels(path("in.wav"), levels, 1000);
  const CommandResult run = spatiola({"render", "--layout", "5.1 surround", "--set", "in 64 X=0",
                                      "--set", "in 64 Y=1", path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_FALSE(contains(run.err, "not used")) << run.err;
  const AudioData out = readAudio(path("out.wav"));
  ASSERT_EQ(out.channels, 6);
  EXPECT_GT(std::fabs(out.at(999, 0)), 0.1);  // moved onto the front left speaker
}

TEST_F(SpatiolaRender, DemoWritesA51FileItsLevelsAndTheRoom) {
  const CommandResult run = spatiola({"demo", "--dir", path("demo"), "--seconds", "1"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const AudioData out = readAudio(path("demo/demo-5.1.wav"));
  EXPECT_EQ(out.shape(), std::tuple(6, 48000, 48000, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT));
  EXPECT_TRUE(contains(run.out, "result:     " + path("demo/demo-5.1.wav"))) << run.out;
  // The first source feeds the LFE at unity send: 0.25 of its pulse peak of 0.25.
  EXPECT_NEAR(out.peakDb(3), 20.0 * std::log10(0.0625), 0.15);
  EXPECT_TRUE(run.err.empty()) << run.err;
  EXPECT_TRUE(contains(run.out, "room:       " + path("demo/room.png"))) << run.out;
  std::string error;
  const auto picture = graphics::readPng(path("demo/room.png"), &error);
  ASSERT_NE(picture, nullptr) << error;
  EXPECT_EQ(std::pair(picture->getWidth(), picture->getHeight()), std::pair(480, 480));
}
