#include "host/live/callback_timing.h"

#include <time.h>

#include <algorithm>

CallbackTiming::CallbackTiming()
    : buckets_(std::make_unique<std::atomic<std::uint32_t>[]>(kBuckets)) {}

void CallbackTiming::add(std::int64_t durationNs) {
  const std::int64_t bucket =
      std::clamp<std::int64_t>(durationNs / (1000 * kBucketUs), 0, kBuckets - 1);
  buckets_[bucket].fetch_add(1, std::memory_order_relaxed);
  count_.fetch_add(1, std::memory_order_relaxed);
  if (durationNs > worstNs_.load(std::memory_order_relaxed)) {
    worstNs_.store(durationNs, std::memory_order_relaxed);
  }
}

TimingSummary CallbackTiming::summary() const {
  TimingSummary summary;
  summary.callbacks = count_.load(std::memory_order_relaxed);
  summary.worstUs = static_cast<double>(worstNs_.load(std::memory_order_relaxed)) / 1000.0;
  // The middle of the bucket in which the cumulative count reaches `fraction` of the callbacks.
  const auto quantile = [&](double fraction) {
    std::uint64_t seen = 0;
    for (int b = 0; b < kBuckets && summary.callbacks > 0; ++b) {
      seen += buckets_[b].load(std::memory_order_relaxed);
      if (static_cast<double>(seen) >= fraction * static_cast<double>(summary.callbacks)) {
        return (b + 0.5) * kBucketUs;
      }
    }
    return 0.0;
  };
  summary.medianUs = quantile(0.5);
  summary.p999Us = quantile(0.999);
  return summary;
}

namespace {

std::int64_t clockNs(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

}  // namespace

std::int64_t monotonicNs() {
  return clockNs(CLOCK_MONOTONIC);
}

std::int64_t threadCpuNs() {
  return clockNs(CLOCK_THREAD_CPUTIME_ID);
}
