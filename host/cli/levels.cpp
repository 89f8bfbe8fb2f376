#include "host/cli/levels.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>

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
