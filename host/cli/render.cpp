#include "host/cli/render.h"

#include <algorithm>
#include <cmath>

#include "host/cli/audio_file.h"
#include "host/cli/complete_file.h"
#include "host/cli/output_checks.h"
#include "host/cli/plural.h"
#include "host/cli/progress.h"
#include "host/cli/sample_streams.h"
#include "host/runtime/host_error.h"

namespace {

// The file's frames through the plug-in segment by segment, read and written in large chunks,
// the levels measured as the output is interleaved.
class Renderer {
 public:
  Renderer(PluginInstance& instance, AudioReader& reader, AudioWriter& writer,
           RenderSchedule& schedule, const FileChannels& channels, LevelMeter& levels)
      : instance_(instance),
        reader_(reader),
        schedule_(schedule),
        outputChannels_(instance.outputCount()),
        pluginOutput_(channels.pluginOutput),
        input_(reader),
        output_(writer, static_cast<int>(channels.pluginOutput.size()), levels) {}

  std::int64_t run() {
    ProgressBar progress("rendering", reader_.info().frames);
    std::int64_t position = 0;
    Segment segment;
    while (schedule_.next(segment)) {
      applyChanges(segment);
      // The instance may have moved its buffers when a plug-in changed its channel counts.
      inputs_.clear();
      for (int c = 0; c < instance_.inputCount(); ++c) inputs_.push_back(instance_.inputBuffer(c));
      const int frames =
          input_.take(inputs_.data(), static_cast<int>(inputs_.size()), segment.frames);
      if (frames > 0) renderSegment(segment.start, frames);
      position += frames;
      progress.update(position);
      if (frames < segment.frames) break;  // the file ended before its announced length
    }
    output_.finish();
    progress.finish();
    return position;
  }

 private:
  void applyChanges(const Segment& segment) {
    for (std::size_t k = segment.firstChange; k < segment.endChange; ++k) {
      const ParameterChange& change = schedule_.changes()[k];
      instance_.setParameter(change.parameter, change.value);
    }
  }

  void renderSegment(std::int64_t sample, int frames) {
    if (instance_.outputCount() != outputChannels_) {
      throw HostError("the plug-in changed its number of outputs during the render");
    }
    instance_.setSamplePosition(sample);
    instance_.process(frames);
    outputs_.clear();
    for (const int output : pluginOutput_) outputs_.push_back(instance_.outputBuffer(output));
    output_.put(outputs_.data(), frames);
  }

