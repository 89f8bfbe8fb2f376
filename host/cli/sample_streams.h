// The render's file side as two streams of large chunks: the input read ahead on another thread
// while the plug-in processes, the output converted, measured and written behind it.
#pragma once

#include <cstdint>
#include <future>
#include <vector>

#include "host/cli/audio_file.h"
#include "host/cli/levels.h"

// Large enough that the disk sees few, long transfers; small enough to stay in the caches.
constexpr std::int64_t kStreamChunkFrames = 8192;

// Thread contract: the stream's owner calls it from one thread; reads run on a helper thread that
// touches only the reader and the chunk being filled.
class InputStream {
 public:
  explicit InputStream(AudioReader& reader);
  ~InputStream();

  // The next `frames` frames into planar `channels` (`count` of them; beyond the file's channels
  // silence). Returns the frames delivered: fewer only where the file ends.
  int take(double* const* channels, int count, int frames);

 private:
  void readAhead();

  AudioReader& reader_;
  int fileChannels_;
  std::vector<double> current_;
  std::vector<double> next_;
  std::int64_t available_ = 0;  // frames in current_
  std::int64_t used_ = 0;       // of them, already taken
  bool ended_ = false;
  std::future<std::int64_t> pending_;  // fills next_
};

// Thread contract as InputStream: writes run on a helper thread that touches only the writer and
// the chunk being written. Float files get floats, so the samples are converted once, here.
class OutputStream {
 public:
  OutputStream(AudioWriter& writer, int channels, LevelMeter& levels);
  ~OutputStream();

  // Appends `frames` frames of the planar `channels` and measures their levels.
  void put(const double* const* channels, int frames);
  // Writes what is left; rethrows what a write threw.
  void finish();

 private:
  void flush();

  AudioWriter& writer_;
  LevelMeter& levels_;
  int channels_;
  bool floats_;
  std::vector<double> doubles_[2];
  std::vector<float> singles_[2];
  int filling_ = 0;
  std::int64_t filled_ = 0;  // frames in the chunk being filled
  std::future<void> pending_;
};
