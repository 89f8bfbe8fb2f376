#include "host/cli/bench_soak.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>

int BlockSizer::next() {
  if (!random_) return largest_;
  // xorshift64*: tiny, and the same on every platform and standard library.
  state_ ^= state_ >> 12;
  state_ ^= state_ << 25;
  state_ ^= state_ >> 27;
  const std::uint64_t drawn = (state_ * 0x2545f4914f6cdd1dull) >> 32;
  return 1 + static_cast<int>(drawn % static_cast<std::uint64_t>(largest_));
}

void OutputChecksum::add(const double* samples, int frames) {
  for (int n = 0; n < frames; ++n) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &samples[n], sizeof bits);
    hash_ = (hash_ ^ bits) * 0x100000001b3ull;
  }
}

std::int64_t residentBytes() {
  std::FILE* statm = std::fopen("/proc/self/statm", "r");
  if (statm == nullptr) return 0;
  long long sizePages = 0;
  long long residentPages = 0;
  const int read = std::fscanf(statm, "%lld %lld", &sizePages, &residentPages);
  std::fclose(statm);
  return read == 2 ? residentPages * static_cast<std::int64_t>(sysconf(_SC_PAGESIZE)) : 0;
}

double threadCpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double SoakInterval::meanBlockMicroseconds() const {
  return blocks > 0 ? busySeconds * 1e6 / static_cast<double>(blocks) : 0.0;
}

double SoakInterval::nanosecondsPerFrame() const {
  return frames > 0 ? busySeconds * 1e9 / static_cast<double>(frames) : 0.0;
}

double SoakInterval::cpuNanosecondsPerFrame() const {
  return frames > 0 ? cpuSeconds * 1e9 / static_cast<double>(frames) : 0.0;
}

bool SoakRecorder::addBlock(int frames, double blockSeconds, double audioSeconds,
                            double wallSeconds) {
  ++open_.blocks;
  open_.frames += frames;
  open_.busySeconds += blockSeconds;
  if (blockSeconds > open_.worstBlockSeconds) open_.worstBlockSeconds = blockSeconds;
  if (everySeconds_ <= 0.0 || wallSeconds - lastCloseSeconds_ < everySeconds_) return false;
  close(audioSeconds, wallSeconds, true);
  return true;
}

void SoakRecorder::finish(double audioSeconds, double wallSeconds) {
  if (open_.blocks > 0) close(audioSeconds, wallSeconds, false);
}

void SoakRecorder::close(double audioSeconds, double wallSeconds, bool complete) {
  open_.complete = complete;
  open_.audioSeconds = audioSeconds;
  open_.wallSeconds = wallSeconds;
  open_.residentBytes = residentBytes();
  const double cpuNow = threadCpuSeconds();
  open_.cpuSeconds = cpuNow - lastCloseCpuSeconds_;
  lastCloseCpuSeconds_ = cpuNow;
  intervals_.push_back(open_);
  open_ = SoakInterval{};
  lastCloseSeconds_ = wallSeconds;
}
