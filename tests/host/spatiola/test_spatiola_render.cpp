// The spatiola program with the Spatiola plug-in: layouts, speaker positions in the file, levels
// against the gain law, glides and state files; bench has its own tests.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "engine/gain_law.h"
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
  // WAVE order and its channel map: 7.1's test, where the order differs from the plug-in's.
  ASSERT_EQ(out.shape(), std::tuple(6, 4800, 48000, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT));
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
  EXPECT_TRUE(contains(run.out, "4    4       LFE")) << run.out;
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
  ASSERT_EQ(std::pair(second.exitCode, second.err), std::pair(0, std::string()));
  EXPECT_EQ(readAudio(path("second.wav")).samples, a.samples);
  // A file with fewer channels than the state's inputs: the others hear silence.
  int speakers = 0;
  const std::vector<double> gains = gainsOf(readFile(path("state.bin")), speakers);
  const std::pair<int, const char*> notes[] = {{1, "inputs 2..3 receive silence"},
                                               {2, "input 3 receives silence"},
                                               {4, "channel 4 of the input is not used"},
                                               {5, "channels 4..5 of the input are not used"}};
  for (const auto& [channels, note] : notes) {
    writeLevels(path("few.wav"), std::vector<double>(channels, 0.5), 2000);
    const CommandResult run =
        spatiola({"render", "--state", path("state.bin"), path("few.wav"), path("few-out.wav")});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "note: the plug-in has 3 inputs; " + std::string(note) + "\n");
    const AudioData out = readAudio(path("few-out.wav"));
    for (int s = 0; s < speakers && channels == 1; ++s)
      EXPECT_NEAR(out.at(1999, s), 0.5 * gains[s], 1e-6) << s;
  }
}

// An input at the side left speaker of 7.1 (-1, 0): the plug-in's fifth output, WAVE's seventh
// channel (sides come after backs in the mask). The plug-in's own order is channel_layout's test.
TEST_F(SpatiolaRender, StandardLayoutsAreWrittenInWaveOrder) {
  writeLevels(path("in.wav"), {0.5}, 1000);
  const CommandResult run = spatiola({"render", "--layout", "7.1 surround", "--set", "in 1 X=0",
                                      "--set", "in 1 Y=0.5", path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const AudioData out = readAudio(path("out.wav"));
  EXPECT_EQ(out.format, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT);
  EXPECT_EQ(
      out.channelMap,
      (std::vector<int>{SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER,
                        SF_CHANNEL_MAP_LFE, SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT,
                        SF_CHANNEL_MAP_SIDE_LEFT, SF_CHANNEL_MAP_SIDE_RIGHT}));
  for (int channel = 0; channel < 8; ++channel)
    EXPECT_EQ(out.at(999, channel) > 0.1, channel == 6) << channel;
  EXPECT_TRUE(contains(run.out, "\n7    5       side left ")) << run.out;
}

// After a change the plug-in glides over exactly --glide: the output is the same whatever --block
// is; --glide 0 glides over the rest of the block, which depends on it.
TEST_F(SpatiolaRender, GlidesLastTheSameWhateverTheBlockSize) {
  writeLevels(path("in.wav"), {0.5}, 4800);
  std::ofstream(path("moves.csv")) << "0,in 1 X,0\n0.01,in 1 X,1\n0.05,in 1 Y,0\n";
  const auto render = [&](const std::string& block, const std::string& glide) {
    const CommandResult run =
        spatiola({"render", "--block", block, "--glide", glide, "--automation", path("moves.csv"),
                  path("in.wav"), path("out-" + block + "-" + glide + ".wav")});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return readAudio(path("out-" + block + "-" + glide + ".wav")).samples;
  };
  EXPECT_EQ(render("1", "10"), render("4096", "10"));
  const std::vector<double> fine = render("64", "0"), coarse = render("4096", "0");
  double largest = 0.0;
  for (std::size_t k = 0; k < fine.size(); ++k)
    largest = std::max(largest, std::fabs(fine[k] - coarse[k]));
  EXPECT_GT(largest, 0.05);
}

// A block cut short loads, but not silently.
TEST_F(SpatiolaRender, DamagedStateBlocksAreNoted) {
  writeLevels(path("in.wav"), {0.5, 0.25}, 1000);
  ASSERT_EQ(spatiola({"render", "--layout", "5.1 surround", "--save-state", path("state.bin"),
                      path("in.wav"), path("out.wav")})
                .exitCode,
            0);
  const std::string block = readFile(path("state.bin"));
  std::ofstream(path("cut.bin"), std::ios::binary) << block.substr(0, block.size() - 4);
  const std::string note = "note: " + path("cut.bin") +
                           " is not a block as the plug-in writes it (an older version, cut off, "
                           "or values out of range); the plug-in loaded what it could of it\n";
  const CommandResult run =
      spatiola({"render", "--state", path("cut.bin"), path("in.wav"), path("out.wav")});
  EXPECT_EQ(std::pair(run.exitCode, run.err), std::pair(0, note));
}
