// What a long benchmark run needs besides the clock: reproducible block sizes, a checksum of every
// output sample, the process's resident memory, and the cost per block over intervals.
#pragma once

#include <cstdint>
#include <vector>

// Block sizes 1..largest from a fixed seed: the same seed gives the same sequence on every run.
// Never 0: some plug-ins crash on an empty block.
class BlockSizer {
 public:
  BlockSizer(int largest, std::uint64_t seed, bool random)
      : largest_(largest), state_(seed), random_(random) {}
  int next();

 private:
  int largest_;
  std::uint64_t state_;
  bool random_;
};

// Running 64-bit FNV-1a over the bit patterns of the samples: equal only when bit-exact.
class OutputChecksum {
 public:
  void add(const double* samples, int frames);
  std::uint64_t value() const { return hash_; }

 private:
  std::uint64_t hash_ = 0xcbf29ce484222325ull;
};

// Resident set size of this process in bytes (0 where /proc is unavailable).
std::int64_t residentBytes();

// Processor time of the calling thread: unlike the wall clock, other processes on the machine
// do not add to it.
double threadCpuSeconds();

// Cost and memory of one stretch of the run.
struct SoakInterval {
  double audioSeconds = 0.0;  // audio position at the end of the stretch
  double wallSeconds = 0.0;   // wall time at the end of the stretch
  std::int64_t blocks = 0;
  std::int64_t frames = 0;
  double busySeconds = 0.0;  // time spent in the blocks
  double worstBlockSeconds = 0.0;
  double cpuSeconds = 0.0;  // the whole loop's processor time, checksum and automation included
  std::int64_t residentBytes = 0;
  bool complete = true;  // false for the shorter stretch at the end of the run

  double meanBlockMicroseconds() const;
  double nanosecondsPerFrame() const;
  double cpuNanosecondsPerFrame() const;
};

// Collects per-block costs and closes an interval every `everySeconds` of wall time.
class SoakRecorder {
 public:
  explicit SoakRecorder(double everySeconds)
      : everySeconds_(everySeconds), lastCloseCpuSeconds_(threadCpuSeconds()) {}
  // Returns true when this block closed an interval (it is then intervals().back()).
  bool addBlock(int frames, double blockSeconds, double audioSeconds, double wallSeconds);
  // Closes the last, partial interval when it holds any block.
  void finish(double audioSeconds, double wallSeconds);
  const std::vector<SoakInterval>& intervals() const { return intervals_; }

 private:
  void close(double audioSeconds, double wallSeconds, bool complete);

  double everySeconds_;
  double lastCloseSeconds_ = 0.0;
  double lastCloseCpuSeconds_;
  SoakInterval open_;
  std::vector<SoakInterval> intervals_;
};
