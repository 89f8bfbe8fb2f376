// Puts the SSE unit in the audio routine's own state while alive, then restores the caller's: a
// decaying tail or a gain gliding to zero must not slow the block down (denormals flush to zero),
// and the output must not depend on the rounding mode or exception masks a host left behind.
#pragma once

#include <xmmintrin.h>

class DenormalGuard {
 public:
  DenormalGuard() : saved_(_mm_getcsr()) { _mm_setcsr(kAudioState); }
  ~DenormalGuard() { _mm_setcsr(saved_); }
  DenormalGuard(const DenormalGuard&) = delete;
  DenormalGuard& operator=(const DenormalGuard&) = delete;

 private:
  static constexpr unsigned kAllExceptionsMasked = 0x1f80;
  static constexpr unsigned kFlushToZero = 0x8000;
  static constexpr unsigned kDenormalsAreZero = 0x0040;
  // Round to nearest (bits 13-14 clear), no exception flags raised yet.
  static constexpr unsigned kAudioState = kAllExceptionsMasked | kFlushToZero | kDenormalsAreZero;
  unsigned saved_;
};
