// The subcommands of the spatiola program. Each returns the exit status; errors the user can fix
// are thrown as HostError (UsageError for a wrong command line) and reported by main; notes and
// warnings go to `notes`.
#pragma once

#include <cstdint>
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
int runInfo(const InfoOptions& options, std::ostream& out, std::ostream& notes);

struct BenchOptions {
  PluginOptions plugin;
  int inputs = 2;
  int outputs = 0;  // Spatiola: a user setup of this many speakers; 0 keeps the default layout
  int blockSize = 512;
  double seconds = 10.0;
  double sampleRate = 48000.0;
  bool movingAutomation = false;
  int repeats = 5;
  bool randomBlocks = false;   // block sizes drawn from 1..blockSize
  std::uint64_t seed = 1;      // of the random block sizes
  double reportSeconds = 0.0;  // > 0: one long run, a line of cost and memory this often
};
int runBench(const BenchOptions& options, std::ostream& out, std::ostream& notes);

int runRender(const RenderOptions& options, std::ostream& out, std::ostream& notes);

int runSnapshot(const SnapshotOptions& options, std::ostream& out, std::ostream& notes);
