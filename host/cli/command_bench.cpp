#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "host/cli/bench_soak.h"
#include "host/cli/commands.h"
#include "host/runtime/host_error.h"

namespace {

constexpr int kMovedGenericParameters = 8;

// Deterministic noise at about -12 dBFS, so that runs are comparable.
void fillNoise(PluginInstance& instance, int frames) {
  std::uint32_t state = 12345u;
  for (int c = 0; c < instance.inputCount(); ++c) {
    double* buffer = instance.inputBuffer(c);
    for (int f = 0; f < frames; ++f) {
      state = state * 1664525u + 1013904223u;
      buffer[f] = (static_cast<double>(state >> 8) / 16777216.0 - 0.5) * 0.5;
    }
  }
}

// The extension's moves (Spatiola: every input circles the room); other plug-ins: the first
// parameters sweep.
void moveParameters(PluginInstance& instance, const PluginExtension* extension, double phase) {
  if (extension != nullptr) {
    extension->moveParameters(instance, phase);
    return;
  }
  const int moved = std::min(instance.parameterCount(), kMovedGenericParameters);
  for (int p = 0; p < moved; ++p) {
    instance.setParameter(p, static_cast<float>(0.5 + 0.5 * std::sin(phase + p)));
  }
}

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// What every run shares: the block sizes, the audio position and the checksum go on across runs.
struct BenchRun {
  explicit BenchRun(const BenchOptions& options)
      : sizer(options.blockSize, options.seed, options.randomBlocks) {}
  BlockSizer sizer;
  OutputChecksum checksum;
  std::int64_t samplePosition = 0;
  Clock::time_point started = Clock::now();
  SoakRecorder* recorder = nullptr;  // soak only
  std::ostream* out = nullptr;
};

struct RunCost {
  double busySeconds = 0.0;
  std::int64_t blocks = 0;
  std::int64_t frames = 0;
};

void checksumOutputs(PluginInstance& instance, OutputChecksum& checksum, int frames) {
  for (int c = 0; c < instance.outputCount(); ++c) checksum.add(instance.outputBuffer(c), frames);
}

void printInterval(std::ostream& out, const SoakInterval& interval) {
  char line[256];
  std::snprintf(line, sizeof(line),
                "%7.1f min  audio %9.1f s  rss %7.1f MB  %8.2f us/block  %7.2f ns/frame  "
                "cpu %7.2f ns/frame  worst %8.1f us\n",
                interval.wallSeconds / 60.0, interval.audioSeconds,
                static_cast<double>(interval.residentBytes) / 1048576.0,
                interval.meanBlockMicroseconds(), interval.nanosecondsPerFrame(),
                interval.cpuNanosecondsPerFrame(), interval.worstBlockSeconds * 1e6);
  out << line << std::flush;
}

// [render thread] One block: the automation and the plug-in's processing are what is timed.
double timedBlock(PluginInstance& instance, const BenchOptions& options, BenchRun& run,
                  int frames) {
  const auto start = Clock::now();
  if (options.movingAutomation) {
    // The phase follows the audio position, so random block sizes still move smoothly.
    const double phase = 0.01 * static_cast<double>(run.samplePosition) / options.blockSize;
    moveParameters(instance, extensionFor(options.plugin, instance), phase);
  }
  instance.setSamplePosition(run.samplePosition);
  instance.process(frames);
  return secondsSince(start);
}

RunCost runFrames(PluginInstance& instance, const BenchOptions& options, std::int64_t frames,
                  BenchRun& run) {
  RunCost cost;
  while (cost.frames < frames) {
    const int blockFrames = run.sizer.next();
    const double seconds = timedBlock(instance, options, run, blockFrames);
    run.samplePosition += blockFrames;
    cost.busySeconds += seconds;
    ++cost.blocks;
    cost.frames += blockFrames;
    checksumOutputs(instance, run.checksum, blockFrames);
    const double audioSeconds = static_cast<double>(run.samplePosition) / options.sampleRate;
    if (run.recorder != nullptr &&
        run.recorder->addBlock(blockFrames, seconds, audioSeconds, secondsSince(run.started))) {
      printInterval(*run.out, run.recorder->intervals().back());
    }
  }
  return cost;
}

// First against last full interval: growth of cost or memory over the run shows here.
void printSoakSummary(std::ostream& out, std::vector<SoakInterval> intervals) {
  if (intervals.size() > 2 && !intervals.back().complete) intervals.pop_back();
  if (intervals.size() < 2) return;
  const SoakInterval& first = intervals.front();
  const SoakInterval& last = intervals.back();
  char line[256];
  std::snprintf(line, sizeof(line),
                "soak        last/first: cost per frame x%.3f, cpu per frame x%.3f, worst block "
                "x%.3f, rss %+.1f MB (%.1f -> %.1f MB, %d intervals)\n",
                last.nanosecondsPerFrame() / first.nanosecondsPerFrame(),
                last.cpuNanosecondsPerFrame() / first.cpuNanosecondsPerFrame(),
                last.worstBlockSeconds / first.worstBlockSeconds,
                static_cast<double>(last.residentBytes - first.residentBytes) / 1048576.0,
                static_cast<double>(first.residentBytes) / 1048576.0,
                static_cast<double>(last.residentBytes) / 1048576.0,
                static_cast<int>(intervals.size()));
  out << line;
}

double realTimeFactor(const RunCost& cost, double sampleRate) {
  return static_cast<double>(cost.frames) / sampleRate / cost.busySeconds;
}

// The median run by real-time factor, with its cost per block against the block's duration.
void printBenchResult(std::ostream& out, PluginInstance& instance, const BenchOptions& options,
                      std::vector<RunCost> costs) {
  std::sort(costs.begin(), costs.end(), [&](const RunCost& a, const RunCost& b) {
    return realTimeFactor(a, options.sampleRate) < realTimeFactor(b, options.sampleRate);
  });
  const RunCost& median = costs[costs.size() / 2];
  const double blocks = static_cast<double>(median.blocks);
  const double budgetSeconds = static_cast<double>(median.frames) / blocks / options.sampleRate;
  char line[256];
  std::snprintf(
      line, sizeof(line), "shape       %d in -> %d out, block %s%d, %.1f s at %.0f Hz, %s\n",
      instance.inputCount(), instance.outputCount(), options.randomBlocks ? "1.." : "",
      options.blockSize, static_cast<double>(median.frames) / options.sampleRate,
      options.sampleRate, options.movingAutomation ? "moving automation" : "static parameters");
  out << line;
  std::snprintf(line, sizeof(line), "real time   x%.1f (median of %d runs)\n",
                realTimeFactor(median, options.sampleRate), static_cast<int>(costs.size()));
  out << line;
  std::snprintf(line, sizeof(line), "per block   %.2f us (budget %.0f us)\n",
                median.busySeconds / blocks * 1e6, budgetSeconds * 1e6);
  out << line;
}

constexpr double kMaxSampleRate = 768000.0;

void checkShape(const BenchOptions& options) {
  if (options.inputs < 1 || options.inputs > 64) throw UsageError("--inputs must be 1..64");
  if (options.outputs < 0 || options.outputs > 64) {
    throw UsageError("--outputs must be 1..64 (a user setup of that many speakers)");
  }
  if (options.outputs > 0 && !options.plugin.layout.empty()) {
    throw UsageError("--outputs and --layout both choose the speakers; give one of them");
  }
  if (options.blockSize < 1 || options.blockSize > 65536) {
    throw UsageError("--block must be 1..65536");
  }
  if (!(options.sampleRate >= 1.0 && options.sampleRate <= kMaxSampleRate)) {
    throw UsageError("--rate must be a sample rate from 1 to 768000 Hz");
  }
  if (!(options.seconds > 0.0)) throw UsageError("--seconds must be positive");
  if (options.repeats < 1) throw UsageError("--repeat must be at least 1");
  if (!(options.reportSeconds >= 0.0)) throw UsageError("--report must be 0 or more seconds");
}

}  // namespace

