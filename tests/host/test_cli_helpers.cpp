// Small pieces of the spatiola command: --set values, output formats, channel maps and meters.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <tuple>

#include "host/cli/audio_file.h"
#include "host/cli/levels.h"
#include "host/cli/plugin_setup.h"
#include "tests/host/test_support.h"

TEST(ParameterSetting, SplitsAtTheLastEqualsAndChecksTheValue) {
  const ParameterSetting a = parseParameterSetting("in 1 X=0.75"),
                         b = parseParameterSetting("a=b=1");
  EXPECT_EQ(std::tuple(a.parameter, a.value, b.parameter, b.value),
            std::tuple("in 1 X", 0.75f, "a=b", 1.0f));
  const std::pair<const char*, const char*> bad[] = {
      {"gain", "--set 'gain' must be NAME=VALUE"},
      {"=0.5", "--set '=0.5' must be NAME=VALUE"},
      {"gain=half", "--set 'gain=half': 'half' is not a number"},
      {"gain=2", "--set 'gain=2': 2 is outside 0..1 (values are normalised)"}};
  for (const auto& [text, message] : bad)
    EXPECT_EQ(errorOf([&] { parseParameterSetting(text); }), message);
}

TEST(OutputFormat, ContainerFromExtensionOrNameAndSampleType) {
  EXPECT_EQ(chooseOutputFormat("out.wav", "", "", 2, 48000), SF_FORMAT_WAV | SF_FORMAT_FLOAT);
  EXPECT_EQ(chooseOutputFormat("out.WAV", "", "pcm24", 6, 48000), SF_FORMAT_WAV | SF_FORMAT_PCM_24);
  EXPECT_EQ(chooseOutputFormat("out.flac", "", "", 2, 44100), SF_FORMAT_FLAC | SF_FORMAT_PCM_24);
  EXPECT_EQ(chooseOutputFormat("out.bin", "w64", "double", 8, 96000),
            SF_FORMAT_W64 | SF_FORMAT_DOUBLE);
  EXPECT_EQ(chooseOutputFormat("dir.v2/out.aiff", "", "pcm16", 1, 48000),
            SF_FORMAT_AIFF | SF_FORMAT_PCM_16);
  EXPECT_EQ(errorOf([] { chooseOutputFormat("dir.v2/out", "", "", 2, 48000); }),
            "cannot tell the output format from 'dir.v2/out': use a .wav, .w64, .rf64, .aiff, "
            ".flac, .caf or .ogg name or --format");
  EXPECT_EQ(errorOf([] { chooseOutputFormat("a.wav", "mp9", "", 2, 48000); }),
            "unknown output format 'mp9'");
  EXPECT_EQ(errorOf([] { chooseOutputFormat("a.wav", "", "pcm12", 2, 48000); }),
            "unknown sample format 'pcm12' (use pcm16, pcm24, pcm32, float or double)");
  EXPECT_EQ(errorOf([] { chooseOutputFormat("a.flac", "", "double", 2, 48000); }),
            "libsndfile cannot write 2 channels at 48000 Hz as flac double");
}

TEST(ChannelMap, StandardSpeakerNamesGivePositions) {
  EXPECT_EQ(
      channelMapOfSpeakers(
          {"front left", "front right", "front center", "LFE", "back left", "back right"}),
      (std::vector<int>{SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER,
                        SF_CHANNEL_MAP_LFE, SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT}));
  EXPECT_EQ(channelMapOfSpeakers({"left", "right"}),
            (std::vector<int>{SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT}));
  EXPECT_EQ(channelPositionOfSpeaker("left height"), SF_CHANNEL_MAP_TOP_FRONT_LEFT);
  EXPECT_EQ(channelPositionOfSpeaker("side right"), SF_CHANNEL_MAP_SIDE_RIGHT);
  // A user setup's names, or two speakers at one position, give no map.
  EXPECT_TRUE(channelMapOfSpeakers({"speaker A", "speaker B"}).empty());
  EXPECT_TRUE(channelMapOfSpeakers({"left height", "front left height"}).empty());
  EXPECT_TRUE(channelMapOfSpeakers({"left", "front left"}).empty());
}

TEST(ChannelMap, WaveFilesGetPositionsOnlyInMaskOrder) {
  const auto map = [](std::initializer_list<const char*> names) {
    return channelMapOfSpeakers(std::vector<std::string>(names.begin(), names.end()));
  };
  // 5.1 and the ITU-R 5.1 with side speakers are in mask order; 7.1 lists sides before backs.
  const auto surround =
      map({"front left", "front right", "front center", "LFE", "back left", "back right"});
  const auto itu =
      map({"front left", "front right", "front center", "LFE", "side left", "side right"});
  const auto surround71 = map({"front left", "front right", "front center", "LFE", "side left",
                               "side right", "back left", "back right"});
  EXPECT_TRUE(isWaveOrder(surround));
  EXPECT_TRUE(isWaveOrder(itu));
  EXPECT_FALSE(isWaveOrder(surround71));
  EXPECT_FALSE(isWaveOrder({}));
  const OutputFormat wave = makeOutputFormat("o.wav", "", "", 6, 48000, itu, false);
  EXPECT_EQ(wave.sndfileFormat, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT);
  EXPECT_EQ(wave.channelMap, itu);
  // libsndfile would give an unlabelled 8-channel extensible file a guessed mask: plain WAVE.
  const OutputFormat plain = makeOutputFormat("o.wav", "", "", 8, 48000, surround71, false);
  EXPECT_EQ(plain.sndfileFormat, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
  EXPECT_TRUE(plain.channelMap.empty());
  const OutputFormat ambisonic = makeOutputFormat("o.wav", "", "pcm24", 4, 48000, {}, true);
  EXPECT_EQ(ambisonic.sndfileFormat, SF_FORMAT_WAVEX | SF_FORMAT_PCM_24);
  EXPECT_TRUE(ambisonic.ambisonic);
  const OutputFormat other = makeOutputFormat("o.w64", "", "", 8, 48000, surround71, false);
  EXPECT_EQ(other.sndfileFormat, SF_FORMAT_W64 | SF_FORMAT_FLOAT);
}

TEST(LevelMeter, PeakAndRmsInDbfs) {
  LevelMeter meter(2);
  // Channel 1: a full-scale square wave; channel 2: silence.
  const double frames[] = {1.0, 0.0, -1.0, 0.0, 1.0, 0.0, -1.0, 0.0};
  meter.add(frames, 4);
  EXPECT_DOUBLE_EQ(meter.peakDb(0), 0.0);
  EXPECT_DOUBLE_EQ(meter.rmsDb(0), 0.0);
  EXPECT_EQ(meter.peakDb(1), -INFINITY);
  const double half[] = {0.5, 0.25};
  meter.add(half, 1);
  EXPECT_DOUBLE_EQ(meter.peakDb(1), 20.0 * std::log10(0.25));
  EXPECT_NEAR(meter.rmsDb(0), 10.0 * std::log10(4.25 / 5.0), 1e-12);
  std::ostringstream table;
  printLevelTable(table, meter, {"left"});
  EXPECT_EQ(table.str(),
            "ch   speaker                 peak dBFS   RMS dBFS\n"
            "1    left                         0.00      -0.71\n"
            "2                               -12.04     -19.03\n");
}
