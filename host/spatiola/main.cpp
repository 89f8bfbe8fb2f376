// spatiola: renders audio files through a VST 2.x plug-in (Spatiola by default), inspects and
// benchmarks plug-ins, and converts Spatiola's state blocks to and from JSON.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "host/cli/commands.h"
#include "host/runtime/host_error.h"
#include "host/services/settings.h"
#include "host/spatiola/command_demo.h"
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

void addRender(CLI::App& app, RenderOptions& options) {
  CLI::App* render = app.add_subcommand("render", "process an audio file through the plug-in");
  render->add_option("input", options.inputPath, "input audio file (any libsndfile format)")
      ->required();
  render->add_option("output", options.outputPath, "output audio file")->required();
  addPluginOptions(*render, options.plugin, true);
  render->add_option("--block", options.blockSize, "block size in samples (default 512)");
  render->add_option("--format", options.format,
                     "output container: wav, w64, rf64, aiff, flac, caf, ogg (default: from the "
                     "output's extension)");
  render->add_option("--sample-format", options.sampleType,
                     "pcm16, pcm24, pcm32, float or double (default float; FLAC pcm24)");
  render->add_option("--automation", options.automationPath,
                     "CSV of time in seconds, parameter name or index, normalised value");
  render->add_option("--save-state", options.saveStatePath,
                     "write the plug-in's state block after the render");
  render->add_flag("--ambisonic", options.ambisonic, "mark a WAVE output as ambisonic B-format");
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
                  "draw each block's size from 0..--block (reproducible with --seed)");
  bench->add_option("--seed", options.seed, "seed of --random-blocks (default 1)");
  bench->add_option("--report", options.reportSeconds,
                    "soak: one run of --seconds, a line of cost per block and memory every "
                    "SECONDS of wall time, and a first/last comparison");
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
                   "track channel count the host reports (default 2)");
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
}

int dispatchCommand(const CLI::App& app, const RenderOptions& render, const InfoOptions& info,
                    const BenchOptions& bench, const DemoOptions& demo,
                    const SnapshotOptions& snapshot, const EditOptions& edit, SceneOptions& scene) {
  if (app.got_subcommand("render")) return runRender(render, std::cout, std::cerr);
  if (app.got_subcommand("info")) return runInfo(info, std::cout);
  if (app.got_subcommand("bench")) return runBench(bench, std::cout);
  if (app.got_subcommand("demo")) return runDemo(demo, std::cout, std::cerr);
  if (app.got_subcommand("snapshot")) return runSnapshot(snapshot, std::cout);
  if (app.got_subcommand("edit")) return runEdit(edit, std::cout);
  return runScene(scene, std::cin, std::cout, std::cerr);
}

int run(int argc, char** argv) {
  CLI::App app{"spatiola: a VST 2.x host for rendering audio through Spatiola and other plug-ins"};
  app.require_subcommand(1);
  int scale = 0;
  app.add_option("--ui-scale", scale, "display scale for plug-ins, 256 = 100 % (default 256)");
  RenderOptions render;
  InfoOptions info;
  BenchOptions bench;
  DemoOptions demo;
  SnapshotOptions snapshot;
  EditOptions edit;
  SceneOptions scene;
  addRender(app, render);
  addInfo(app, info);
  addBench(app, bench);
  addDemo(app, demo);
  addSnapshot(app, snapshot);
  addEdit(app, edit);
  addSceneCommand(app, scene);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;  // help is no error; usage errors are 2
  }
  if (scale != 0) setDisplayScaleOverride(scale);
  try {
    return dispatchCommand(app, render, info, bench, demo, snapshot, edit, scene);
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
