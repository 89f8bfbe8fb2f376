// A one-line progress bar on standard error, drawn only when it is a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

class ProgressBar {
 public:
  ProgressBar(std::string label, std::int64_t total);
  ~ProgressBar();  // ends the line when one was drawn
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // Redraws at most ten times a second.
  void update(std::int64_t done);
  void finish();

 private:
  void draw(std::int64_t done);

  std::string label_;
  std::int64_t total_;
  bool enabled_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point lastDraw_{};
};
