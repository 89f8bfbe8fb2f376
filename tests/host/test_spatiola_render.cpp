// The spatiola program with the Spatiola plug-in: layouts, speaker positions in the file, levels
// against the gain law, state files, the demo, info and bench.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "engine/gain_law.h"
#include "host/cli/audio_file.h"
#include "host/graphics/png_io.h"
#include "model/panner_plugin.h"
#include "plugin/state_chunk.h"
#include "tests/host/command_runner.h"
#include "tests/host/temp_config.h"

namespace {

const std::string kSpatiola = SPATIOLA_EXE;
const std::string kPlugin = SPATIOLA_PLUGIN;

struct Rendered {
  int channels = 0;
  std::int64_t frames = 0;
  int format = 0;
  std::vector<int> channelMap;  // empty when the file has none
  std::vector<double> samples;
  double at(std::int64_t frame, int channel) const {
    return samples[static_cast<std::size_t>(frame * channels + channel)];
  }
};

Rendered readRendered(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  EXPECT_NE(file, nullptr) << path;
  Rendered out;
  if (file == nullptr) return out;
  out.channels = info.channels;
  out.frames = info.frames;
  out.format = info.format;
  std::vector<int> map(static_cast<std::size_t>(info.channels));
  if (sf_command(file, SFC_GET_CHANNEL_MAP_INFO, map.data(),
                 static_cast<int>(map.size() * sizeof(int))) == SF_TRUE) {
    out.channelMap = map;
  }
  out.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
  sf_readf_double(file, out.samples.data(), info.frames);
  sf_close(file);
  return out;
}

// Constant levels per channel: after the first block every gain has settled.
void writeLevels(const std::string& path, const std::vector<double>& levels, std::int64_t frames) {
  OutputFormat format;
  format.sndfileFormat = SF_FORMAT_WAV | SF_FORMAT_DOUBLE;
  const int channels = static_cast<int>(levels.size());
  AudioWriter writer(path, channels, 48000, format);
  std::vector<double> samples;
  for (std::int64_t f = 0; f < frames; ++f)
    samples.insert(samples.end(), levels.begin(), levels.end());
  writer.write(samples.data(), frames);
  writer.close();
}

std::vector<unsigned char> readBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The gain matrix the engine computes for a saved setup, [input][speaker].
std::vector<double> gainsOf(const std::vector<unsigned char>& state, int& speakers) {
  PannerPlugin model;
  readStateChunk(model, state.data(), static_cast<std::int32_t>(state.size()));
  speakers = model.speakerCount();
  model.targetGains.resize(model.inputCount() * speakers);
  model.gainRows = model.inputCount();
  model.gainCols = speakers;
  for (int i = 0; i < model.inputCount(); ++i) computeInputGains(model, i);
  return {model.targetGains.begin(), model.targetGains.end()};
}

class SpatiolaRender : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kPlugin)) GTEST_SKIP() << "spatiola.so is not built";
  }
  std::string path(const std::string& name) const { return config_.dir() + "/" + name; }
  CommandResult spatiola(std::vector<std::string> args) {
    args.insert(args.begin(), kSpatiola);
    return runCommand(args);
  }

  TempConfig config_;
};

}  // namespace

