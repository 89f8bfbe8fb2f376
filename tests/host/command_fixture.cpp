#include "tests/host/command_fixture.h"

#include <sndfile.h>

#include <cmath>

#include "host/cli/audio_file.h"

double AudioData::peakDb(int channel) const {
  double peak = 0.0;
  for (std::int64_t f = 0; f < frames; ++f) peak = std::max(peak, std::fabs(at(f, channel)));
  return 20.0 * std::log10(peak);
}

AudioData readAudio(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  EXPECT_NE(file, nullptr) << path;
  AudioData audio;
  if (file == nullptr) return audio;
  audio = {info.channels, info.samplerate, info.format, info.frames, {}, {}};
  std::vector<int> map(static_cast<std::size_t>(info.channels));
  const int mapBytes = static_cast<int>(map.size() * sizeof(int));
  if (sf_command(file, SFC_GET_CHANNEL_MAP_INFO, map.data(), mapBytes) == SF_TRUE) {
    audio.channelMap = map;
  }
  audio.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
  sf_readf_double(file, audio.samples.data(), info.frames);
  sf_close(file);
  return audio;
}

void writeAudio(const std::string& path, int channels, const std::vector<double>& samples,
                int sampleRate) {
  OutputFormat format;
  format.sndfileFormat = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  AudioWriter writer(path, channels, sampleRate, format);
  writer.write(samples.data(), static_cast<std::int64_t>(samples.size()) / channels);
  writer.close();
}

void writeLevels(const std::string& path, const std::vector<double>& levels, std::int64_t frames) {
  std::vector<double> samples;
  for (std::int64_t f = 0; f < frames; ++f)
    samples.insert(samples.end(), levels.begin(), levels.end());
  writeAudio(path, static_cast<int>(levels.size()), samples);
}

CommandResult CommandTest::spatiola(std::vector<std::string> args, const std::string& stdinPath) {
  args.insert(args.begin(), SPATIOLA_EXE);
  return runCommand(args, stdinPath);
}
