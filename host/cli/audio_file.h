// Audio files through libsndfile: any format it reads, written in a format chosen by extension or
// name, with speaker positions where the layout is known.
#pragma once

#include <sndfile.h>
#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "host/cli/raw_samples.h"

constexpr int kMaxFileChannels = 64;

struct AudioFileInfo {
  int channels = 0;
  int sampleRate = 0;
  std::int64_t frames = 0;
};

class AudioReader {
 public:
  // Throws HostError naming the file and the cause when it cannot be read.
  explicit AudioReader(const std::string& path);
  ~AudioReader();
  AudioReader(const AudioReader&) = delete;
  AudioReader& operator=(const AudioReader&) = delete;

  const AudioFileInfo& info() const { return info_; }
  // Interleaved frames into `out`; the number read (0 at the end).
  std::int64_t read(double* out, std::int64_t frames);
  // The coding of the file's samples when they can be decoded from its bytes as they are
  // (16, 24 or 32-bit PCM or 32-bit float in this machine's byte order), else none.
  RawSamples rawSamples() const { return raw_; }
  // Interleaved frames as the file holds them, in one read; the number read (0 at the end).
  std::int64_t readRaw(unsigned char* out, std::int64_t frames);

 private:
  std::string path_;
  SNDFILE* file_ = nullptr;
  AudioFileInfo info_;
  RawSamples raw_ = RawSamples::none;
};

struct OutputFormat {
  int sndfileFormat = 0;        // container | sample type
  std::vector<int> channelMap;  // SF_CHANNEL_MAP_* per channel, empty when unknown
  bool ambisonic = false;       // mark a WAVE file as ambisonic B-format
};

// The container from `formatName` ("wav", "w64", "rf64", "aiff", "flac", "caf", "ogg") or, when
// it is empty, from the file's extension; the sample type from `sampleType` ("pcm16", "pcm24",
// "pcm32", "float", "double"; empty: float, 24-bit for FLAC, Vorbis for OGG). Throws UsageError
// for unknown names, HostError for combinations libsndfile cannot write.
int chooseOutputFormat(const std::string& path, const std::string& formatName,
                       const std::string& sampleType, int channels, int sampleRate);

// The output format of a render. WAVE files get the extensible header with speaker positions only
// when the positions are in WAVE order (or the output is ambisonic); other containers keep the map
// as it is.
OutputFormat makeOutputFormat(const std::string& path, const std::string& formatName,
                              const std::string& sampleType, int channels, int sampleRate,
                              const std::vector<int>& speakerMap, bool ambisonic);

// Integer sample types clip what lies above full scale; floating-point types keep it.
bool isIntegerFormat(int sndfileFormat);
// The size of `frames` frames in this format, headers aside; -1 for compressed formats, whose
// size is not known before they are written.
std::int64_t uncompressedBytes(int sndfileFormat, int channels, std::int64_t frames);

// Large enough for long writes to the disk, small enough that writeback starts early.
constexpr off_t kWritebackBytes = 8 << 20;

// Files are the same bytes for the same samples (repeatable_file.h).
class AudioWriter {
 public:
  // Writes `path`; messages name `shownPath` (the path the user gave) when it is not empty.
  AudioWriter(const std::string& path, int channels, int sampleRate, const OutputFormat& format,
              const std::string& shownPath = "");
  ~AudioWriter();
  AudioWriter(const AudioWriter&) = delete;
  AudioWriter& operator=(const AudioWriter&) = delete;

  // Interleaved frames; throws HostError when the disk refuses them.
  void write(const double* frames, std::int64_t count);
  void write(const float* frames, std::int64_t count);
  // Whether the file holds 32-bit floats: floats are then written as they are.
  bool storesFloats() const { return subtype_ == SF_FORMAT_FLOAT; }
  // Sets the disk writing what was written since the last time, once that is a few MiB, without
  // waiting: the closing sync then waits only for the end, and dirty pages never pile up.
  void startWriteback();
  // Completes the file and waits until it is on the disk; throws when it could not be.
  void close();
  // Whether the channel map was stored in the file.
  bool channelMapWritten() const { return channelMapWritten_; }

 private:
  std::string path_;
  std::string shownPath_;
  SNDFILE* file_ = nullptr;
  int descriptor_ = -1;
  off_t writebackStart_ = 0;  // the disk has been set writing the bytes before this
  int container_ = 0;
  int subtype_ = 0;
  bool channelMapWritten_ = false;
};