TEST_F(SpatiolaRender, LevelsFollowTheGainLawAndTheFileNamesItsSpeakers) {
  writeLevels(path("in.wav"), {0.5, 0.25}, 4800);
  const CommandResult run =
      spatiola({"render", "--layout", "5.1 surround", "--set", "in 1 X=0.2", "--set",
                "in 2 diffuse=0.5", "--set", "in 2 LFE send=0.125", "--save-state",
                path("state.bin"), path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Rendered out = readRendered(path("out.wav"));
  ASSERT_EQ(out.channels, 6);
  EXPECT_EQ(out.frames, 4800);
  EXPECT_EQ(out.format, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT);
  EXPECT_EQ(
      out.channelMap,
      (std::vector<int>{SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER,
                        SF_CHANNEL_MAP_LFE, SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT}));
  int speakers = 0;
  const std::vector<double> gains = gainsOf(readBytes(path("state.bin")), speakers);
  ASSERT_EQ(speakers, 6);
  double loudest = 0.0;
  for (int s = 0; s < 6; ++s) {
    const double expected = 0.5 * gains[s] + 0.25 * gains[6 + s];
    EXPECT_NEAR(out.at(4799, s), expected, 1e-6) << "speaker " << s;
    EXPECT_NEAR(out.at(0, s), expected, 1e-6) << "speaker " << s;  // no fade-in
    EXPECT_NEAR(out.at(1000, s), expected, 1e-6) << "speaker " << s;
    loudest = std::max(loudest, expected);
  }
  EXPECT_GT(loudest, 0.1);       // the law put the sources somewhere audible
  EXPECT_GT(gains[6 + 3], 0.0);  // input 2's LFE send reaches the LFE speaker
  EXPECT_NE(run.out.find("4    LFE"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("1    front left"), std::string::npos) << run.out;
}

TEST_F(SpatiolaRender, UserSetupsHaveNoPositionsAndStatesReproduceARender) {
  writeLevels(path("in.wav"), {0.5, -0.5, 0.25}, 2000);
  const CommandResult first =
      spatiola({"render", "--layout", "12", "--set", "in 3 Y=0.1", "--save-state",
                path("state.bin"), path("in.wav"), path("first.wav")});
  ASSERT_EQ(first.exitCode, 0) << first.err;
  const Rendered a = readRendered(path("first.wav"));
  EXPECT_EQ(a.channels, 12);
  EXPECT_EQ(a.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);  // no mask claims positions
  const CommandResult second =
      spatiola({"render", "--state", path("state.bin"), path("in.wav"), path("second.wav")});
  ASSERT_EQ(second.exitCode, 0) << second.err;
  const Rendered b = readRendered(path("second.wav"));
  ASSERT_EQ(b.channels, 12);
  EXPECT_EQ(a.samples, b.samples);
  EXPECT_NE(first.out.find("speaker L"), std::string::npos) << first.out;
  const CommandResult bad = spatiola({"render", "--layout", "6.1", path("in.wav"), path("x.wav")});
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_EQ(bad.err.rfind("spatiola: --layout '6.1' is neither a speaker count nor one of "
                          "\"stereo\", \"quadraphonic\"",
                          0),
            0u)
      << bad.err;
}

TEST_F(SpatiolaRender, SixtyFourChannelFilesGetAnInputEach) {
  std::vector<double> levels(64, 0.0);
  levels[63] = 0.5;  // only the last channel, beyond what the channel-count query can announce
  writeLevels(path("in.wav"), levels, 1000);
  const CommandResult run = spatiola({"render", "--layout", "5.1 surround", "--set", "in 64 X=0",
                                      "--set", "in 64 Y=1", path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err.find("not used"), std::string::npos) << run.err;
  const Rendered out = readRendered(path("out.wav"));
  ASSERT_EQ(out.channels, 6);
  EXPECT_GT(std::fabs(out.at(999, 0)), 0.1);  // moved onto the front left speaker
}

TEST_F(SpatiolaRender, AutomationMovesASourceAcrossTheRoom) {
  writeLevels(path("in.wav"), {0.5}, 9600);
  std::ofstream(path("moves.csv")) << "0,in 1 X,0\n0.1,in 1 X,1\n";
  const CommandResult run =
      spatiola({"render", "--automation", path("moves.csv"), path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Rendered out = readRendered(path("out.wav"));
  ASSERT_EQ(out.channels, 2);  // a one-channel track gets the stereo layout
  EXPECT_GT(out.at(4000, 0), 4.0 * std::fabs(out.at(4000, 1)));  // at the left wall
  EXPECT_GT(out.at(9599, 1), 4.0 * std::fabs(out.at(9599, 0)));  // at the right wall
}

TEST_F(SpatiolaRender, SceneOfAPluginWrittenStateRoundTrips) {
  writeLevels(path("in.wav"), {0.1, 0.1, 0.1, 0.1}, 100);
  ASSERT_EQ(spatiola({"render", "--layout", "7.1 ITU-R", "--set", "in 4 angle=0.3", "--save-state",
                      path("state.bin"), path("in.wav"), path("out.wav")})
                .exitCode,
            0);
  ASSERT_EQ(spatiola({"scene", "export", path("state.bin"), "-o", path("scene.json")}).exitCode, 0);
  ASSERT_EQ(spatiola({"scene", "import", path("scene.json"), "-o", path("back.bin")}).exitCode, 0);
  EXPECT_EQ(readBytes(path("back.bin")), readBytes(path("state.bin")));
  std::ifstream scene(path("scene.json"));
  const auto json = nlohmann::json::parse(scene);
  EXPECT_EQ(json["layout"], "7.1 ITU-R");
  EXPECT_EQ(json["inputs"].size(), 4u);
  EXPECT_EQ(json["inputs"][3]["name"], "channel 4");
  EXPECT_NEAR(json["inputs"][3]["diffuseAngle"].get<double>(), 0.3, 1e-7);
}

TEST_F(SpatiolaRender, InfoShowsIdentityAndTheParameterList) {
  const CommandResult run = spatiola({"info", "--json", "--channels", "6"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const auto info = nlohmann::json::parse(run.out);
  EXPECT_EQ(info["effect"], "Spatiola");
  EXPECT_EQ(info["vendor"], "Tolvek");
  EXPECT_EQ(info["product"], "Spatiola");
  EXPECT_EQ(info["uniqueId"], "pkow");
  EXPECT_EQ(info["version"], 1100);
  EXPECT_EQ(info["vstVersion"], 2400);
  EXPECT_EQ(info["inputs"], 6);
  EXPECT_EQ(info["outputs"], 6);
  EXPECT_EQ(info["flagsValue"], 4145);
  ASSERT_EQ(info["parameters"].size(), 4u + 10u * 6u + 7u * 6u);  // 5.1 for six channels
  EXPECT_EQ(info["parameters"][64]["name"], "front left gain");
  EXPECT_EQ(info["parameters"][64]["display"], "0.0");
  EXPECT_TRUE(run.err.empty()) << run.err;  // every window-layer name resolved
}

TEST_F(SpatiolaRender, DemoWritesA51FileItsLevelsAndTheRoom) {
  const CommandResult run = spatiola({"demo", "--dir", path("demo"), "--seconds", "1"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Rendered out = readRendered(path("demo/demo-5.1.wav"));
  EXPECT_EQ(out.channels, 6);
  EXPECT_EQ(out.frames, 48000);
  EXPECT_EQ(out.channelMap.size(), 6u);
  EXPECT_NE(run.out.find("result:     " + path("demo/demo-5.1.wav")), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("6    back right"), std::string::npos) << run.out;
  // The first source feeds the LFE at unity send: 0.25 of its pulse peak of 0.25.
  double lfePeak = 0.0;
  for (std::int64_t f = 0; f < out.frames; ++f)
    lfePeak = std::max(lfePeak, std::fabs(out.at(f, 3)));
  EXPECT_NEAR(lfePeak, 0.0625, 0.001);
  if (run.err.find("did not paint its inline view") != std::string::npos) {
    // Until Spatiola's inline view lands the demo does without its picture.
    EXPECT_EQ(run.err.rfind("spatiola: no room picture: ", 0), 0u) << run.err;
    EXPECT_FALSE(std::filesystem::exists(path("demo/room.png")));
    return;
  }
  EXPECT_TRUE(run.err.empty()) << run.err;
  EXPECT_NE(run.out.find("room:       " + path("demo/room.png")), std::string::npos) << run.out;
  std::string error;
  const auto picture = graphics::readPng(path("demo/room.png"), &error);
  ASSERT_NE(picture, nullptr) << error;
  EXPECT_EQ(picture->getWidth(), 480);
  EXPECT_EQ(picture->getHeight(), 480);
}

TEST_F(SpatiolaRender, BenchRunsTheRequestedShape) {
  const CommandResult run = spatiola({"bench", "--inputs", "8", "--outputs", "16", "--seconds",
                                      "0.2", "--repeat", "3", "--moving"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find("shape       8 in -> 16 out, block 512,"), std::string::npos) << run.out;
}
