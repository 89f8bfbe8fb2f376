#include "host/cli/audio_file.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "host/runtime/host_error.h"

namespace {

std::string lowercase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string extensionOf(const std::string& path) {
  const auto slash = path.find_last_of('/');
  const auto dot = path.find_last_of('.');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
  return lowercase(path.substr(dot + 1));
}

int containerOf(const std::string& name) {
  static const std::map<std::string, int> kContainers = {
      {"wav", SF_FORMAT_WAV},   {"wave", SF_FORMAT_WAV},  {"wavex", SF_FORMAT_WAVEX},
      {"w64", SF_FORMAT_W64},   {"rf64", SF_FORMAT_RF64}, {"aif", SF_FORMAT_AIFF},
      {"aiff", SF_FORMAT_AIFF}, {"flac", SF_FORMAT_FLAC}, {"caf", SF_FORMAT_CAF},
      {"ogg", SF_FORMAT_OGG},   {"oga", SF_FORMAT_OGG}};
  const auto found = kContainers.find(lowercase(name));
  return found == kContainers.end() ? 0 : found->second;
}

int sampleTypeOf(const std::string& name, int container) {
  if (name.empty()) {
    if (container == SF_FORMAT_FLAC) return SF_FORMAT_PCM_24;
    if (container == SF_FORMAT_OGG) return SF_FORMAT_VORBIS;
    return SF_FORMAT_FLOAT;
  }
  static const std::map<std::string, int> kTypes = {{"pcm16", SF_FORMAT_PCM_16},
                                                    {"pcm24", SF_FORMAT_PCM_24},
                                                    {"pcm32", SF_FORMAT_PCM_32},
                                                    {"float", SF_FORMAT_FLOAT},
                                                    {"double", SF_FORMAT_DOUBLE}};
  const auto found = kTypes.find(lowercase(name));
  if (found == kTypes.end()) {
    throw HostError("unknown sample format '" + name +
                    "' (use pcm16, pcm24, pcm32, float or double)");
  }
  return found->second;
}

}  // namespace

AudioReader::AudioReader(const std::string& path) : path_(path) {
  SF_INFO info{};
  file_ = sf_open(path.c_str(), SFM_READ, &info);
  if (file_ == nullptr) {
    throw HostError("cannot read the audio file " + path + ": " + sf_strerror(nullptr));
  }
  info_ = AudioFileInfo{info.channels, info.samplerate, info.frames};
  if (info.channels > kMaxFileChannels) {
    sf_close(file_);
    file_ = nullptr;
    throw HostError(path + " has " + std::to_string(info.channels) +
                    " channels; at most 64 are supported");
  }
}

AudioReader::~AudioReader() {
  if (file_ != nullptr) sf_close(file_);
}

std::int64_t AudioReader::read(double* out, std::int64_t frames) {
  return sf_readf_double(file_, out, frames);
}

int chooseOutputFormat(const std::string& path, const std::string& formatName,
                       const std::string& sampleType, int channels, int sampleRate) {
  const std::string name = formatName.empty() ? extensionOf(path) : formatName;
  int container = containerOf(name);
  if (container == 0) {
    throw HostError(formatName.empty()
                        ? "cannot tell the output format from '" + path +
                              "': use a .wav, .w64, .rf64, .aiff, .flac, .caf or .ogg name or "
                              "--format"
                        : "unknown output format '" + formatName + "'");
  }
  SF_INFO check{};
  check.channels = channels;
  check.samplerate = sampleRate;
  check.format = container | sampleTypeOf(sampleType, container);
  if (sf_format_check(&check) == 0) {
    throw HostError("libsndfile cannot write " + std::to_string(channels) + " channels at " +
                    std::to_string(sampleRate) + " Hz as " + name +
                    (sampleType.empty() ? "" : " " + sampleType));
  }
  return check.format;
}

AudioWriter::AudioWriter(const std::string& path, int channels, int sampleRate,
                         const OutputFormat& format)
    : path_(path) {
  SF_INFO info{};
  info.channels = channels;
  info.samplerate = sampleRate;
  info.format = format.sndfileFormat;
  file_ = sf_open(path.c_str(), SFM_WRITE, &info);
  if (file_ == nullptr) {
    throw HostError("cannot write " + path + ": " + sf_strerror(nullptr));
  }
  sf_command(file_, SFC_SET_CLIPPING, nullptr, SF_TRUE);  // integer files clip, never wrap
  if (format.channelMap.size() == static_cast<std::size_t>(channels)) {
    std::vector<int> map = format.channelMap;
    channelMapWritten_ = sf_command(file_, SFC_SET_CHANNEL_MAP_INFO, map.data(),
                                    static_cast<int>(map.size() * sizeof(int))) == SF_TRUE;
  }
  if (format.ambisonic) {
    sf_command(file_, SFC_WAVEX_SET_AMBISONIC, nullptr, SF_AMBISONIC_B_FORMAT);
  }
}

AudioWriter::~AudioWriter() {
  if (file_ != nullptr) sf_close(file_);
}

void AudioWriter::write(const double* frames, std::int64_t count) {
  if (sf_writef_double(file_, frames, count) != count) {
    throw HostError("writing " + path_ + " failed: " + sf_strerror(file_));
  }
}

