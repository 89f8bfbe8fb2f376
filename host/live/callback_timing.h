// The time each process callback takes, kept in a histogram filled without allocation on the
// audio thread, and summed up as fractions of the period for the report.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

struct TimingSummary {
  std::uint64_t callbacks = 0;
  double medianUs = 0.0;
  double p999Us = 0.0;  // 999 callbacks in 1000 take no longer
  double worstUs = 0.0;
};

class CallbackTiming {
 public:
  static constexpr int kBucketUs = 1;
  static constexpr int kBuckets = 100000;  // 100 ms in 1 us steps; longer ones go in the last

  CallbackTiming();

  // [audio thread]
  void add(std::int64_t durationNs);
  // [any thread] Approximate while callbacks go on: the buckets are read one by one.
  TimingSummary summary() const;

 private:
  std::unique_ptr<std::atomic<std::uint32_t>[]> buckets_;
  std::atomic<std::uint64_t> count_{0};
  std::atomic<std::int64_t> worstNs_{0};
};

// CLOCK_MONOTONIC in nanoseconds.
std::int64_t monotonicNs();
// The calling thread's processor time (CLOCK_THREAD_CPUTIME_ID) in nanoseconds.
std::int64_t threadCpuNs();
