#include "host/spatiola/command_demo.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numbers>
#include <vector>

#include "host/cli/audio_file.h"
#include "host/cli/commands.h"
#include "host/cli/complete_file.h"
#include "host/cli/output_checks.h"
#include "host/runtime/host_error.h"
#include "host/services/ini_file.h"
#include "host/spatiola/spatiola_extension.h"

namespace {

constexpr int kDemoSources = 4;
constexpr int kDemoSampleRate = 48000;
constexpr double kSourceLevel = 0.25;                                 // -12 dBFS
constexpr double kToneHz[kDemoSources] = {220.0, 330.0, 0.0, 495.0};  // 0: noise
constexpr double kMaxDemoSeconds = 600.0;
constexpr int kDemoOutputs = 6;

// Source 1 pulses twice a second, the others hold; source 3 is noise.
double sourceSample(int source, std::int64_t frame, std::uint32_t& noise) {
  const double t = static_cast<double>(frame) / kDemoSampleRate;
  if (kToneHz[source] == 0.0) {
    noise = noise * 1664525u + 1013904223u;
    return kSourceLevel * (static_cast<double>(noise >> 8) / 8388608.0 - 1.0);
  }
  const double tone = kSourceLevel * std::sin(2.0 * std::numbers::pi * kToneHz[source] * t);
  const double pulse = source == 0 ? 0.5 + 0.5 * std::cos(4.0 * std::numbers::pi * t) : 1.0;
  return tone * pulse;
}

void writeSceneTo(const std::string& partialPath, const std::string& path, double seconds) {
  const auto frames = static_cast<std::int64_t>(seconds * kDemoSampleRate);
  OutputFormat format;
  format.sndfileFormat = SF_FORMAT_WAV | SF_FORMAT_FLOAT;  // sources, not speakers: no mask
  AudioWriter writer(partialPath, kDemoSources, kDemoSampleRate, format, path);
  std::vector<double> block;
  std::uint32_t noise = 1u;
  for (std::int64_t f = 0; f < frames; ++f) {
    for (int s = 0; s < kDemoSources; ++s) block.push_back(sourceSample(s, f, noise));
    if (block.size() >= std::size_t{4096} * kDemoSources || f + 1 == frames) {
      writer.write(block.data(), static_cast<std::int64_t>(block.size() / kDemoSources));
      block.clear();
    }
  }
  writer.close();
}

void writeScene(const std::string& path, double seconds) {
  writeCompleteFile(
      path, [&](const std::string& partialPath) { writeSceneTo(partialPath, path, seconds); });
}

struct NormalisedPoint {
  double x;
  double y;
};

// Source 1 travels once around the room, starting front left.
NormalisedPoint travellerAt(double t, double seconds) {
  const double angle = 2.0 * std::numbers::pi * t / seconds + std::numbers::pi / 4;
  return {0.5 - 0.4 * std::cos(angle), 0.5 + 0.4 * std::sin(angle)};
}

// The traveller's normalised X and Y every quarter second.
void writeMoves(const std::string& path, double seconds) {
  std::string text = "time,parameter,value\n";
  for (double t = 0.0; t < seconds; t += 0.25) {
    const NormalisedPoint at = travellerAt(t, seconds);
    char line[128];
    std::snprintf(line, sizeof(line), "%.2f,in 1 X,%.4f\n%.2f,in 1 Y,%.4f\n", t, at.x, t, at.y);
    text += line;
  }
  writeBinaryFile(path, std::vector<unsigned char>(text.begin(), text.end()));
}

std::string absolute(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::absolute(path, ignored).lexically_normal().string();
}

// The room as the scene starts; a plug-in without an inline view only costs the picture.
bool writeRoomPicture(const RenderOptions& render, const std::string& path, double seconds,
                      std::ostream& notes) {
  SnapshotOptions snapshot;
  snapshot.plugin = render.plugin;
  snapshot.outputPath = path;
  snapshot.trackChannels = kDemoSources;
  const NormalisedPoint start = travellerAt(0.0, seconds);
  snapshot.plugin.sets.push_back("in 1 X=" + std::to_string(start.x));
  snapshot.plugin.sets.push_back("in 1 Y=" + std::to_string(start.y));
  try {
    writeSnapshot(snapshot, notes);
    return true;
  } catch (const HostError& error) {
    notes << "spatiola: no room picture: " << error.what() << "\n";
  }
  return false;
}

// Both files of the scene and the render are 32-bit float: their size is known in advance.
void checkDemo(const DemoOptions& options) {
  if (!(options.seconds >= 1.0 && options.seconds <= kMaxDemoSeconds)) {
    throw UsageError("--seconds must be between 1 and 600");
  }
  if (!makeDirectories(options.directory)) {
    throw HostError("cannot create the folder " + options.directory);
  }
  const auto frames = static_cast<std::int64_t>(options.seconds * kDemoSampleRate);
  checkFreeSpace(options.directory + "/demo-5.1.wav",
                 frames * (kDemoSources + kDemoOutputs) * static_cast<std::int64_t>(sizeof(float)));
}

}  // namespace

int runDemo(const DemoOptions& options, std::ostream& out, std::ostream& notes) {
  checkDemo(options);
  RenderOptions render;
  render.inputPath = options.directory + "/scene-4-sources.wav";
  render.automationPath = options.directory + "/moves.csv";
  render.outputPath = options.directory + "/demo-5.1.wav";
  render.plugin.pluginPath = options.pluginPath;
  render.plugin.extension = &spatiolaExtension();
  render.plugin.layout = "5.1 surround";
  // 2: front right, 3 (noise): back left, 4: back right; 1 moves and feeds the LFE at unity.
  render.plugin.sets = {"in 1 LFE send=0.25", "in 2 X=0.9", "in 2 Y=0.9", "in 3 X=0.1",
                        "in 3 Y=0.1",         "in 4 X=0.9", "in 4 Y=0.1"};
  writeScene(render.inputPath, options.seconds);
  writeMoves(render.automationPath, options.seconds);
  const RenderResult result = renderFile(render, notes);
  const std::string picturePath = options.directory + "/room.png";
  const bool pictured = writeRoomPicture(render, picturePath, options.seconds, notes);
  out << "Four sources (220 Hz pulsing, moving round the room and sent to the LFE, 330 Hz front "
         "right, noise back left, 495 Hz back right)\n"
      << "  scene:      " << absolute(render.inputPath) << "\n"
      << "  automation: " << absolute(render.automationPath) << "\n"
      << "  result:     " << absolute(render.outputPath) << " (" << result.outputChannels
      << " channels, " << result.frames << " samples at " << result.sampleRate << " Hz)\n";
  if (pictured) out << "  room:       " << absolute(picturePath) << " (as the scene starts)\n";
  out << "\n";
  printLevelTable(out, result.levels, result.channels, result.integerFile);
  return 0;
}
