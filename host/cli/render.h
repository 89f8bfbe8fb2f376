// Offline rendering of an audio file through a plug-in, block by block in double precision, with
// parameter changes applied at their exact samples and a glide of fixed length after each.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "host/cli/automation_csv.h"
#include "host/cli/channel_layout.h"
#include "host/cli/levels.h"
#include "host/cli/plugin_setup.h"
#include "host/cli/render_schedule.h"

constexpr int kMaxBlockSize = 65536;
constexpr double kMaxGlideMs = 250.0;

struct RenderOptions {
  std::string inputPath;
  std::string outputPath;
  PluginOptions plugin;
  int blockSize = 512;
  double glideMs = 10.0;     // the block after a change; 0: the rest of the --block block
  bool interpolate = false;  // straight lines between the automation points of a parameter
  std::string format;        // container name; empty: from the output's extension
  std::string sampleType;    // pcm16 .. double; empty: the container's default
  ChannelOrder channelOrder = ChannelOrder::Wave;
  std::string automationPath;
  std::string saveStatePath;
  bool ambisonic = false;
};

struct RenderResult {
  int inputChannels = 0;
  int outputChannels = 0;
  int sampleRate = 0;
  std::int64_t frames = 0;
  std::vector<ChannelLabel> channels;  // per file channel
  LevelMeter levels{0};
  bool integerFile = false;
  bool channelMapWritten = false;
};

// Throws UsageError for options no input could make right.
void checkRenderOptions(const RenderOptions& options);

// Before anything is read: the output and --save-state can be written and overwrite none of the
// files the render reads. Throws HostError naming the path.
void checkRenderPaths(const RenderOptions& options);

// Throws HostError for anything the user can fix; notes (unused channels, late automation,
// clipping, a damaged state block) go to `notes`.
RenderResult renderFile(const RenderOptions& options, std::ostream& notes);

// The automation points as changes of parameter indexes at samples; throws HostError naming
// `sourceName` and the line of a parameter the plug-in does not have.
std::vector<ParameterChange> resolveAutomation(PluginInstance& instance,
                                               const std::vector<AutomationPoint>& points,
                                               double sampleRate, const std::string& sourceName);