void AudioWriter::close() {
  if (file_ == nullptr) return;
  sf_write_sync(file_);
  const int result = sf_close(file_);
  file_ = nullptr;
  if (result != 0) throw HostError("closing " + path_ + " failed: " + sf_error_number(result));
}

OutputFormat makeOutputFormat(const std::string& path, const std::string& formatName,
                              const std::string& sampleType, int channels, int sampleRate,
                              const std::vector<int>& speakerMap, bool ambisonic) {
  OutputFormat format;
  format.sndfileFormat = chooseOutputFormat(path, formatName, sampleType, channels, sampleRate);
  format.ambisonic = ambisonic;
  const int container = format.sndfileFormat & SF_FORMAT_TYPEMASK;
  const bool wave = container == SF_FORMAT_WAV || container == SF_FORMAT_WAVEX;
  if (ambisonic) {
    if (wave) format.sndfileFormat = SF_FORMAT_WAVEX | (format.sndfileFormat & SF_FORMAT_SUBMASK);
    return format;
  }
  if (!wave) {
    format.channelMap = speakerMap;
    return format;
  }
  // libsndfile gives an extensible file it cannot label a guessed default mask, so such files stay
  // plain WAVE: no positions rather than wrong ones.
  if (isWaveOrder(speakerMap)) {
    format.sndfileFormat = SF_FORMAT_WAVEX | (format.sndfileFormat & SF_FORMAT_SUBMASK);
    format.channelMap = speakerMap;
  }
  return format;
}

std::uint32_t waveSpeakerBit(int position) {
  struct WaveBit {
    int position;
    std::uint32_t bit;
  };
  static constexpr WaveBit kBits[] = {
      {SF_CHANNEL_MAP_LEFT, 0x1},
      {SF_CHANNEL_MAP_RIGHT, 0x2},
      {SF_CHANNEL_MAP_CENTER, 0x4},
      {SF_CHANNEL_MAP_LFE, 0x8},
      {SF_CHANNEL_MAP_REAR_LEFT, 0x10},
      {SF_CHANNEL_MAP_REAR_RIGHT, 0x20},
      {SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER, 0x40},
      {SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER, 0x80},
      {SF_CHANNEL_MAP_REAR_CENTER, 0x100},
      {SF_CHANNEL_MAP_SIDE_LEFT, 0x200},
      {SF_CHANNEL_MAP_SIDE_RIGHT, 0x400},
      {SF_CHANNEL_MAP_TOP_CENTER, 0x800},
      {SF_CHANNEL_MAP_TOP_FRONT_LEFT, 0x1000},
      {SF_CHANNEL_MAP_TOP_FRONT_CENTER, 0x2000},
      {SF_CHANNEL_MAP_TOP_FRONT_RIGHT, 0x4000},
      {SF_CHANNEL_MAP_TOP_REAR_LEFT, 0x8000},
      {SF_CHANNEL_MAP_TOP_REAR_CENTER, 0x10000},
      {SF_CHANNEL_MAP_TOP_REAR_RIGHT, 0x20000},
  };
  for (const WaveBit& entry : kBits) {
    if (entry.position == position) return entry.bit;
  }
  return 0;
}

bool isWaveOrder(const std::vector<int>& map) {
  std::uint32_t previous = 0;
  for (const int position : map) {
    const std::uint32_t bit = waveSpeakerBit(position);
    if (bit <= previous) return false;
    previous = bit;
  }
  return !map.empty();
}

int channelPositionOfSpeaker(const std::string& name) {
  static const std::map<std::string, int> kPositions = {
      {"left", SF_CHANNEL_MAP_LEFT},
      {"right", SF_CHANNEL_MAP_RIGHT},
      {"center", SF_CHANNEL_MAP_CENTER},
      {"front left", SF_CHANNEL_MAP_LEFT},
      {"front right", SF_CHANNEL_MAP_RIGHT},
      {"front center", SF_CHANNEL_MAP_CENTER},
      {"lfe", SF_CHANNEL_MAP_LFE},
      {"back left", SF_CHANNEL_MAP_REAR_LEFT},
      {"back right", SF_CHANNEL_MAP_REAR_RIGHT},
      {"back center", SF_CHANNEL_MAP_REAR_CENTER},
      {"side left", SF_CHANNEL_MAP_SIDE_LEFT},
      {"side right", SF_CHANNEL_MAP_SIDE_RIGHT},
      {"front left height", SF_CHANNEL_MAP_TOP_FRONT_LEFT},
      {"front right height", SF_CHANNEL_MAP_TOP_FRONT_RIGHT},
      {"left height", SF_CHANNEL_MAP_TOP_FRONT_LEFT},
      {"right height", SF_CHANNEL_MAP_TOP_FRONT_RIGHT},
      {"back left height", SF_CHANNEL_MAP_TOP_REAR_LEFT},
      {"back right height", SF_CHANNEL_MAP_TOP_REAR_RIGHT},
  };
  const auto found = kPositions.find(lowercase(name));
  return found == kPositions.end() ? SF_CHANNEL_MAP_INVALID : found->second;
}

std::vector<int> channelMapOfSpeakers(const std::vector<std::string>& names) {
  std::vector<int> map;
  std::set<int> used;
  for (const std::string& name : names) {
    const int position = channelPositionOfSpeaker(name);
    if (position == SF_CHANNEL_MAP_INVALID || !used.insert(position).second) return {};
    map.push_back(position);
  }
  return map;
}
