// The subcommands of the spatiola program. Each returns the exit status; errors the user can fix
// are thrown as HostError and reported by main.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

#include "host/cli/plugin_setup.h"
#include "host/cli/render.h"
#include "host/cli/snapshot.h"

struct InfoOptions {
  PluginOptions plugin;
  int trackChannels = 2;
  bool json = false;
};
int runInfo(const InfoOptions& options, std::ostream& out);

struct BenchOptions {
  PluginOptions plugin;
  int inputs = 2;
  int outputs = 0;  // Spatiola: a user setup of this many speakers; 0 keeps the default layout
  int blockSize = 512;
  double seconds = 10.0;
  double sampleRate = 48000.0;
  bool movingAutomation = false;
  int repeats = 5;
  bool randomBlocks = false;   // block sizes drawn from 0..blockSize
  std::uint64_t seed = 1;      // of the random block sizes
  double reportSeconds = 0.0;  // > 0: one long run, a line of cost and memory this often
};
int runBench(const BenchOptions& options, std::ostream& out);

int runRender(const RenderOptions& options, std::ostream& out, std::ostream& notes);

int runSnapshot(const SnapshotOptions& options, std::ostream& out);

struct EditOptions {
  PluginOptions plugin;
  int trackChannels = 2;
  bool headless = false;  // no display: the script drives the editor
  std::string scriptPath;
  std::string saveStatePath;      // written when the editor closes
  std::string automationLogPath;  // every call of the plug-in to the host, JSON lines
};
// What runs beside the editor on the same instance, live audio for one: `start` once the instance
// is set up and started, before the editor opens; `stop` after the editor closed (or failed),
// before the state is saved. [UI thread]
struct EditCompanion {
  std::function<void(PluginInstance&)> start;
  std::function<void(PluginInstance&)> stop;
};
// Opens the plug-in's editor in a window until it is closed, or headless through the script.
int runEdit(const EditOptions& options, std::ostream& out, const EditCompanion& companion = {});
