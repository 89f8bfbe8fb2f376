// The subcommands of the spatiola program. Each returns the exit status; errors the user can fix
// are thrown as HostError (UsageError for a wrong command line) and reported by main; notes and
// warnings go to `notes`.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

#include "host/cli/live_audio.h"
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

struct LiveCommandOptions {
  PluginOptions plugin;
  LiveAudioOptions audio;
  int inputs = 0;        // track channels; 0: the played file's, else 2
  double seconds = 0.0;  // 0: until interrupted, "quit" or the server stops
  bool moving = false;   // every block moves the parameters (the benchmark)
  bool timing = false;   // print the callback's time and the xruns at the end
};
// Runs the plug-in on JACK without a window. `control` (standard input) takes lines while it runs:
// "set NAME=VALUE", "inputs N", "layout NAME", "quit".
int runLive(const LiveCommandOptions& options, int controlFd, std::ostream& out,
            std::ostream& notes);

struct EditOptions {
  PluginOptions plugin;
  int trackChannels = 0;  // 0: 2, or the played file's with --jack --play
  bool headless = false;  // no display: the script drives the editor
  std::string scriptPath;
  std::string saveStatePath;      // written when the editor closes
  std::string automationLogPath;  // every call of the plug-in to the host, JSON lines
  bool jack = false;              // live audio beside the editor, as `audio` says
  LiveAudioOptions audio;
};
// What runs beside the editor on the same instance, live audio for one. [UI thread]
struct EditCompanion {
  // Before the plug-in loads: the host settings it is to see.
  std::function<void(HostConfig&)> configure;
  // Once the instance is set up and started, before the editor opens.
  std::function<void(PluginInstance&)> start;
  // On every idle call of the editor (its loop's and the script's); answers what the window's
  // title shows after the plug-in's name.
  std::function<std::string()> idle;
  // After the editor closed (or failed), before the state is saved.
  std::function<void(PluginInstance&)> stop;
  // A parameter set as the host's automation does (the script's `set`); unset: the plug-in's
  // setParameter at once.
  std::function<void(std::int32_t parameter, float value)> setParameter;
  bool realTime = false;  // the script's waits take wall-clock time too
};
// Opens the plug-in's editor in a window until it is closed, or headless through the script.
int runEdit(const EditOptions& options, std::ostream& out, std::ostream& notes,
            const EditCompanion& companion = {});
// The editor with the plug-in running live on JACK beside it (options.jack).
int runEditLive(const EditOptions& options, std::ostream& out, std::ostream& notes);
