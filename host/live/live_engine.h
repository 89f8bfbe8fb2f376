// The audio side of a live session: the JACK process callback around a plug-in's
// processDoubleReplacing. Everything it touches is prepared by the UI thread and handed over as
// one immutable RtConfig through an atomic pointer; the callback never allocates, never waits and
// takes no lock but the plug-in's own.
#pragma once

#include <jack/jack.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/live/callback_timing.h"
#include "host/live/report_queue.h"
#include "platform/vst2.h"

class FilePlayer;

// What one configuration of the callback works with. [UI thread] builds it, [audio thread] reads.
struct RtConfig {
  RtConfig(int inputCapacity, int outputCapacity, int blockFrames, int filePlayerChannels);

  std::vector<jack_port_t*> inputPorts;
  std::vector<jack_port_t*> outputPorts;
  int blockFrames;  // the plug-in's block size: longer periods are processed in pieces
  // One buffer per channel the plug-in may ask for; channels without a port read silence.
  std::vector<std::vector<double>> inputs;
  std::vector<std::vector<double>> outputs;
  std::vector<double*> inputPointers;
  std::vector<double*> outputPointers;
  std::vector<float> fileFrames;  // one piece of the file, interleaved
  // [audio thread] the ports' buffers of the current period
  std::vector<float*> inputPortBuffers;
  std::vector<float*> outputPortBuffers;
};

// Called on the audio thread before each piece is processed (the benchmark's moves).
using BlockHook = void (*)(void* context, std::int64_t samplePosition, int frames);
// Called on the audio thread for each queued parameter change, as it is applied at the first
// sample of a block.
using ChangeHook = void (*)(void* context, std::int64_t samplePosition, std::int32_t parameter,
                            float value);

class LiveEngine {
 public:
  // `pluginPath` names the plug-in when it crashes on the audio thread; it outlives the engine.
  LiveEngine(AEffect& effect, const char* pluginPath);

  // [UI thread, before activation]
  void setFilePlayer(FilePlayer* player) { player_ = player; }
  void setBlockHook(BlockHook hook, void* context) {
    hook_ = hook;
    hookContext_ = context;
  }
  void setChangeHook(ChangeHook hook, void* context) {
    changeHook_ = hook;
    changeContext_ = context;
  }

  // [any thread] A parameter change applied by the audio thread before the next block it
  // processes, so that it lands exactly on that block's first sample; false when the queue is
  // full.
  bool queueParameter(std::int32_t parameter, float value) {
    return pending_.push(ParameterChange{parameter, value});
  }

  // [UI thread] Hands the callback a new configuration and frees the previous one once the
  // callback can no longer be using it; false when it may still be (it is then kept, never freed).
  bool exchange(std::unique_ptr<RtConfig> config);
  const RtConfig* config() const { return current_.get(); }
  // [UI thread] While suspended the callback plays silence and leaves the plug-in alone; true
  // once the callback is out of the plug-in.
  bool suspend();
  void resume();

  // [JACK process thread]
  void process(jack_nframes_t frames);

  // [any thread]
  int pluginInputs() const { return pluginInputs_.load(std::memory_order_acquire); }
  int pluginOutputs() const { return pluginOutputs_.load(std::memory_order_acquire); }
  std::int64_t samplesProcessed() const { return position_.load(std::memory_order_acquire); }
  // The first sample of the block that begins after this moment; on the audio thread inside a
  // block, that block's first sample. A change made now takes effect there.
  std::int64_t nextBlockStart() const;
  std::uint64_t skippedBlocks() const { return skipped_.load(std::memory_order_relaxed); }
  std::uint64_t fileUnderruns() const { return underruns_.load(std::memory_order_relaxed); }
  // Each callback's wall time, and its thread's processor time, which other processes' load on
  // the machine does not lengthen.
  const CallbackTiming& timing() const { return timing_; }
  const CallbackTiming& cpuTiming() const { return cpuTiming_; }

 private:
  bool waitUntilOutOfCycle(std::uint64_t cycleSeen) const;
  void processPieces(RtConfig& config, jack_nframes_t frames);
  void applyPending(std::int64_t position);
  void readInputs(RtConfig& config, int channels, int offset, int frames);
  void addFile(RtConfig& config, int channels, int frames);
  void writeOutputs(RtConfig& config, int channels, int offset, int frames);
  static void playSilence(RtConfig& config, jack_nframes_t frames);

  AEffect& effect_;
  const char* pluginPath_;
  FilePlayer* player_ = nullptr;
  BlockHook hook_ = nullptr;
  void* hookContext_ = nullptr;
  ChangeHook changeHook_ = nullptr;
  void* changeContext_ = nullptr;
  struct ParameterChange {
    std::int32_t parameter;
    float value;
  };
  static constexpr std::size_t kPendingChanges = 4096;
  ReportQueue<ParameterChange> pending_{kPendingChanges};
  std::unique_ptr<RtConfig> current_;  // [UI thread] owner of what config_ points at
  std::atomic<RtConfig*> config_{nullptr};
  std::atomic<bool> suspended_{false};
  std::atomic<bool> inCycle_{false};
  std::atomic<std::uint64_t> cycles_{0};
  std::atomic<std::int64_t> position_{0};
  std::atomic<std::int64_t> cycleEnd_{0};
  std::atomic<int> pluginInputs_{0};
  std::atomic<int> pluginOutputs_{0};
  std::atomic<std::uint64_t> skipped_{0};
  std::atomic<std::uint64_t> underruns_{0};
  CallbackTiming timing_;
  CallbackTiming cpuTiming_;
};
