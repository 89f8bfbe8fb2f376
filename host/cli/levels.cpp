#include "host/cli/levels.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>
#include <type_traits>

#include "host/cli/plural.h"

LevelMeter::LevelMeter(int channels)
    : peaks_(channels, 0.0), sumSquares_(channels, 0.0), overs_(channels, 0) {}

void LevelMeter::add(const double* frames, std::int64_t count) {
  const auto width = static_cast<std::size_t>(channels());
  for (std::int64_t f = 0; f < count; ++f) {
    for (std::size_t c = 0; c < width; ++c) {
      const double sample = frames[static_cast<std::size_t>(f) * width + c];
      if (!std::isfinite(sample)) {
        ++nonFinite_;
        continue;
      }
      const double magnitude = std::fabs(sample);
      peaks_[c] = std::max(peaks_[c], magnitude);
      sumSquares_[c] += sample * sample;
      if (magnitude > 1.0) ++overs_[c];
    }
  }
  frames_ += count;
}

// Fast path without the finiteness test: a NaN or infinity leaves a non-finite sum, and then the
// chunk is measured again sample by sample from the state before it.
template <typename Sample>
void LevelMeter::interleave(const double* const* planar, std::int64_t count, Sample* out) {
  const auto width = static_cast<std::size_t>(channels());
  savedPeaks_ = peaks_;
  savedSums_ = sumSquares_;
  savedOvers_ = overs_;
  double* peaks = peaks_.data();
  double* sums = sumSquares_.data();
  std::int64_t* overs = overs_.data();
  for (std::int64_t f = 0; f < count; ++f) {
    Sample* frame = out + static_cast<std::size_t>(f) * width;
    for (std::size_t c = 0; c < width; ++c) {
      const double sample = planar[c][f];
      frame[c] = static_cast<Sample>(sample);
      const double magnitude = std::fabs(sample);
      peaks[c] = std::max(peaks[c], magnitude);
      sums[c] += sample * sample;
      overs[c] += magnitude > 1.0 ? 1 : 0;
    }
  }
  for (std::size_t c = 0; c < width; ++c) {
    if (std::isfinite(sums[c])) continue;
    peaks_ = savedPeaks_;
    sumSquares_ = savedSums_;
    overs_ = savedOvers_;
    if constexpr (std::is_same_v<Sample, double>) {
      add(out, count);
    } else {
      std::vector<double> frames(static_cast<std::size_t>(count) * width);
      for (std::int64_t f = 0; f < count; ++f) {
        for (std::size_t k = 0; k < width; ++k) frames[f * width + k] = planar[k][f];
      }
      add(frames.data(), count);
    }
    return;
  }
  frames_ += count;
}

template void LevelMeter::interleave<float>(const double* const*, std::int64_t, float*);
template void LevelMeter::interleave<double>(const double* const*, std::int64_t, double*);

std::int64_t LevelMeter::totalOvers() const {
  return std::accumulate(overs_.begin(), overs_.end(), std::int64_t{0});
}

double linearToDbfs(double linear) {
  if (!(linear > 0.0)) return -std::numeric_limits<double>::infinity();
  return 20.0 * std::log10(linear);
}

double LevelMeter::peakDb(int channel) const {
  return linearToDbfs(peaks_[channel]);
}

double LevelMeter::rmsDb(int channel) const {
  if (frames_ == 0) return -std::numeric_limits<double>::infinity();
  return linearToDbfs(std::sqrt(sumSquares_[channel] / static_cast<double>(frames_)));
}

namespace {

std::string formatDb(double levelDb) {
  if (std::isinf(levelDb) && levelDb < 0) return "-inf";
  char text[32];
  std::snprintf(text, sizeof(text), "%.2f", levelDb);
  return text;
}

void printOvers(std::ostream& out, const LevelMeter& meter, bool integerFile) {
  std::string channels;
  int overChannels = 0;
  for (int c = 0; c < meter.channels(); ++c) {
    if (meter.overs(c) == 0) continue;
    channels += (channels.empty() ? "" : ", ") + std::to_string(c + 1);
    ++overChannels;
  }
  out << "overs: " << counted(meter.totalOvers(), "sample") << " above 0 dBFS in "
      << (overChannels == 1 ? "channel " : "channels ") << channels
      << (integerFile ? ", clipped in the file\n" : ", kept by the floating-point file\n");
}

}  // namespace

void printLevelTable(std::ostream& out, const LevelMeter& meter,
                     const std::vector<ChannelLabel>& labels, bool integerFile) {
  char line[160];
  std::snprintf(line, sizeof(line), "%-4s %-7s %-22s %10s %10s %8s\n", "ch", "plug-in", "speaker",
                "peak dBFS", "RMS dBFS", "overs");
  out << line;
  for (int c = 0; c < meter.channels(); ++c) {
    const ChannelLabel label =
        c < static_cast<int>(labels.size()) ? labels[c] : ChannelLabel{c, ""};
    std::snprintf(line, sizeof(line), "%-4d %-7d %-22.22s %10s %10s %8lld\n", c + 1,
                  label.pluginOutput + 1, label.speaker.c_str(), formatDb(meter.peakDb(c)).c_str(),
                  formatDb(meter.rmsDb(c)).c_str(), static_cast<long long>(meter.overs(c)));
    out << line;
  }
  if (meter.totalOvers() > 0) printOvers(out, meter, integerFile);
}
