// spatiola live: a plug-in on a JACK server without a window, for as long as asked.
#include <chrono>
#include <cmath>
#include <numbers>
#include <thread>

#include "host/cli/commands.h"
#include "host/cli/live_control.h"
#include "host/runtime/host_error.h"
#include "host/runtime/interrupt_guard.h"

namespace {

constexpr auto kIdlePeriod = std::chrono::milliseconds(20);
constexpr double kMovesPerSecond = 0.25;  // turns of the benchmark's circle

struct Moves {
  PluginInstance* instance;
  const PluginExtension* extension;
  double sampleRate;
};

// [audio thread] The extension's moves, as automation played back by a host.
void moveEveryBlock(void* context, std::int64_t samplePosition, int /*frames*/) {
  const auto* moves = static_cast<const Moves*>(context);
  const double phase = 2.0 * std::numbers::pi * kMovesPerSecond *
                       static_cast<double>(samplePosition) / moves->sampleRate;
  moves->extension->moveParameters(*moves->instance, phase);
}

void printTiming(const LiveSession& session, std::ostream& out) {
  const double periodUs = 1e6 * session.bufferSize() / session.sampleRate();
  const auto line = [&](const char* what, const CallbackTiming& timing) {
    const TimingSummary summary = timing.summary();
    char text[256];
    std::snprintf(text, sizeof text,
                  "callback %s: median %.1f us (%.3f of the period), 99.9 %% %.1f us (%.3f), "
                  "worst %.1f us (%.3f)\n",
                  what, summary.medianUs, summary.medianUs / periodUs, summary.p999Us,
                  summary.p999Us / periodUs, summary.worstUs, summary.worstUs / periodUs);
    out << text;
  };
  out << "callbacks " << session.engine().timing().summary().callbacks << ", period " << periodUs
      << " us, xruns " << session.xruns() << "\n";
  line("wall time", session.engine().timing());
  line("processor time", session.engine().cpuTiming());
}

// The session's status on standard error when it changes (a new block size, xruns), at most once
// a second so that a struggling machine is not flooded.
class StatusLine {
 public:
  explicit StatusLine(const LiveSession& session) : shown_(session.status()) {}
  void update(const LiveSession& session, std::ostream& notes) {
    const auto now = std::chrono::steady_clock::now();
    if (now - lastShown_ < kStatusPeriod) return;
    std::string status = session.status();
    if (status == shown_) return;
    notes << "spatiola live: " << status << "\n";
    shown_ = std::move(status);
    lastShown_ = now;
  }

 private:
  static constexpr auto kStatusPeriod = std::chrono::seconds(1);
  std::string shown_;
  std::chrono::steady_clock::time_point lastShown_{};
};

// Until the time is up, "quit", an interrupt or the server's end; false for the last.
bool runUntilDone(LiveSession& session, const LiveControl& control, int controlFd, double seconds,
                  std::ostream& notes) {
  LineReader lines(controlFd);
  bool reading = controlFd >= 0;
  bool quit = false;
  StatusLine status(session);
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!quit && !interruptedToQuit() &&
         (seconds <= 0.0 || std::chrono::steady_clock::now() < end)) {
    if (!session.idle(notes)) return false;
    status.update(session, notes);
    if (reading) {
      reading = lines.poll([&](const std::string& line) {
        try {
          quit = quit || !runControlLine(control, line);
        } catch (const HostError& error) {
          notes << "spatiola: " << error.what() << "\n";
        }
      });
    }
    std::this_thread::sleep_for(kIdlePeriod);
  }
  return true;
}

}  // namespace

int runLive(const LiveCommandOptions& options, int controlFd, std::ostream& out,
            std::ostream& notes) {
  quitOnInterrupts();
  LiveSession session(options.audio.live);
  LoadedPlugin plugin =
      loadPlugin(options.plugin.pluginPath,
                 liveHostConfig(session, options.inputs, options.audio.live.playPath));
  PluginInstance& instance = *plugin.instance;
  configurePlugin(instance, options.plugin, notes);
  const PluginExtension* extension = extensionFor(options.plugin, instance);
  Moves moves{&instance, extension, static_cast<double>(session.sampleRate())};
  if (options.moving) {
    if (extension == nullptr) throw HostError("--moving applies to Spatiola only");
    session.setBlockHook(moveEveryBlock, &moves);
  }
  instance.start();
  startLiveAudio(session, instance, options.plugin, options.audio, "spatiola live", out, notes);
  const bool serverAlive =
      runUntilDone(session, {instance, options.plugin, session}, controlFd, options.seconds, notes);
  session.stop();
  instance.stop();
  if (options.timing) printTiming(session, out);
  if (serverAlive) return 0;
  notes << "spatiola: " << serverStoppedMessage(session) << "\n";
  return 1;
}
