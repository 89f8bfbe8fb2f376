#include "bench/ratio_report.h"

#include <cmath>
#include <cstdio>
#include <limits>

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
    if (run.error_occurred || (run.run_type != Run::RT_Iteration && !median)) continue;
    const double ns =
        run.GetAdjustedCPUTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
    if (median) {
      medians_[run.run_name.str()] = ns;
    } else {
      record(run.run_name.str(), ns);
    }
  }
}

void RatioReporter::record(const std::string& name, double ns) {
  const auto known = nanoseconds_.find(name);
  if (known == nanoseconds_.end() || ns < known->second) nanoseconds_[name] = ns;
}

double RatioReporter::nanoseconds(const std::string& name) const {
  const auto median = medians_.find(name);
  if (median != medians_.end()) return median->second;
  const auto known = nanoseconds_.find(name);
  return known == nanoseconds_.end() ? std::numeric_limits<double>::quiet_NaN() : known->second;
}

namespace {

const char* verdict(const Ratio& ratio, double value) {
  if (ratio.limit == 0.0) return "";
  if (std::isnan(value)) return "not run";
  const bool met = ratio.atLeast ? value >= ratio.limit : value <= ratio.limit;
  return met ? "met" : "MISSED";
}

}  // namespace

void printRatios(const RatioReporter& reporter, const std::vector<Ratio>& ratios) {
  std::printf("\n%-58s %8s  %s\n", "Ratio (CPU time; median of repetitions)", "value", "target");
  for (const Ratio& ratio : ratios) {
    const double value =
        reporter.nanoseconds(ratio.numerator) / reporter.nanoseconds(ratio.denominator);
    char target[32] = "";
    if (ratio.limit != 0.0)
      std::snprintf(target, sizeof target, "%s %.2f", ratio.atLeast ? ">=" : "<=", ratio.limit);
    std::printf("%-58s %8.3f  %-8s %s\n", ratio.label.c_str(), value, target,
                verdict(ratio, value));
  }
}
