// A plug-in running live on a JACK server: the client with one input port per plug-in input and
// one output port per output, the real-time callback, optional file playback and recording of
// automation reports. The UI thread drives it through idle(): port changes after the plug-in's
// channel counts, the server's block size and sample rate handed to the plug-in through its
// dispatcher, and the server's disappearance. [UI thread] unless a member says otherwise.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "host/live/automation_recorder.h"
#include "host/live/file_player.h"
#include "host/live/jack_client.h"
#include "host/live/live_engine.h"
#include "host/live/live_ports.h"
#include "host/runtime/plugin_instance.h"

struct LiveOptions {
  std::string clientName = "spatiola";
  std::string serverName;      // empty: the default server
  std::string connectInputs;   // e.g. "system:capture_%d"
  std::string connectOutputs;  // e.g. "system:playback_%d"
  std::string playPath;        // a file played in a loop into the inputs
  std::string recordPath;      // the automation reports as CSV
};

// The names of a plug-in's outputs beyond what VST 2.x tells (Spatiola: its speakers); empty when
// unknown.
using OutputNamer = std::function<std::vector<std::string>(PluginInstance&)>;

class LiveSession final : private JackEvents {
 public:
  static constexpr int kMinChannelCapacity = 64;

  // Opens the client; throws HostError when no server answers. The plug-in is loaded after it,
  // configured with sampleRate() and bufferSize().
  explicit LiveSession(const LiveOptions& options);
  ~LiveSession() override;
  LiveSession(const LiveSession&) = delete;
  LiveSession& operator=(const LiveSession&) = delete;

  int sampleRate() const { return static_cast<int>(client_.sampleRate()); }
  int bufferSize() const { return static_cast<int>(client_.bufferSize()); }
  std::string clientName() const { return client_.name(); }

  // Registers the ports, prepares playback and recording, starts the audio and wires the ports.
  // The instance is started (effMainsChanged on) and outlives the session's stop().
  void start(PluginInstance& instance, OutputNamer namer, std::ostream& notes);
  // Before start(), for the moves of a benchmark: called on the audio thread before every block.
  void setBlockHook(BlockHook hook, void* context) {
    blockHook_ = hook;
    blockHookContext_ = context;
  }
  // A host-side parameter change, applied by the audio thread at the next block's first sample
  // (and recorded there when recording); throws HostError when the audio thread falls behind.
  void setParameter(std::int32_t parameter, float value);
  // Runs `change` (a state block loaded, counts changed by the host) while the callback leaves
  // the plug-in alone, so that the plug-in's channel counts never change under it.
  void whileSuspended(const std::function<void()>& change);
  // Keeps the session in step; false once the server has stopped (stopReason() says why).
  bool idle(std::ostream& notes);
  // Ends the audio: no callback runs into the plug-in afterwards.
  void stop();

  bool serverStopped() const { return stopped_.load(); }
  std::string stopReason() const;
  std::uint64_t xruns() const { return xruns_.load(std::memory_order_relaxed); }
  // "48000 Hz, 256 frames, 0 xruns"
  std::string status() const;
  const LiveEngine& engine() const { return *engine_; }
  const LivePorts& ports() const { return *ports_; }
  AutomationRecorder* recorder() { return recorder_.get(); }

 private:
  // JackEvents, on JACK's threads.
  void process(jack_nframes_t frames) override;
  void bufferSizeChanged(jack_nframes_t frames) override;
  void sampleRateChanged(jack_nframes_t rate) override;
  void xrun() override;
  void serverStopped(const char* reason) override;

  std::vector<std::string> outputNames(int outputs);
  void followChannels(std::ostream& notes, bool force);
  void followServerSettings();
  void handOver(std::unique_ptr<RtConfig> config, const std::vector<jack_port_t*>& dropped);
  std::unique_ptr<RtConfig> makeConfig(int blockFrames) const;
  // Calls the plug-in's dispatcher with the audio suspended, as a host reconfigures.
  void reconfigure(const std::function<void()>& change);

  LiveOptions options_;
  JackClient client_;
  PluginInstance* instance_ = nullptr;
  OutputNamer namer_;
  BlockHook blockHook_ = nullptr;
  void* blockHookContext_ = nullptr;
  std::unique_ptr<LiveEngine> engine_;
  std::unique_ptr<LivePorts> ports_;
  std::unique_ptr<FilePlayer> player_;
  std::unique_ptr<AutomationRecorder> recorder_;
  std::vector<std::string> namedOutputs_;
  int inputCapacity_ = kMinChannelCapacity;
  int outputCapacity_ = kMinChannelCapacity;
  int pluginBlockFrames_ = 0;
  int pluginSampleRate_ = 0;
  int idleCalls_ = 0;
  bool running_ = false;
  std::atomic<bool> engineReady_{false};
  std::atomic<int> serverBufferSize_{0};
  std::atomic<int> serverSampleRate_{0};
  std::atomic<std::uint64_t> xruns_{0};
  std::atomic<bool> stopped_{false};
  std::array<char, 256> stopReason_{};
};
