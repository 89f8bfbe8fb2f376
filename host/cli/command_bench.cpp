#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <vector>

#include "host/cli/commands.h"
#include "host/cli/spatiola_layout.h"
#include "host/core/host_error.h"

namespace {

constexpr int kSpatiolaInputParameters = 10;
constexpr int kSpatiolaFirstInputParameter = 4;
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

// Spatiola: every input circles the room; other plug-ins: the first parameters sweep.
void moveParameters(PluginInstance& instance, bool spatiola, double phase) {
  if (spatiola) {
    for (int i = 0; i < instance.inputCount(); ++i) {
      const double angle = phase + 2.0 * std::numbers::pi * i / instance.inputCount();
      const int first = kSpatiolaFirstInputParameter + kSpatiolaInputParameters * i;
      instance.setParameter(first + 1, static_cast<float>(0.5 + 0.4 * std::sin(angle)));
      instance.setParameter(first + 2, static_cast<float>(0.5 + 0.4 * std::cos(angle)));
    }
    return;
  }
  const int moved = std::min(instance.parameterCount(), kMovedGenericParameters);
  for (int p = 0; p < moved; ++p) {
    instance.setParameter(p, static_cast<float>(0.5 + 0.5 * std::sin(phase + p)));
  }
}

double runOnce(PluginInstance& instance, const BenchOptions& options, std::int64_t blocks) {
  const bool spatiola = isSpatiola(instance.effect());
  const auto start = std::chrono::steady_clock::now();
  for (std::int64_t b = 0; b < blocks; ++b) {
    if (options.movingAutomation) moveParameters(instance, spatiola, 0.01 * static_cast<double>(b));
    instance.setSamplePosition(b * options.blockSize);
    instance.process(options.blockSize);
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void checkShape(const BenchOptions& options) {
  if (options.inputs < 1 || options.inputs > 64) throw HostError("--inputs must be 1..64");
  if (options.outputs < 0 || options.outputs > 64) {
    throw HostError("--outputs must be 1..64 (a user setup of that many speakers)");
  }
  if (options.blockSize < 1 || options.blockSize > 65536) {
    throw HostError("--block must be 1..65536");
  }
  if (!(options.seconds > 0.0)) throw HostError("--seconds must be positive");
  if (options.repeats < 1) throw HostError("--repeat must be at least 1");
}

}  // namespace

int runBench(const BenchOptions& options, std::ostream& out) {
  checkShape(options);
  HostConfig config;
  config.sampleRate = options.sampleRate;
  config.blockSize = options.blockSize;
  config.trackChannels = options.inputs;
  config.processLevel = 2;  // real time
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, config);
  PluginInstance& instance = *plugin.instance;
  PluginOptions setup = options.plugin;
  if (options.outputs > 0 && !isSpatiola(instance.effect())) {
    throw HostError("--outputs applies to Spatiola only; " + instance.module().path() +
                    " has its own output count (" + std::to_string(instance.outputCount()) + ")");
  }
  if (options.outputs > 0 && setup.layout.empty()) setup.layout = std::to_string(options.outputs);
  configurePlugin(instance, setup);
  instance.start();
  fillNoise(instance, options.blockSize);

  const auto blocks = std::max<std::int64_t>(
      1, std::llround(options.seconds * options.sampleRate / options.blockSize));
  std::vector<double> perBlockSeconds;
  perBlockSeconds.reserve(static_cast<std::size_t>(options.repeats));
  runOnce(instance, options, std::min<std::int64_t>(blocks, 16));  // warm caches and gain tables
  for (int r = 0; r < options.repeats; ++r) {
    perBlockSeconds.push_back(runOnce(instance, options, blocks) / static_cast<double>(blocks));
  }
  instance.stop();
  std::sort(perBlockSeconds.begin(), perBlockSeconds.end());
  const double median = perBlockSeconds[perBlockSeconds.size() / 2];
  const double blockSeconds = options.blockSize / options.sampleRate;

  char line[256];
  std::snprintf(line, sizeof(line),
                "shape       %d in -> %d out, block %d, %.1f s at %.0f Hz, %s\n",
                instance.inputCount(), instance.outputCount(), options.blockSize,
                static_cast<double>(blocks) * blockSeconds, options.sampleRate,
                options.movingAutomation ? "moving automation" : "static parameters");
  out << line;
  std::snprintf(line, sizeof(line), "real time   x%.1f (median of %d runs)\n",
                blockSeconds / median, options.repeats);
  out << line;
  std::snprintf(line, sizeof(line), "per block   %.2f us (budget %.0f us)\n", median * 1e6,
                blockSeconds * 1e6);
  out << line;
  return 0;
}