  PluginInstance& instance_;
  AudioReader& reader_;
  RenderSchedule& schedule_;
  int outputChannels_;
  const std::vector<int>& pluginOutput_;
  std::vector<double*> inputs_;
  std::vector<const double*> outputs_;
  InputStream input_;
  OutputStream output_;
};

int glideFrames(const RenderOptions& options, int sampleRate) {
  return static_cast<int>(std::llround(options.glideMs * sampleRate / 1000.0));
}

HostConfig renderConfig(const RenderOptions& options, const AudioFileInfo& input, int glide) {
  HostConfig config;
  config.sampleRate = input.sampleRate;
  config.blockSize = std::max(options.blockSize, glide);
  config.trackChannels = input.channels;
  return config;
}

bool isInstrument(PluginInstance& instance) {
  return instance.inputCount() == 0 || (instance.effect().flags & effFlagsIsSynth) != 0;
}

void noteChannelMismatch(PluginInstance& instance, int fileChannels, std::ostream& notes) {
  const int inputs = instance.inputCount();
  if (isInstrument(instance)) {
    notes << "note: the plug-in is an instrument (" << counted(inputs, "input")
          << "); this host sends it no MIDI, so it plays no notes\n";
  } else if (fileChannels > inputs) {
    notes << "note: the plug-in has " << counted(inputs, "input") << "; "
          << (fileChannels == inputs + 1
                  ? "channel " + std::to_string(fileChannels)
                  : "channels " + std::to_string(inputs + 1) + ".." + std::to_string(fileChannels))
          << " of the input " << (fileChannels == inputs + 1 ? "is" : "are") << " not used\n";
  } else if (fileChannels < inputs) {
    notes << "note: the plug-in has " << counted(inputs, "input") << "; "
          << (inputs == fileChannels + 1 ? "input " + std::to_string(inputs) + " receives"
                                         : "inputs " + std::to_string(fileChannels + 1) + ".." +
                                               std::to_string(inputs) + " receive")
          << " silence\n";
  }
}

void noteSetup(PluginInstance& instance, const RenderOptions& options, const AudioFileInfo& input,
               const std::vector<ParameterChange>& changes, std::ostream& notes) {
  noteChannelMismatch(instance, input.channels, notes);
  if (!changes.empty() && changes.back().sample >= input.frames) {
    notes << "note: automation after the end of the input (" << counted(input.frames, "sample")
          << ") is not applied\n";
  }
  if (const PluginExtension* extension = extensionFor(options.plugin, instance)) {
    for (const std::string& warning : extension->setupWarnings(instance)) {
      notes << "warning: " << warning << "\n";
    }
  }
}

// The automation as changes; those at the very start are applied at once, before the first
// sample, exactly like --set, and left out of the result.
std::vector<ParameterChange> automationChanges(PluginInstance& instance,
                                               const RenderOptions& options,
                                               const std::vector<AutomationPoint>& points,
                                               int sampleRate, int glide) {
  std::vector<ParameterChange> changes =
      resolveAutomation(instance, points, sampleRate, options.automationPath);
  if (options.interpolate) {
    changes = interpolateChanges(changes, glide > 0 ? glide : options.blockSize);
  }
  const auto later = std::find_if(changes.begin(), changes.end(),
                                  [](const ParameterChange& change) { return change.sample > 0; });
  for (auto change = changes.begin(); change != later; ++change) {
    instance.setParameter(change->parameter, change->value);
  }
  changes.erase(changes.begin(), later);
  return changes;
}

std::vector<ChannelLabel> labelsOf(const FileChannels& channels,
                                   const std::vector<std::string>& names) {
  std::vector<ChannelLabel> labels;
  for (const int output : channels.pluginOutput) {
    labels.push_back({output, output < static_cast<int>(names.size()) ? names[output] : ""});
  }
  return labels;
}

// Everything that would make the render fail at its end, checked before it starts.
void checkBeforeRendering(const RenderOptions& options, PluginInstance& instance,
                          const OutputFormat& format, std::int64_t frames) {
  if (instance.outputCount() < 1) throw HostError("the plug-in has no outputs");
  if (!options.saveStatePath.empty() && (instance.effect().flags & effFlagsProgramChunks) == 0) {
    throw HostError("--save-state: the plug-in " + instance.module().path() +
                    " keeps no state block; nothing rendered");
  }
  checkFreeSpace(options.outputPath,
                 uncompressedBytes(format.sndfileFormat, instance.outputCount(), frames));
}

void noteLevels(const RenderResult& result, const std::string& outputPath, std::ostream& notes) {
  const std::int64_t overs = result.levels.totalOvers();
  if (overs > 0 && result.integerFile) {
    notes << "warning: " << counted(overs, "sample") << " clipped in " << outputPath
          << ": its integer format holds nothing above 0 dBFS; lower the level to keep them\n";
  } else if (overs > 0) {
    const char* const them = overs == 1 ? "it" : "them";
    notes << "warning: " << counted(overs, "sample") << " in " << outputPath
          << (overs == 1 ? " is" : " are") << " above 0 dBFS; the floating-point file keeps "
          << them << ", an integer format would clip " << them << "\n";
  }
  if (result.levels.nonFinite() > 0) {
    const std::int64_t count = result.levels.nonFinite();
    notes << "warning: the plug-in's output holds " << counted(count, "sample")
          << (count == 1 ? " that is" : " that are") << " no number (NaN or infinity)\n";
  }
}

}  // namespace

