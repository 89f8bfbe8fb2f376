// Samples decoded straight from a file's bytes. libsndfile converts in 8 KiB pieces through its
// own buffer; reading the bytes in large pieces and decoding them while deinterleaving does one
// pass instead of three. The values are exactly libsndfile's: every decode is an integer scaled
// by a power of two, or a float widened.
#pragma once

#include <cstddef>

// The codings decoded here; `none` for files libsndfile converts itself (8-bit, compressed, other
// byte order). `hostDouble` is a buffer libsndfile filled with doubles.
enum class RawSamples { none, pcm16, pcm24, pcm32, float32, hostDouble };

std::size_t rawSampleBytes(RawSamples coding);

// `frames` frames of the interleaved `source` (`width` samples a frame) into the planar
// `channels` (`count` of them, count <= width), each from `offset` on.
void deinterleaveRaw(RawSamples coding, const unsigned char* source, int width,
                     double* const* channels, int count, int offset, int frames);
