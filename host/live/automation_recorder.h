// Records the automation reports of a live session as the CSV that `spatiola render --automation`
// reads: each report is placed at the first sample of the block that begins after it, which is
// where the audio thread applies the change, and written as seconds from the start of playback
// with the parameter's index and its normalised value. Reports travel through a lock-free queue
// from whichever thread makes them to a writer thread of the recorder's own.
#pragma once

#include <atomic>
#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include "host/live/report_queue.h"

class AutomationRecorder {
 public:
  // The sample a report made now takes effect at. [any thread]
  using Clock = std::function<std::int64_t()>;
  static constexpr std::size_t kQueueSlots = 1 << 16;

  // Creates the file (a header and a comment naming the rate and block size); throws HostError
  // when it cannot be written.
  AutomationRecorder(const std::string& path, double sampleRate, int blockFrames, Clock clock);
  ~AutomationRecorder();  // writes what is queued, then closes the file
  AutomationRecorder(const AutomationRecorder&) = delete;
  AutomationRecorder& operator=(const AutomationRecorder&) = delete;

  // [any thread] Never waits or allocates; a report that finds the queue full is counted.
  void report(std::int32_t parameter, float value) { reportAt(clock_(), parameter, value); }
  // [any thread] A change known to take effect at `sample`.
  void reportAt(std::int64_t sample, std::int32_t parameter, float value);
  std::uint64_t lost() const { return lost_.load(std::memory_order_relaxed); }
  std::uint64_t written() const { return written_.load(std::memory_order_relaxed); }

 private:
  struct Report {
    std::int64_t sample;
    std::int32_t parameter;
    float value;
  };
  void writeQueued();
  void run();

  std::string path_;
  double sampleRate_;
  Clock clock_;
  std::ofstream out_;
  ReportQueue<Report> queue_;
  std::atomic<std::uint64_t> lost_{0};
  std::atomic<std::uint64_t> written_{0};
  std::atomic<bool> running_{true};
  std::thread writer_;
};

// One CSV line for a change at `sample`: "seconds,parameter,value\n", the seconds precise enough
// to give back the same sample at `sampleRate`, the value the same float.
std::string automationLine(std::int64_t sample, double sampleRate, std::int32_t parameter,
                           float value);
