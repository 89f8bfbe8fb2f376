// Flushes denormal results and operands to zero while alive, then restores the caller's state: a
// decaying tail or a gain gliding to zero must not slow the block down.
#pragma once

#include <xmmintrin.h>

class DenormalGuard {
 public:
  // Writing the control register stalls the pipeline: only done when the flags are not set yet.
  DenormalGuard() : saved_(_mm_getcsr()) {
    if ((saved_ & kFlush) != kFlush) _mm_setcsr(saved_ | kFlush);
  }
  ~DenormalGuard() {
    if ((saved_ & kFlush) != kFlush) _mm_setcsr(saved_);
  }
  DenormalGuard(const DenormalGuard&) = delete;
  DenormalGuard& operator=(const DenormalGuard&) = delete;

 private:
  static constexpr unsigned kFlushToZero = 0x8000;
  static constexpr unsigned kDenormalsAreZero = 0x0040;
  static constexpr unsigned kFlush = kFlushToZero | kDenormalsAreZero;
  unsigned saved_;
};
