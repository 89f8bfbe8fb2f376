// Small pieces of the spatiola command: --set values, output formats and channel maps; the level
// table is checked on rendered files.
#include <gtest/gtest.h>

#include <tuple>

#include "host/cli/audio_file.h"
#include "host/cli/channel_layout.h"
#include "host/cli/plugin_setup.h"
#include "tests/host/runtime/test_support.h"

TEST(ParameterSetting, SplitsAtTheLastEqualsAndChecksTheValue) {
  const ParameterSetting a = parseParameterSetting("in 1 X=0.75"),
                         b = parseParameterSetting("a=b=1");
  EXPECT_EQ(std::tuple(a.parameter, a.value, b.parameter, b.value),
            std::tuple("in 1 X", 0.75f, "a=b", 1.0f));
  const std::pair<const char*, const char*> bad[] = {
      {"=0.5", "--set '=0.5' must be NAME=VALUE"},
      {"gain=half", "--set 'gain=half': 'half' is not a number"},
      {"gain=2", "--set 'gain=2': 2 is outside 0..1 (values are normalised)"}};
  for (const auto& [text, message] : bad)
    EXPECT_EQ(errorOf([&] { parseParameterSetting(text); }), message);
}

TEST(OutputFormat, ContainerFromExtensionOrNameAndSampleType) {
  const struct {
    const char *name, *format, *sampleFormat;
    int expected;
  } cases[] = {{"out.WAV", "", "pcm24", SF_FORMAT_WAV | SF_FORMAT_PCM_24},
               {"out.flac", "", "", SF_FORMAT_FLAC | SF_FORMAT_PCM_24},
               {"out.bin", "w64", "double", SF_FORMAT_W64 | SF_FORMAT_DOUBLE},
               {"dir.v2/out.aiff", "", "pcm16", SF_FORMAT_AIFF | SF_FORMAT_PCM_16}};
  for (const auto& c : cases)
    EXPECT_EQ(chooseOutputFormat(c.name, c.format, c.sampleFormat, 2, 48000), c.expected) << c.name;
  EXPECT_EQ(errorOf([] { chooseOutputFormat("a.wav", "", "pcm12", 2, 48000); }),
            "unknown sample format 'pcm12' (use pcm16, pcm24, pcm32, float or double)");
  EXPECT_EQ(errorOf([] { chooseOutputFormat("a.flac", "", "double", 2, 48000); }),
            "libsndfile cannot write 2 channels at 48000 Hz as flac double");
}

// Files with speakers at known places name them in mask order (5.1 is checked on rendered
// files); the rest stay plain WAVE.
TEST(ChannelMap, SpeakerNamesGivePositionsOnlyWhenUniqueAndInMaskOrder) {
  const auto map = [](std::initializer_list<const char*> names) {
    return channelMapOfSpeakers(std::vector<std::string>(names.begin(), names.end()));
  };
  EXPECT_EQ(map({"left", "right", "left height", "side right"}),
            (std::vector<int>{SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT,
                              SF_CHANNEL_MAP_TOP_FRONT_LEFT, SF_CHANNEL_MAP_SIDE_RIGHT}));
  // Two speakers at one position give no map.
  EXPECT_TRUE(map({"left height", "front left height"}).empty());
  // libsndfile would give an unlabelled 8-channel extensible file a guessed mask: positions out of
  // mask order are written as plain WAVE.
  const auto surround71 = map({"front left", "front right", "front center", "LFE", "side left",
                               "side right", "back left", "back right"});
  const OutputFormat plain = makeOutputFormat("o.wav", "", "", 8, 48000, surround71, false);
  EXPECT_EQ(plain.sndfileFormat, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
  EXPECT_TRUE(plain.channelMap.empty());
}
