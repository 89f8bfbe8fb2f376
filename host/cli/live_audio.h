// What `spatiola live` and `spatiola edit --jack` share: the settings a plug-in running on JACK
// is loaded with and the start of its audio. [UI thread]
#pragma once

#include <ostream>
#include <string>

#include "host/cli/plugin_setup.h"
#include "host/live/live_session.h"

struct LiveAudioOptions {
  LiveOptions live;
  std::string startStatePath;  // the state block as playback starts
};

// The server's rate and period, real-time processing, and `trackChannels` channels (0: the
// played file's, else 2).
HostConfig liveHostConfig(const LiveSession& session, int trackChannels,
                          const std::string& playPath);

// Saves the start state when asked, starts the audio on the started `instance` and says so on
// `out` ("COMMAND: JACK client NAME, 48000 Hz, 256 frames, 0 xruns").
void startLiveAudio(LiveSession& session, PluginInstance& instance, const PluginOptions& plugin,
                    const LiveAudioOptions& options, const char* command, std::ostream& out,
                    std::ostream& notes);

// "the JACK server stopped (REASON); the audio has ended"
std::string serverStoppedMessage(const LiveSession& session);
