// The render's file side as two streams of large chunks: the input read and deinterleaved, the
// output interleaved, converted once, measured and written. A helper thread reading ahead and
// writing behind was measured and lost on this loaded 2-core machine (every hand-over waits for a
// core), so the streams run on the caller's thread.
#pragma once

#include <cstdint>
#include <vector>

#include "host/cli/audio_file.h"
#include "host/cli/levels.h"

// Large enough that the disk sees few, long writes; small enough to stay in the caches.
constexpr std::int64_t kStreamChunkFrames = 8192;

class InputStream {
 public:
  explicit InputStream(AudioReader& reader);

  // The next `frames` frames into planar `channels` (`count` of them; beyond the file's channels
  // silence). Returns the frames delivered: fewer only where the file ends.
  int take(double* const* channels, int count, int frames);

 private:
  AudioReader& reader_;
  int fileChannels_;
  std::vector<double> chunk_;
  std::int64_t available_ = 0;  // frames in chunk_
  std::int64_t used_ = 0;       // of them, already taken
  bool ended_ = false;
};

// Float files get floats, so the samples are converted once, here.
class OutputStream {
 public:
  OutputStream(AudioWriter& writer, int channels, LevelMeter& levels);

  // Appends `frames` frames of the planar `channels` and measures their levels.
  void put(const double* const* channels, int frames);
  // Writes what is left.
  void finish();

 private:
  void flush();

  AudioWriter& writer_;
  LevelMeter& levels_;
  int channels_;
  bool floats_;
  std::vector<double> doubles_;
  std::vector<float> singles_;
  std::int64_t filled_ = 0;  // frames in the chunk
};
