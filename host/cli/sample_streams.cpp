#include "host/cli/sample_streams.h"

#include <algorithm>

InputStream::InputStream(AudioReader& reader)
    : reader_(reader),
      fileChannels_(reader.info().channels),
      coding_(reader.rawSamples() == RawSamples::none ? RawSamples::hostDouble
                                                      : reader.rawSamples()),
      chunkFrames_(streamChunkFrames(frameBytes())),
      chunk_(static_cast<std::size_t>((chunkFrames_ * frameBytes() + 7) / 8)) {}

std::int64_t InputStream::frameBytes() const {
  return static_cast<std::int64_t>(rawSampleBytes(coding_)) * fileChannels_;
}

std::int64_t InputStream::fill() {
  if (coding_ == RawSamples::hostDouble) return reader_.read(chunk_.data(), chunkFrames_);
  return reader_.readRaw(reinterpret_cast<unsigned char*>(chunk_.data()), chunkFrames_);
}

int InputStream::take(double* const* channels, int count, int frames) {
  const int fromFile = std::min(count, fileChannels_);
  int done = 0;
  while (done < frames) {
    if (used_ == available_) {
      if (ended_) break;
      available_ = fill();
      used_ = 0;
      ended_ = available_ < chunkFrames_;
      if (available_ == 0) break;
    }
    const auto span = static_cast<int>(std::min<std::int64_t>(frames - done, available_ - used_));
    const auto* bytes = reinterpret_cast<const unsigned char*>(chunk_.data());
    deinterleaveRaw(coding_, bytes + used_ * frameBytes(), fileChannels_, channels, fromFile, done,
                    span);
    for (int c = fromFile; c < count; ++c) std::fill_n(channels[c] + done, span, 0.0);
    used_ += span;
    done += span;
  }
  return done;
}

OutputStream::OutputStream(AudioWriter& writer, int channels, LevelMeter& levels)
    : writer_(writer),
      levels_(levels),
      channels_(channels),
      floats_(writer.storesFloats()),
      chunkFrames_(streamChunkFrames(
          channels * static_cast<std::int64_t>(floats_ ? sizeof(float) : sizeof(double)))) {
  const auto size = static_cast<std::size_t>(chunkFrames_ * channels);
  (floats_ ? singles_.resize(size) : doubles_.resize(size));
}

void OutputStream::put(const double* const* channels, int frames) {
  const double* planar[kMaxFileChannels];
  int done = 0;
  while (done < frames) {
    const auto span =
        static_cast<int>(std::min<std::int64_t>(frames - done, chunkFrames_ - filled_));
    for (int c = 0; c < channels_; ++c) planar[c] = channels[c] + done;
    const auto at = static_cast<std::size_t>(filled_ * channels_);
    if (floats_) {
      levels_.interleave(planar, span, singles_.data() + at);
    } else {
      levels_.interleave(planar, span, doubles_.data() + at);
    }
    filled_ += span;
    done += span;
    if (filled_ == chunkFrames_) flush();
  }
}

void OutputStream::flush() {
  if (floats_) {
    writer_.write(singles_.data(), filled_);
  } else {
    writer_.write(doubles_.data(), filled_);
  }
  writer_.startWriteback();
  filled_ = 0;
}

void OutputStream::finish() {
  if (filled_ > 0) flush();
}
