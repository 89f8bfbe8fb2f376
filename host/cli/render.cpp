#include "host/cli/render.h"

#include <algorithm>

#include "host/cli/audio_file.h"
#include "host/cli/complete_file.h"
#include "host/cli/progress.h"
#include "host/runtime/host_error.h"

namespace {

constexpr int kMaxBlockSize = 65536;

// Moves one segment through the plug-in: the input file's channels into its inputs (missing ones
// silent), its outputs into the interleaved output.
void processSegment(PluginInstance& instance, const double* in, int fileChannels, double* out,
                    int frames) {
  const int used = std::min(fileChannels, instance.inputCount());
  for (int c = 0; c < instance.inputCount(); ++c) {
    double* buffer = instance.inputBuffer(c);
    for (int f = 0; f < frames; ++f) buffer[f] = c < used ? in[f * fileChannels + c] : 0.0;
  }
  instance.process(frames);
  const int outputs = instance.outputCount();
  for (int c = 0; c < outputs; ++c) {
    const double* buffer = instance.outputBuffer(c);
    for (int f = 0; f < frames; ++f) out[f * outputs + c] = buffer[f];
  }
}

class Renderer {
 public:
  Renderer(PluginInstance& instance, AudioReader& reader, AudioWriter& writer,
           std::vector<ResolvedChange> changes, LevelMeter& levels)
      : instance_(instance),
        reader_(reader),
        writer_(writer),
        changes_(std::move(changes)),
        levels_(levels),
        fileChannels_(reader.info().channels),
        outputChannels_(instance.outputCount()) {
    const auto block = static_cast<std::size_t>(instance.config().blockSize);
    in_.resize(block * static_cast<std::size_t>(fileChannels_));
    out_.resize(block * static_cast<std::size_t>(std::max(outputChannels_, 1)));
  }

  std::int64_t run() {
    ProgressBar progress("rendering", reader_.info().frames);
    std::int64_t position = 0;
    for (;;) {
      const auto frames = static_cast<int>(reader_.read(in_.data(), instance_.config().blockSize));
      if (frames <= 0) break;
      renderBlock(position, frames);
      position += frames;
      progress.update(position);
    }
    progress.finish();
    return position;
  }

 private:
  void renderBlock(std::int64_t position, int frames) {
    int offset = 0;
    while (offset < frames) {
      applyChangesUpTo(position + offset);
      int end = frames;
      if (next_ < changes_.size()) {
        end = static_cast<int>(
            std::clamp<std::int64_t>(changes_[next_].sample - position, offset + 1, frames));
      }
      renderSegment(position + offset, offset, end - offset);
      offset = end;
    }
  }

  void applyChangesUpTo(std::int64_t sample) {
    for (; next_ < changes_.size() && changes_[next_].sample <= sample; ++next_) {
      instance_.setParameter(changes_[next_].parameter, changes_[next_].value);
    }
  }

  void renderSegment(std::int64_t sample, int offset, int frames) {
    if (instance_.outputCount() != outputChannels_) {
      throw HostError("the plug-in changed its number of outputs during the render");
    }
    instance_.setSamplePosition(sample);
    const double* in = in_.data() + static_cast<std::size_t>(offset) * fileChannels_;
    processSegment(instance_, in, fileChannels_, out_.data(), frames);
    writer_.write(out_.data(), frames);
    levels_.add(out_.data(), frames);
  }

  PluginInstance& instance_;
  AudioReader& reader_;
  AudioWriter& writer_;
  std::vector<ResolvedChange> changes_;
  LevelMeter& levels_;
  int fileChannels_;
  int outputChannels_;
  std::size_t next_ = 0;
  std::vector<double> in_;
  std::vector<double> out_;
};

void checkOptions(const RenderOptions& options) {
  if (options.blockSize < 1 || options.blockSize > kMaxBlockSize) {
    throw HostError("--block must be between 1 and 65536 samples");
  }
}

void noteChannelMismatch(const PluginInstance& instance, int fileChannels, std::ostream& notes) {
  if (fileChannels > instance.inputCount()) {
    notes << "note: the plug-in has " << instance.inputCount() << " inputs; channels "
          << instance.inputCount() + 1 << ".." << fileChannels << " of the input are not used\n";
  } else if (fileChannels < instance.inputCount()) {
    notes << "note: the plug-in has " << instance.inputCount() << " inputs; inputs "
          << fileChannels + 1 << ".." << instance.inputCount() << " receive silence\n";
  }
}

OutputFormat outputFormatFor(const RenderOptions& options, PluginInstance& instance, int sampleRate,
                             std::vector<std::string>& names) {
  names = outputChannelNames(instance, options.plugin);
  return makeOutputFormat(options.outputPath, options.format, options.sampleType,
                          instance.outputCount(), sampleRate, channelMapOfSpeakers(names),
                          options.ambisonic);
}

}  // namespace

std::vector<ResolvedChange> resolveAutomation(PluginInstance& instance,
                                              const std::vector<AutomationPoint>& points,
                                              double sampleRate) {
  std::vector<ResolvedChange> changes;
  for (const AutomationPoint& point : points) {
    int index = -1;
    try {
      index = resolveParameter(instance, point.parameter);
    } catch (const HostError& error) {
      throw HostError("automation line " + std::to_string(point.line) + ": " + error.what());
    }
    changes.push_back({samplePositionOf(point.seconds, sampleRate), index, point.value});
  }
  return changes;
}

RenderResult renderFile(const RenderOptions& options, std::ostream& notes) {
  checkOptions(options);
  AudioReader reader(options.inputPath);
  const std::vector<AutomationPoint> points = options.automationPath.empty()
                                                  ? std::vector<AutomationPoint>{}
                                                  : loadAutomationCsv(options.automationPath);
  HostConfig config;
  config.sampleRate = reader.info().sampleRate;
  config.blockSize = options.blockSize;
  config.trackChannels = reader.info().channels;
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, config);
  PluginInstance& instance = *plugin.instance;
  configurePlugin(instance, options.plugin);
  auto changes = resolveAutomation(instance, points, config.sampleRate);
  if (!changes.empty() && changes.back().sample >= reader.info().frames) {
    notes << "note: automation after the end of the input (" << reader.info().frames
          << " samples) is not applied\n";
  }
  instance.start();
  noteChannelMismatch(instance, reader.info().channels, notes);
  if (instance.outputCount() < 1) throw HostError("the plug-in has no outputs");

  RenderResult result;
  result.inputChannels = reader.info().channels;
  result.sampleRate = reader.info().sampleRate;
  result.outputChannels = instance.outputCount();
  result.levels = LevelMeter(instance.outputCount());
  const OutputFormat format =
      outputFormatFor(options, instance, result.sampleRate, result.channelNames);
  writeCompleteFile(options.outputPath, [&](const std::string& partialPath) {
    AudioWriter writer(partialPath, instance.outputCount(), result.sampleRate, format);
    result.channelMapWritten = writer.channelMapWritten();
    result.frames = Renderer(instance, reader, writer, std::move(changes), result.levels).run();
    writer.close();
  });
  instance.stop();
  if (!options.saveStatePath.empty()) writeBinaryFile(options.saveStatePath, instance.chunk());
  return result;
}
