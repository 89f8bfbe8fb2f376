// Peak and RMS level of each output channel, in dBFS (full scale = 1.0).
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

class LevelMeter {
 public:
  explicit LevelMeter(int channels);

  // Interleaved frames of `channels` samples.
  void add(const double* frames, std::int64_t count);

  int channels() const { return static_cast<int>(peaks_.size()); }
  double peakDb(int channel) const;
  double rmsDb(int channel) const;

 private:
  std::vector<double> peaks_;
  std::vector<double> sumSquares_;
  std::int64_t frames_ = 0;
};

// 20 log10(linear); -inf for silence.
double linearToDbfs(double linear);

// The table printed after a render: channel number, label (when known), peak and RMS.
void printLevelTable(std::ostream& out, const LevelMeter& meter,
                     const std::vector<std::string>& labels);
