// Flushes denormal results and operands to zero while alive, then restores the caller's state: a
// decaying tail or a gain gliding to zero must not slow the block down.
#pragma once

#include <xmmintrin.h>

class DenormalGuard {
 public:
  DenormalGuard() : saved_(_mm_getcsr()) { _mm_setcsr(saved_ | kFlushToZero | kDenormalsAreZero); }
  ~DenormalGuard() { _mm_setcsr(saved_); }
  DenormalGuard(const DenormalGuard&) = delete;
  DenormalGuard& operator=(const DenormalGuard&) = delete;

 private:
  static constexpr unsigned kFlushToZero = 0x8000;
  static constexpr unsigned kDenormalsAreZero = 0x0040;
  unsigned saved_;
};
