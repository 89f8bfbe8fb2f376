#include "host/cli/sample_streams.h"

#include <algorithm>

InputStream::InputStream(AudioReader& reader)
    : reader_(reader),
      fileChannels_(reader.info().channels),
      current_(static_cast<std::size_t>(kStreamChunkFrames * fileChannels_)),
      next_(current_.size()) {
  readAhead();
}

// A read still under way finishes before the chunks it fills go away.
InputStream::~InputStream() {
  if (pending_.valid()) pending_.wait();
}

void InputStream::readAhead() {
  pending_ = std::async(std::launch::async,
                        [this] { return reader_.read(next_.data(), kStreamChunkFrames); });
}

int InputStream::take(double* const* channels, int count, int frames) {
  const int fromFile = std::min(count, fileChannels_);
  int done = 0;
  while (done < frames) {
    if (used_ == available_) {
      if (ended_) break;
      available_ = pending_.get();
      used_ = 0;
      ended_ = available_ < kStreamChunkFrames;
      std::swap(current_, next_);
      if (!ended_) readAhead();
      if (available_ == 0) break;
    }
    const auto span = static_cast<int>(std::min<std::int64_t>(frames - done, available_ - used_));
    const double* source = current_.data() + used_ * fileChannels_;
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
  for (int k = 0; k < 2; ++k) (floats_ ? singles_[k].resize(size) : doubles_[k].resize(size));
}

OutputStream::~OutputStream() {
  if (pending_.valid()) pending_.wait();
}

void OutputStream::put(const double* const* channels, int frames) {
  const double* planar[kMaxFileChannels];
  int done = 0;
  while (done < frames) {
    const auto span =
        static_cast<int>(std::min<std::int64_t>(frames - done, kStreamChunkFrames - filled_));
    for (int c = 0; c < channels_; ++c) planar[c] = channels[c] + done;
    const std::size_t at = static_cast<std::size_t>(filled_ * channels_);
    if (floats_) {
      levels_.interleave(planar, span, singles_[filling_].data() + at);
    } else {
      levels_.interleave(planar, span, doubles_[filling_].data() + at);
    }
    filled_ += span;
    done += span;
    if (filled_ == kStreamChunkFrames) flush();
  }
}

// Hands the full chunk to the helper once it has written the previous one.
void OutputStream::flush() {
  if (pending_.valid()) pending_.get();
  const int chunk = filling_;
  const std::int64_t frames = filled_;
  pending_ = std::async(std::launch::async, [this, chunk, frames] {
    if (floats_) {
      writer_.write(singles_[chunk].data(), frames);
    } else {
      writer_.write(doubles_[chunk].data(), frames);
    }
    writer_.startWriteback();
  });
  filling_ = 1 - filling_;
  filled_ = 0;
}

void OutputStream::finish() {
  if (filled_ > 0) flush();
  if (pending_.valid()) pending_.get();
}
