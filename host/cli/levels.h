// Peak and RMS level of each output channel, in dBFS (full scale = 1.0), with the samples above
// full scale (clipped in an integer file) and those that are no number at all.
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
  // Interleaves `count` frames of the planar channels into `out` as `Sample` (float or double)
  // and measures them in the same pass, with exactly the sums `add` gives.
  template <typename Sample>
  void interleave(const double* const* planar, std::int64_t count, Sample* out);

  int channels() const { return static_cast<int>(peaks_.size()); }
  double peakDb(int channel) const;
  double rmsDb(int channel) const;
  // Samples whose magnitude is above 1.0: an integer format clips them.
  std::int64_t overs(int channel) const { return overs_[channel]; }
  std::int64_t totalOvers() const;
  // NaN and infinite samples, of all channels.
  std::int64_t nonFinite() const { return nonFinite_; }

 private:
  std::vector<double> peaks_;
  std::vector<double> sumSquares_;
  std::vector<std::int64_t> overs_;
  std::vector<double> savedPeaks_, savedSums_;
  std::vector<std::int64_t> savedOvers_;
  std::int64_t nonFinite_ = 0;
  std::int64_t frames_ = 0;
};

// 20 log10(linear); -inf for silence.
double linearToDbfs(double linear);

// What a row of the level table says of the file's channel besides its levels.
struct ChannelLabel {
  int pluginOutput = 0;  // 0-based
  std::string speaker;   // empty when the plug-in does not tell
};

// The table printed after a render: the file's channel, the plug-in's output and speaker, peak,
// RMS and samples above full scale; then an overs line when there are any. `integerFile`: those
// samples were clipped in the file rather than kept.
void printLevelTable(std::ostream& out, const LevelMeter& meter,
                     const std::vector<ChannelLabel>& labels, bool integerFile);
