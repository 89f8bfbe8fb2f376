#include "host/cli/live_audio.h"

#include "host/cli/audio_file.h"

HostConfig liveHostConfig(const LiveSession& session, int trackChannels,
                          const std::string& playPath) {
  HostConfig config;
  config.sampleRate = session.sampleRate();
  config.blockSize = session.bufferSize();
  config.trackChannels = trackChannels > 0  ? trackChannels
                         : playPath.empty() ? 2
                                            : AudioReader(playPath).info().channels;
  config.processLevel = 2;  // real time
  return config;
}

void startLiveAudio(LiveSession& session, PluginInstance& instance, const PluginOptions& plugin,
                    const LiveAudioOptions& options, const char* command, std::ostream& out,
                    std::ostream& notes) {
  if (!options.startStatePath.empty()) writeBinaryFile(options.startStatePath, instance.chunk());
  const PluginExtension* extension = extensionFor(plugin, instance);
  session.start(
      instance,
      [extension](PluginInstance& i) {
        return extension != nullptr ? extension->outputNames(i) : std::vector<std::string>{};
      },
      notes);
  out << command << ": JACK client " << session.clientName() << ", " << session.status() << "\n"
      << std::flush;
}

std::string serverStoppedMessage(const LiveSession& session) {
  return "the JACK server stopped (" + session.stopReason() + "); the audio has ended";
}
