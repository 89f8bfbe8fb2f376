// Offline rendering of an audio file through a plug-in, block by block in double precision, with
// parameter changes applied at their exact samples.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "host/cli/automation_csv.h"
#include "host/cli/levels.h"
#include "host/cli/plugin_setup.h"

struct RenderOptions {
  std::string inputPath;
  std::string outputPath;
  PluginOptions plugin;
  int blockSize = 512;
  std::string format;      // container name; empty: from the output's extension
  std::string sampleType;  // pcm16 .. double; empty: the container's default
  std::string automationPath;
  std::string saveStatePath;
  bool ambisonic = false;
};

struct RenderResult {
  int inputChannels = 0;
  int outputChannels = 0;
  int sampleRate = 0;
  std::int64_t frames = 0;
  std::vector<std::string> channelNames;
  LevelMeter levels{0};
  bool channelMapWritten = false;
};

// Throws HostError for anything the user can fix; notes (unused channels, late automation) go
// to `notes`.
RenderResult renderFile(const RenderOptions& options, std::ostream& notes);

// Renders with automation points already resolved; for callers that build the scene themselves.
struct ResolvedChange {
  std::int64_t sample;
  int parameter;
  float value;
};
std::vector<ResolvedChange> resolveAutomation(PluginInstance& instance,
                                              const std::vector<AutomationPoint>& points,
                                              double sampleRate);
