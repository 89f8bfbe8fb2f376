// spatiola: renders audio files through a VST 2.x plug-in (Spatiola by default), inspects and
// benchmarks plug-ins, and converts Spatiola's state blocks to and from JSON.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <vector>

#include "host/cli/commands.h"
#include "host/runtime/host_error.h"
#include "host/runtime/interrupt_guard.h"
#include "host/services/settings.h"
#include "host/spatiola/command_demo.h"
#include "host/spatiola/layouts_command.h"
#include "host/spatiola/scene_command.h"
#include "host/spatiola/spatiola_extension.h"

namespace {

void addPluginOptions(CLI::App& command, PluginOptions& plugin, bool withSetup) {
  plugin.extension = &spatiolaExtension();
  command.add_option("--plugin", plugin.pluginPath,
                     "VST 2.x plug-in file (default: spatiola.so next to this program)");
  if (!withSetup) return;
  command.add_option("--state", plugin.statePath, "load this state block (effSetChunk) first");
  command.add_option("--layout", plugin.layout,
                     "Spatiola: a speaker layout preset name, or a speaker count for a user setup");
  command
      .add_option("--set", plugin.sets,
                  "NAME=VALUE: a parameter by exact name or index, "
                  "normalised value 0..1 (repeatable)")
      ->allow_extra_args(false);
}

// Values of --channel-order.
struct RenderChoices {
  std::string channelOrder = "wave";
};

void addRender(CLI::App& app, RenderOptions& options, RenderChoices& choices) {
  CLI::App* render = app.add_subcommand("render", "process an audio file through the plug-in");
  render->add_option("input", options.inputPath, "input audio file (any libsndfile format)")
      ->required();
  render->add_option("output", options.outputPath, "output audio file")->required();
  addPluginOptions(*render, options.plugin, true);
  render->add_option("--block", options.blockSize, "block size in samples (default 512)");
  render->add_option("--glide", options.glideMs,
                     "after each parameter change, one block of this many milliseconds in which "
                     "the plug-in glides to the new value (default 10; 0: the rest of the block)");
  render->add_flag("--interpolate", options.interpolate,
                   "straight lines between the automation points of each parameter, one change "
                   "per glide");
  render->add_option("--format", options.format,
                     "output container: wav, w64, rf64, aiff, flac, caf, ogg (default: from the "
                     "output's extension)");
  render->add_option("--sample-format", options.sampleType,
                     "pcm16, pcm24, pcm32, float or double (default float; FLAC pcm24)");
  render->add_option("--automation", options.automationPath,
                     "CSV of time in seconds, parameter name or index, normalised value");
  render->add_option("--save-state", options.saveStatePath,
                     "write the plug-in's state block after the render");
  render->add_option("--channel-order", choices.channelOrder,
                     "wave (default): standard layouts in WAVE order with their speaker "
                     "positions; plugin: the plug-in's order, no positions");
  render->add_flag("--ambisonic", options.ambisonic, "mark a WAVE output as ambisonic B-format");
}

ChannelOrder channelOrderNamed(const std::string& name) {
  if (name == "wave") return ChannelOrder::Wave;
  if (name == "plugin") return ChannelOrder::Plugin;
  throw UsageError("--channel-order '" + name + "' is neither wave nor plugin");
}

constexpr int kMinUiScale256 = 64;
constexpr int kMaxUiScale256 = 1024;

void applyUiScale(int scale256) {
  if (scale256 == 0) return;
  if (scale256 < kMinUiScale256 || scale256 > kMaxUiScale256) {
    throw UsageError("--ui-scale " + std::to_string(scale256) +
                     " is not a display scale: use 64 to 1024, where 256 is 100 %");
  }
  setDisplayScaleOverride(scale256);
}

void addInfo(CLI::App& app, InfoOptions& options) {
  CLI::App* info = app.add_subcommand("info", "identity, channels, flags and parameters");
  addPluginOptions(*info, options.plugin, true);
  info->add_option("--channels", options.trackChannels,
                   "track channel count the host reports (default 2)");
  info->add_flag("--json", options.json, "machine-readable output");
}

void addBench(CLI::App& app, BenchOptions& options) {
  CLI::App* bench = app.add_subcommand("bench", "real-time factor and cost per block");
  addPluginOptions(*bench, options.plugin, true);
  bench->add_option("--inputs", options.inputs, "track channels (default 2)");
  bench->add_option("--outputs", options.outputs, "Spatiola: speakers of a user setup");
  bench->add_option("--block", options.blockSize, "block size (default 512)");
  bench->add_option("--seconds", options.seconds, "audio per run (default 10)");
  bench->add_option("--rate", options.sampleRate, "sample rate (default 48000)");
  bench->add_option("--repeat", options.repeats, "runs, the median is shown (default 5)");
  bench->add_flag("--moving", options.movingAutomation,
                  "change parameters every block (Spatiola: every input's position)");
  bench->add_flag("--random-blocks", options.randomBlocks,
                  "draw each block's size from 1..--block (reproducible with --seed)");
  bench->add_option("--seed", options.seed, "seed of --random-blocks (default 1)");
  bench->add_option("--report", options.reportSeconds,
                    "soak: one run of --seconds, a line of cost per block and memory every "
                    "SECONDS of wall time, and a first/last comparison");
}

// The options of running on JACK, shared by `live` and `edit --jack`.
std::vector<CLI::Option*> addLiveAudioOptions(CLI::App& command, LiveAudioOptions& options) {
  return {
      command.add_option("--name", options.live.clientName, "JACK client name (default spatiola)"),
      command.add_option("--server", options.live.serverName,
                         "JACK server name (default: the default)"),
      command.add_option("--connect-inputs", options.live.connectInputs,
                         "wire input N from this port at start, e.g. system:capture_%d"),
      command.add_option("--connect-outputs", options.live.connectOutputs,
                         "wire output N to this port at start, e.g. system:playback_%d"),
      command.add_option("--play", options.live.playPath,
                         "a multichannel file played in a loop into the inputs (added to JACK's)"),
      command.add_option("--record-automation", options.live.recordPath,
                         "write the automation made while running as CSV for render --automation"),
      command.add_option("--save-start-state", options.startStatePath,
                         "write the state block as playback starts (for rendering the recording)"),
  };
}

void addLive(CLI::App& app, LiveCommandOptions& options) {
  CLI::App* live = app.add_subcommand(
      "live",
      "run the plug-in on a JACK server without a window (lines on standard input: "
      "set NAME=VALUE, inputs N, layout NAME, quit)");
  addPluginOptions(*live, options.plugin, true);
  addLiveAudioOptions(*live, options.audio);
  live->add_option("--inputs", options.inputs,
                   "track channels (default: the --play file's, else 2)");
  live->add_option("--seconds", options.seconds, "stop after this long (default: when told)");
  live->add_flag("--moving", options.moving,
                 "Spatiola: every input's position moves every block (a benchmark)");
  live->add_flag("--timing", options.timing,
                 "at the end: the callback's median and worst time as a fraction of the period, "
                 "and the xruns");
}

void addDemo(CLI::App& app, DemoOptions& options) {
  CLI::App* demo = app.add_subcommand("demo", "render a four-source test scene to 5.1");
  demo->add_option("--plugin", options.pluginPath, "the Spatiola plug-in file");
  demo->add_option("--dir", options.directory, "where to write (default ./spatiola-demo)")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  demo->add_option("--seconds", options.seconds, "length of the scene (default 8)");
}

void addSnapshot(CLI::App& app, SnapshotOptions& options) {
  CLI::App* snapshot =
      app.add_subcommand("snapshot", "write the plug-in's inline view (Spatiola: the room) as PNG");
  snapshot->add_option("output", options.outputPath, "PNG file to write")->required();
  addPluginOptions(*snapshot, options.plugin, true);
  snapshot->add_option("--size", options.size, "WIDTHxHEIGHT in pixels (default 480x480)");
  snapshot->add_option("--scale", options.scale256,
                       "display scale: 256 (100 %, default), 384 (150 %) or 512 (200 %)");
  snapshot->add_option("--channels", options.trackChannels,
                       "track channel count the host reports (default 2)");
  snapshot->add_flag("--editor", options.editor,
                     "the whole editor, drawn headless at --scale (--size does not apply)");
}

void addEdit(CLI::App& app, EditOptions& options) {
  CLI::App* edit = app.add_subcommand("edit", "open the plug-in's editor in a window");
  addPluginOptions(*edit, options.plugin, true);
  edit->add_option("--channels", options.trackChannels,
                   "track channel count the host reports (default 2; with --jack --play the "
                   "file's)");
  CLI::Option* script = edit->add_option("--script", options.scriptPath,
                                         "run this script of user actions (see the README)");
  edit->add_flag("--headless", options.headless,
                 "no window on the screen: the script drives the editor")
      ->needs(script);
  script->needs("--headless");
  edit->add_option("--save-state", options.saveStatePath,
                   "write the plug-in's state block when the editor closes");
  edit->add_option("--automation-log", options.automationLogPath,
                   "write every call of the plug-in to the host, one JSON object per line");
  CLI::Option* jack = edit->add_flag("--jack", options.jack,
                                     "run the plug-in on a JACK server while the editor is open");
  for (CLI::Option* option : addLiveAudioOptions(*edit, options.audio)) option->needs(jack);
}

// Every command's options, as the command line filled them.
struct Commands {
  RenderOptions render;
  RenderChoices renderChoices;
  InfoOptions info;
  BenchOptions bench;
  DemoOptions demo;
  SnapshotOptions snapshot;
  EditOptions edit;
  SceneOptions scene;
  LayoutsOptions layouts;
  LiveCommandOptions live;
};

int dispatchCommand(const CLI::App& app, Commands& commands) {
  if (app.got_subcommand("render")) {
    commands.render.channelOrder = channelOrderNamed(commands.renderChoices.channelOrder);
    return runRender(commands.render, std::cout, std::cerr);
  }
  if (app.got_subcommand("info")) return runInfo(commands.info, std::cout, std::cerr);
  if (app.got_subcommand("bench")) return runBench(commands.bench, std::cout, std::cerr);
  if (app.got_subcommand("demo")) return runDemo(commands.demo, std::cout, std::cerr);
  if (app.got_subcommand("snapshot")) return runSnapshot(commands.snapshot, std::cout, std::cerr);
  if (app.got_subcommand("edit")) {
    if (commands.edit.jack) return runEditLive(commands.edit, std::cout, std::cerr);
    return runEdit(commands.edit, std::cout, std::cerr);
  }
  if (app.got_subcommand("live")) return runLive(commands.live, 0, std::cout, std::cerr);
  if (app.got_subcommand("layouts")) return runLayouts(commands.layouts, std::cout);
  return runScene(commands.scene, std::cin, std::cout, std::cerr);
}

int run(int argc, char** argv) {
  installInterruptHandlers();
  CLI::App app{"spatiola: a VST 2.x host for rendering audio through Spatiola and other plug-ins"};
  app.require_subcommand(1);
  int scale = 0;
  app.add_option("--ui-scale", scale, "display scale for plug-ins, 256 = 100 % (default 256)");
  Commands commands;
  addRender(app, commands.render, commands.renderChoices);
  addInfo(app, commands.info);
  addBench(app, commands.bench);
  addDemo(app, commands.demo);
  addSnapshot(app, commands.snapshot);
  addSceneCommand(app, commands.scene);
  addLayoutsCommand(app, commands.layouts);
  addLive(app, commands.live);
  addEdit(app, commands.edit);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;  // help is no error; usage errors are 2
  }
  try {
    applyUiScale(scale);
    return dispatchCommand(app, commands);
  } catch (const UsageError& error) {
    std::fprintf(stderr, "spatiola: %s\n", error.what());
    return 2;
  } catch (const HostError& error) {
    std::fprintf(stderr, "spatiola: %s\n", error.what());
  }
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "spatiola: unexpected error: %s\n", error.what());
  } catch (...) {
    std::fprintf(stderr, "spatiola: unexpected error\n");
  }
  return 1;
}