void checkRenderOptions(const RenderOptions& options) {
  if (options.blockSize < 1 || options.blockSize > kMaxBlockSize) {
    throw UsageError("--block must be between 1 and 65536 samples");
  }
  if (!(options.glideMs >= 0.0 && options.glideMs <= kMaxGlideMs)) {
    throw UsageError("--glide must be between 0 and 250 milliseconds");
  }
}

void checkRenderPaths(const RenderOptions& options) {
  const std::vector<std::string> read = {options.inputPath, options.plugin.statePath,
                                         options.automationPath};
  checkWritablePath(options.outputPath, "the output");
  checkNotOverwriting(options.outputPath, "the output", read);
  if (options.saveStatePath.empty()) return;
  checkWritablePath(options.saveStatePath, "--save-state");
  checkNotOverwriting(options.saveStatePath, "--save-state",
                      {options.inputPath, options.automationPath, options.outputPath});
}

std::vector<ParameterChange> resolveAutomation(PluginInstance& instance,
                                               const std::vector<AutomationPoint>& points,
                                               double sampleRate, const std::string& sourceName) {
  std::vector<ParameterChange> changes;
  for (const AutomationPoint& point : points) {
    int index = -1;
    try {
      index = resolveParameter(instance, point.parameter);
    } catch (const HostError& error) {
      throw HostError(sourceName + ":" + std::to_string(point.line) + ": " + error.what());
    }
    changes.push_back({samplePositionOf(point.seconds, sampleRate), index, point.value});
  }
  return changes;
}

RenderResult renderFile(const RenderOptions& options, std::ostream& notes) {
  checkRenderOptions(options);
  checkRenderPaths(options);
  AudioReader reader(options.inputPath);
  const AudioFileInfo input = reader.info();
  const std::vector<AutomationPoint> points = options.automationPath.empty()
                                                  ? std::vector<AutomationPoint>{}
                                                  : loadAutomationCsv(options.automationPath);
  const int glide = glideFrames(options, input.sampleRate);
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, renderConfig(options, input, glide));
  PluginInstance& instance = *plugin.instance;
  configurePlugin(instance, options.plugin, notes);
  std::vector<ParameterChange> changes =
      automationChanges(instance, options, points, input.sampleRate, glide);
  instance.start();

  RenderResult result;
  result.inputChannels = input.channels;
  result.sampleRate = input.sampleRate;
  result.outputChannels = instance.outputCount();
  result.levels = LevelMeter(instance.outputCount());
  const std::vector<std::string> names = outputChannelNames(instance, options.plugin);
  const FileChannels channels =
      fileChannelsFor(options.ambisonic ? std::vector<std::string>{} : names,
                      instance.outputCount(), options.channelOrder);
  result.channels = labelsOf(channels, names);
  const OutputFormat format = makeOutputFormat(
      options.outputPath, options.format, options.sampleType, instance.outputCount(),
      input.sampleRate, channels.positions, options.ambisonic);
  result.integerFile = isIntegerFormat(format.sndfileFormat);
  checkBeforeRendering(options, instance, format, input.frames);
  noteSetup(instance, options, input, changes, notes);
  RenderSchedule schedule(std::move(changes), options.blockSize, glide, input.frames);
  writeCompleteFile(options.outputPath, [&](const std::string& partialPath) {
    AudioWriter writer(partialPath, instance.outputCount(), input.sampleRate, format,
                       options.outputPath);
    result.channelMapWritten = writer.channelMapWritten();
    result.frames = Renderer(instance, reader, writer, schedule, channels, result.levels).run();
    writer.close();
  });
  instance.stop();
  if (!options.saveStatePath.empty()) writeBinaryFile(options.saveStatePath, instance.chunk());
  noteLevels(result, options.outputPath, notes);
  return result;
}
