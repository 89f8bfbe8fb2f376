#include "host/cli/raw_samples.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace {

static_assert(std::endian::native == std::endian::little,
              "the decoders read little-endian samples as the machine's own");

constexpr double kInt16Scale = 1.0 / 32768.0;
constexpr double kInt32Scale = 1.0 / 2147483648.0;  // 24-bit samples sit in the top 3 bytes

template <typename Value>
Value load(const unsigned char* at) {
  Value value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

struct Pcm16 {
  double operator()(const unsigned char* at) const { return load<std::int16_t>(at) * kInt16Scale; }
};
struct Pcm24 {
  double operator()(const unsigned char* at) const {
    const std::uint32_t bits =
        (std::uint32_t{at[0]} << 8) | (std::uint32_t{at[1]} << 16) | (std::uint32_t{at[2]} << 24);
    return static_cast<std::int32_t>(bits) * kInt32Scale;
  }
};
struct Pcm32 {
  double operator()(const unsigned char* at) const { return load<std::int32_t>(at) * kInt32Scale; }
};
struct Float32 {
  double operator()(const unsigned char* at) const { return load<float>(at); }
};
struct HostDouble {
  double operator()(const unsigned char* at) const { return load<double>(at); }
};

// Channel by channel: each target is written in order, and one span of the source stays in the
// caches across the channels.
template <typename Decode>
void deinterleave(Decode decode, std::size_t sampleBytes, const unsigned char* source, int width,
                  double* const* channels, int count, int offset, int frames) {
  const std::size_t frameBytes = sampleBytes * static_cast<std::size_t>(width);
  for (int c = 0; c < count; ++c) {
    const unsigned char* sample = source + sampleBytes * static_cast<std::size_t>(c);
    double* target = channels[c] + offset;
    for (int f = 0; f < frames; ++f) target[f] = decode(sample + frameBytes * f);
  }
}

}  // namespace

std::size_t rawSampleBytes(RawSamples coding) {
  switch (coding) {
    case RawSamples::pcm16:
      return 2;
    case RawSamples::pcm24:
      return 3;
    case RawSamples::pcm32:
    case RawSamples::float32:
      return 4;
    case RawSamples::none:
    case RawSamples::hostDouble:
      break;
  }
  return sizeof(double);
}

void deinterleaveRaw(RawSamples coding, const unsigned char* source, int width,
                     double* const* channels, int count, int offset, int frames) {
  const std::size_t bytes = rawSampleBytes(coding);
  switch (coding) {
    case RawSamples::pcm16:
      return deinterleave(Pcm16{}, bytes, source, width, channels, count, offset, frames);
    case RawSamples::pcm24:
      return deinterleave(Pcm24{}, bytes, source, width, channels, count, offset, frames);
    case RawSamples::pcm32:
      return deinterleave(Pcm32{}, bytes, source, width, channels, count, offset, frames);
    case RawSamples::float32:
      return deinterleave(Float32{}, bytes, source, width, channels, count, offset, frames);
    case RawSamples::none:
    case RawSamples::hostDouble:
      return deinterleave(HostDouble{}, bytes, source, width, channels, count, offset, frames);
  }
}
