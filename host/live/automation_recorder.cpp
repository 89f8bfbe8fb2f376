#include "host/live/automation_recorder.h"

#include <chrono>
#include <cstdio>

#include "host/runtime/host_error.h"

namespace {

constexpr auto kWriterPause = std::chrono::milliseconds(20);

}  // namespace

std::string automationLine(std::int64_t sample, double sampleRate, std::int32_t parameter,
                           float value) {
  char line[96];
  std::snprintf(line, sizeof line, "%.9f,%d,%.9g\n", static_cast<double>(sample) / sampleRate,
                static_cast<int>(parameter), static_cast<double>(value));
  return line;
}

AutomationRecorder::AutomationRecorder(const std::string& path, double sampleRate, int blockFrames,
                                       Clock clock)
    : path_(path),
      sampleRate_(sampleRate),
      clock_(std::move(clock)),
      out_(path, std::ios::trunc),
      queue_(kQueueSlots) {
  if (!out_) throw HostError("cannot write the automation file " + path);
  out_ << "time,parameter,value\n"
       << "# recorded live at " << sampleRate << " Hz in blocks of " << blockFrames
       << " samples; parameters by index\n";
  out_.flush();
  writer_ = std::thread([this] { run(); });
}

AutomationRecorder::~AutomationRecorder() {
  running_.store(false);
  writer_.join();
  writeQueued();
  out_.flush();
}

void AutomationRecorder::reportAt(std::int64_t sample, std::int32_t parameter, float value) {
  if (!queue_.push(Report{sample, parameter, value})) {
    lost_.fetch_add(1, std::memory_order_relaxed);
  }
}

void AutomationRecorder::writeQueued() {
  Report report{};
  bool any = false;
  while (queue_.pop(report)) {
    out_ << automationLine(report.sample, sampleRate_, report.parameter, report.value);
    written_.fetch_add(1, std::memory_order_relaxed);
    any = true;
  }
  if (any) out_.flush();  // complete up to a crash, line by line
}

void AutomationRecorder::run() {
  while (running_.load()) {
    writeQueued();
    std::this_thread::sleep_for(kWriterPause);
  }
}
