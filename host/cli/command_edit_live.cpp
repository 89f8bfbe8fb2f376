// spatiola edit --jack: the editor in front, the plug-in running live on JACK behind it.
#include "host/cli/commands.h"
#include "host/runtime/host_error.h"
#include "host/runtime/interrupt_guard.h"
#include "host/window/core/window_system.h"

namespace {

std::string xrunStatus(std::uint64_t xruns) {
  return std::to_string(xruns) + (xruns == 1 ? " xrun" : " xruns");
}

}  // namespace

int runEditLive(const EditOptions& options, std::ostream& out, std::ostream& notes) {
  quitOnInterrupts();
  LiveSession session(options.audio.live);
  bool stopSaid = false;
  EditCompanion companion;
  companion.configure = [&](HostConfig& config) {
    std::ostream* callLog = config.callLog;
    config = liveHostConfig(session, config.trackChannels, options.audio.live.playPath);
    config.callLog = callLog;
  };
  companion.start = [&](PluginInstance& instance) {
    startLiveAudio(session, instance, options.plugin, options.audio, "spatiola edit", out, notes);
  };
  // The editor stays open when the server goes: the setup is still worth saving.
  companion.idle = [&]() -> std::string {
    if (interruptedToQuit()) {
      // A script stops where it is; a window closes as if the user closed it.
      if (options.headless) throw HostError("interrupted");
      winsys::WindowSystem::current()->requestQuit();
    }
    if (session.idle(notes)) return xrunStatus(session.xruns());
    if (!stopSaid) notes << "spatiola: " << serverStoppedMessage(session) << "\n";
    stopSaid = true;
    return "the JACK server stopped";
  };
  companion.stop = [&](PluginInstance& /*instance*/) { session.stop(); };
  companion.setParameter = [&](std::int32_t parameter, float value) {
    session.setParameter(parameter, value);
  };
  companion.realTime = true;
  const int status = runEdit(options, out, notes, companion);
  if (!session.serverStopped()) return status;
  if (!stopSaid) notes << "spatiola: " << serverStoppedMessage(session) << "\n";
  return 1;
}
