// The render's file side as two streams of large chunks: the input read, then decoded and
// deinterleaved in one pass; the output interleaved, converted once, measured and written. A helper
// thread reading ahead and writing behind was measured and lost on this loaded 2-core machine
// (every hand-over waits for a core), so the streams run on the caller's thread.
#pragma once

#include <cstdint>
#include <vector>

#include "host/cli/audio_file.h"
#include "host/cli/levels.h"

// Large enough that the disk sees few, long reads and writes; small enough that a chunk stays in
// the processor's second-level cache while the kernel copies it (2 MiB chunks spent more time in
// that copy than in the whole mix).
constexpr std::int64_t kStreamChunkBytes = 256 * 1024;

// Frames of `frameBytes` bytes in a chunk: at least one.
constexpr std::int64_t streamChunkFrames(std::int64_t frameBytes) {
  return frameBytes >= kStreamChunkBytes ? 1 : kStreamChunkBytes / frameBytes;
}

class InputStream {
 public:
  explicit InputStream(AudioReader& reader);

  // The next `frames` frames into planar `channels` (`count` of them; beyond the file's channels
  // silence). Returns the frames delivered: fewer only where the file ends.
  int take(double* const* channels, int count, int frames);

 private:
  std::int64_t frameBytes() const;
  std::int64_t fill();  // the next chunk; its frames

  AudioReader& reader_;
  int fileChannels_;
  RawSamples coding_;  // hostDouble: libsndfile converts
  std::int64_t chunkFrames_;
  std::vector<double> chunk_;   // doubles, or the file's bytes
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
  std::int64_t chunkFrames_;
  std::vector<double> doubles_;
  std::vector<float> singles_;
  std::int64_t filled_ = 0;  // frames in the chunk
};