int runBench(const BenchOptions& options, std::ostream& out, std::ostream& notes) {
  checkShape(options);
  HostConfig config;
  config.sampleRate = options.sampleRate;
  config.blockSize = options.blockSize;
  config.trackChannels = options.inputs;
  config.processLevel = 2;  // real time
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, config);
  PluginInstance& instance = *plugin.instance;
  PluginOptions setup = options.plugin;
  if (options.outputs > 0 && extensionFor(options.plugin, instance) == nullptr) {
    throw HostError("--outputs applies to Spatiola only; " + instance.module().path() +
                    " has its own output count (" + std::to_string(instance.outputCount()) + ")");
  }
  if (options.outputs > 0 && setup.layout.empty()) setup.layout = std::to_string(options.outputs);
  configurePlugin(instance, setup, notes);
  instance.start();
  fillNoise(instance, options.blockSize);

  const std::int64_t frames =
      std::max<std::int64_t>(1, std::llround(options.seconds * options.sampleRate));
  const bool soak = options.reportSeconds > 0.0;
  const int repeats = soak ? 1 : options.repeats;
  SoakRecorder recorder(options.reportSeconds);
  BenchRun run(options);
  run.out = &out;
  // Warm caches and gain tables; its blocks count in the checksum, not in the cost.
  runFrames(instance, options, std::min<std::int64_t>(frames, 16ll * options.blockSize), run);
  if (soak) {
    run.recorder = &recorder;
    run.started = Clock::now();
  }
  std::vector<RunCost> costs;
  for (int r = 0; r < repeats; ++r) costs.push_back(runFrames(instance, options, frames, run));
  if (soak)
    recorder.finish(static_cast<double>(run.samplePosition) / options.sampleRate,
                    secondsSince(run.started));
  instance.stop();
  printBenchResult(out, instance, options, costs);
  if (soak) printSoakSummary(out, recorder.intervals());
  char line[128];
  std::snprintf(line, sizeof(line), "checksum    %016llx (%lld frames)\n",
                static_cast<unsigned long long>(run.checksum.value()),
                static_cast<long long>(run.samplePosition));
  out << line;
  return 0;
}
