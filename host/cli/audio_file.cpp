#include "host/cli/audio_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <map>

#include "host/cli/channel_layout.h"
#include "host/cli/repeatable_file.h"
#include "host/runtime/file_problem.h"
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
    throw UsageError("unknown sample format '" + name +
                     "' (use pcm16, pcm24, pcm32, float or double)");
  }
  return found->second;
}

// Why a file cannot be read: the system's cause when there is one, else not audio libsndfile
// knows.
std::string unreadableCause(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return fileProblem(errno);
  if (S_ISDIR(status.st_mode)) return fileProblem(EISDIR);
  if (access(path.c_str(), R_OK) != 0) return fileProblem(errno);
  return "not an audio file in a format libsndfile reads";
}

// Containers whose PCM and float samples lie in the file as they are, never compressed.
bool holdsPlainSamples(int sndfileFormat) {
  switch (sndfileFormat & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
    case SF_FORMAT_W64:
    case SF_FORMAT_RF64:
    case SF_FORMAT_AIFF:
    case SF_FORMAT_CAF:
      return true;
    default:
      return false;
  }
}

RawSamples rawCodingOf(SNDFILE* file, int sndfileFormat) {
  if (!holdsPlainSamples(sndfileFormat) ||
      sf_command(file, SFC_RAW_DATA_NEEDS_ENDSWAP, nullptr, 0) != SF_FALSE) {
    return RawSamples::none;
  }
  switch (sndfileFormat & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_16:
      return RawSamples::pcm16;
    case SF_FORMAT_PCM_24:
      return RawSamples::pcm24;
    case SF_FORMAT_PCM_32:
      return RawSamples::pcm32;
    case SF_FORMAT_FLOAT:
      return RawSamples::float32;
    default:
      return RawSamples::none;
  }
}

// Why a file cannot be written; errno as sf_open or the write left it.
std::string unwritableCause(int errorNumber, SNDFILE* file) {
  if (errorNumber != 0) return fileProblem(errorNumber);
  return std::string("libsndfile refused it (") + sf_strerror(file) + ")";
}

}  // namespace

AudioReader::AudioReader(const std::string& path) : path_(path) {
  SF_INFO info{};
  file_ = sf_open(path.c_str(), SFM_READ, &info);
  if (file_ == nullptr) {
    throw HostError("cannot read the audio file " + path + ": " + unreadableCause(path));
  }
  info_ = AudioFileInfo{info.channels, info.samplerate, info.frames};
  raw_ = rawCodingOf(file_, info.format);
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

std::int64_t AudioReader::readRaw(unsigned char* out, std::int64_t frames) {
  const auto frameBytes = static_cast<sf_count_t>(rawSampleBytes(raw_)) * info_.channels;
  return sf_read_raw(file_, out, frames * frameBytes) / frameBytes;
}

int chooseOutputFormat(const std::string& path, const std::string& formatName,
                       const std::string& sampleType, int channels, int sampleRate) {
  const std::string name = formatName.empty() ? extensionOf(path) : formatName;
  int container = containerOf(name);
  if (container == 0) {
    throw UsageError(formatName.empty()
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
                         const OutputFormat& format, const std::string& shownPath)
    : path_(path),
      shownPath_(shownPath.empty() ? path : shownPath),
      container_(format.sndfileFormat & SF_FORMAT_TYPEMASK),
      subtype_(format.sndfileFormat & SF_FORMAT_SUBMASK) {
  SF_INFO info{};
  info.channels = channels;
  info.samplerate = sampleRate;
  info.format = format.sndfileFormat;
  errno = 0;
  // Opened here so that the disk can be set writing while the render goes on.
  const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (descriptor < 0) {
    throw HostError("cannot write " + shownPath_ + ": " + unwritableCause(errno, nullptr));
  }
  // Kept open past sf_close, so that the final sync also covers the header and the repeatable fix.
  file_ = sf_open_fd(descriptor, SFM_WRITE, &info, SF_FALSE);
  if (file_ == nullptr) {
    const int cause = errno;
    ::close(descriptor);
    throw HostError("cannot write " + shownPath_ + ": " + unwritableCause(cause, nullptr));
  }
  descriptor_ = descriptor;
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
  if (descriptor_ >= 0) ::close(descriptor_);
}

void AudioWriter::write(const double* frames, std::int64_t count) {
  errno = 0;
  if (sf_writef_double(file_, frames, count) != count) {
    throw HostError("cannot write " + shownPath_ + ": " + unwritableCause(errno, file_));
  }
}

void AudioWriter::write(const float* frames, std::int64_t count) {
  errno = 0;
  if (sf_writef_float(file_, frames, count) != count) {
    throw HostError("cannot write " + shownPath_ + ": " + unwritableCause(errno, file_));
  }
}

void AudioWriter::startWriteback() {
  const off_t end = lseek(descriptor_, 0, SEEK_CUR);
  if (end - writebackStart_ < kWritebackBytes) return;
  sync_file_range(descriptor_, writebackStart_, end - writebackStart_, SYNC_FILE_RANGE_WRITE);
  writebackStart_ = end;
}

void AudioWriter::close() {
  if (file_ == nullptr) return;
  errno = 0;
  const int result = sf_close(file_);
  file_ = nullptr;
  if (result != 0) {
    throw HostError("cannot finish " + shownPath_ + ": " +
                    (errno != 0 ? fileProblem(errno) : std::string(sf_error_number(result))));
  }
  const bool repeatable = container_ == SF_FORMAT_OGG ? setOggSerialNumber(path_, kFixedOggSerial)
                                                      : clearPeakTime(path_);
  if (!repeatable) throw HostError("cannot finish " + shownPath_ + ": " + fileProblem(errno));
  const int synced = fsync(descriptor_);
  const int cause = errno;
  ::close(descriptor_);
  descriptor_ = -1;
  if (synced != 0) throw HostError("cannot finish " + shownPath_ + ": " + fileProblem(cause));
}

bool isIntegerFormat(int sndfileFormat) {
  const int type = sndfileFormat & SF_FORMAT_SUBMASK;
  return type == SF_FORMAT_PCM_S8 || type == SF_FORMAT_PCM_U8 || type == SF_FORMAT_PCM_16 ||
         type == SF_FORMAT_PCM_24 || type == SF_FORMAT_PCM_32;
}

std::int64_t uncompressedBytes(int sndfileFormat, int channels, std::int64_t frames) {
  const int container = sndfileFormat & SF_FORMAT_TYPEMASK;
  if (container == SF_FORMAT_FLAC || container == SF_FORMAT_OGG) return -1;
  static const std::map<int, int> kBytes = {
      {SF_FORMAT_PCM_S8, 1}, {SF_FORMAT_PCM_U8, 1}, {SF_FORMAT_PCM_16, 2}, {SF_FORMAT_PCM_24, 3},
      {SF_FORMAT_PCM_32, 4}, {SF_FORMAT_FLOAT, 4},  {SF_FORMAT_DOUBLE, 8}};
  const auto found = kBytes.find(sndfileFormat & SF_FORMAT_SUBMASK);
  return found == kBytes.end() ? -1 : frames * channels * found->second;
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
