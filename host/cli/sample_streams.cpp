#include "host/cli/sample_streams.h"

#include <algorithm>

InputStream::InputStream(AudioReader& reader)
    : reader_(reader),
      fileChannels_(reader.info().channels),
      chunk_(static_cast<std::size_t>(kStreamChunkFrames * fileChannels_)) {}

int InputStream::take(double* const* channels, int count, int frames) {
  const int fromFile = std::min(count, fileChannels_);
  int done = 0;
  while (done < frames) {
    if (used_ == available_) {
      if (ended_) break;
      available_ = reader_.read(chunk_.data(), kStreamChunkFrames);
      used_ = 0;
      ended_ = available_ < kStreamChunkFrames;
      if (available_ == 0) break;
    }
    const auto span = static_cast<int>(std::min<std::int64_t>(frames - done, available_ - used_));
    const double* source = chunk_.data() + used_ * fileChannels_;
    for (int c = 0; c < fromFile; ++c) {
      double* target = channels[c] + done;
      for (int f = 0; f < span; ++f) target[f] = source[f * fileChannels_ + c];
    }
    for (int c = fromFile; c < count; ++c) std::fill_n(channels[c] + done, span, 0.0);
    used_ += span;
    done += span;
  }
  return done;
}

OutputStream::OutputStream(AudioWriter& writer, int channels, LevelMeter& levels)
    : writer_(writer), levels_(levels), channels_(channels), floats_(writer.storesFloats()) {
  const auto size = static_cast<std::size_t>(kStreamChunkFrames * channels);
  (floats_ ? singles_.resize(size) : doubles_.resize(size));
}

void OutputStream::put(const double* const* channels, int frames) {
  const double* planar[kMaxFileChannels];
  int done = 0;
  while (done < frames) {
    const auto span =
        static_cast<int>(std::min<std::int64_t>(frames - done, kStreamChunkFrames - filled_));
    for (int c = 0; c < channels_; ++c) planar[c] = channels[c] + done;
    const auto at = static_cast<std::size_t>(filled_ * channels_);
    if (floats_) {
      levels_.interleave(planar, span, singles_.data() + at);
    } else {
      levels_.interleave(planar, span, doubles_.data() + at);
    }
    filled_ += span;
    done += span;
    if (filled_ == kStreamChunkFrames) flush();
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
