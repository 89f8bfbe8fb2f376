#include "host/cli/levels.h"

#include <cmath>
#include <cstdio>
#include <limits>

LevelMeter::LevelMeter(int channels) : peaks_(channels, 0.0), sumSquares_(channels, 0.0) {}

void LevelMeter::add(const double* frames, std::int64_t count) {
  const auto width = static_cast<std::size_t>(channels());
  for (std::int64_t f = 0; f < count; ++f) {
    for (std::size_t c = 0; c < width; ++c) {
      const double sample = frames[static_cast<std::size_t>(f) * width + c];
      peaks_[c] = std::max(peaks_[c], std::fabs(sample));
      sumSquares_[c] += sample * sample;
    }
  }
  frames_ += count;
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

}  // namespace

void printLevelTable(std::ostream& out, const LevelMeter& meter,
                     const std::vector<std::string>& labels) {
  char line[160];
  std::snprintf(line, sizeof(line), "%-4s %-22s %10s %10s\n", "ch", "speaker", "peak dBFS",
                "RMS dBFS");
  out << line;
  for (int c = 0; c < meter.channels(); ++c) {
    const std::string label = c < static_cast<int>(labels.size()) ? labels[c] : "";
    std::snprintf(line, sizeof(line), "%-4d %-22.22s %10s %10s\n", c + 1, label.c_str(),
                  formatDb(meter.peakDb(c)).c_str(), formatDb(meter.rmsDb(c)).c_str());
    out << line;
  }
}
