// Collects the time of every benchmark and prints the ratios the engine is held to.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

// The console table as usual, and each benchmark's CPU time by name (the median when repeated,
// else the fastest run): on a shared machine the wall clock counts other processes too.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override;
  // Nanoseconds per iteration; NaN for a benchmark that did not run (filtered out).
  double nanoseconds(const std::string& name) const;
  void record(const std::string& name, double nanoseconds);

 private:
  std::map<std::string, double> nanoseconds_;
  std::map<std::string, double> medians_;
};

// time(numerator) / time(denominator), held to a limit from below (atLeast) or from above.
struct Ratio {
  std::string label;
  std::string numerator;
  std::string denominator;
  double limit;  // 0: reported only
  bool atLeast;
};

void printRatios(const RatioReporter& reporter, const std::vector<Ratio>& ratios);
