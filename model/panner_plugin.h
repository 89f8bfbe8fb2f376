// The instance: host-facing fields first (the host sees `effect`), then the model, then the
// working state of the engine and the views.
//
// Threads: the audio thread takes modelMutex once per block for bookkeeping and the gain law; every
// writer of a field the audio routine reads (inputs, speakers, globals, dirtyInputs, fader offsets,
// the matrices' sizes) holds modelMutex too. Fields written by one thread and read by another
// without the lock are atomic.
#pragma once

#include <pthread.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "model/channels.h"
#include "model/growable_array.h"
#include "platform/vst2.h"
#include "platform/win32_types.h"

class DAUB_IBitmap;
struct MixEngine;

struct PannerPlugin {
  PannerPlugin();
  ~PannerPlugin();
  PannerPlugin(const PannerPlugin&) = delete;
  PannerPlugin& operator=(const PannerPlugin&) = delete;

  int inputCount() const { return inputs.size(); }
  int speakerCount() const { return speakers.size(); }

  // --- Host-facing ------------------------------------------------------------------------------
  HWND editorWindow = nullptr;
  AEffect effect{};
  ERect editorRect{};
  pthread_mutex_t modelMutex;  // recursive, priority inheritance

  // --- Model ------------------------------------------------------------------------------------
  GrowableArray<InputChannel> inputs;
  GrowableArray<Speaker> speakers;
  double spaceScaleX = 1.0;
  double spaceScaleY = 1.0;
  double spaceScaleZ = 1.0;
  double centerTrim = 1.0;
  std::uint32_t optionFlags = kOptionDefaults;
  std::int32_t layoutPreset = 0;  // -1 when there are no speakers, 0 after a custom count
  std::int32_t userSpeakerCount = 0;
  std::uint8_t lockInputs = 0;
  double zoom = 0.48;
  std::int32_t inputFaderOffset = 0;
  std::int32_t speakerFaderOffset = 0;
  std::atomic<double> inputPeaks[kMeterSlots] = {};
  std::atomic<double> speakerPeaks[kMeterSlots] = {};
  GrowableArray<double> targetGains;  // [input][speaker], row-major, gainCols per row
  GrowableArray<double> appliedGains;
  GrowableArray<double> gainSteps;
  std::int32_t gainRows = -1;  // -1: the engine must re-size before the next block
  std::int32_t gainCols = -1;
  std::uint64_t dirtyInputs = ~std::uint64_t{0};
  std::atomic<std::uint32_t> changeFlags{0};

  // --- Host channel-count changes and state loading ----------------------------------------------
  // 0 when no change is pending; else bits 0-7 old input count, 8-15 old speaker count, bit 16 set
  // when the editor started the change.
  std::atomic<std::uint32_t> pendingArrangement{0};
  std::atomic<bool> stateLoaded{false};
  std::atomic<bool> arrangementApplied{false};
  std::int32_t groupKnobModes[3] = {0, 6, 7};
  // The last block handed out by effGetChunk: kept per instance so that two instances saving at
  // the same time never share a buffer. Valid until this instance's next effGetChunk.
  GrowableArray<unsigned char> stateChunkBuffer;

  // --- Engine -----------------------------------------------------------------------------------
  MixEngine* mixEngine = nullptr;  // owned by the engine: kernels for this processor, packed gains

  // --- Editor and views (UI thread) --------------------------------------------------------------
  DAUB_IBitmap* viewFront = nullptr;
  DAUB_IBitmap* viewBack = nullptr;
  DAUB_IBitmap* namesBitmap = nullptr;
  std::int32_t dragInput = -1;
  std::int32_t dragSpeaker = -1;
  std::uint8_t bandActive = 0;
  std::int32_t bandRect[4] = {-1, -1, -1, -1};
  std::int32_t viewScale = 256;
  std::int32_t inlineScale = 256;
  std::atomic<std::uint8_t> inlineRedraw{0};
  std::int32_t grabOffsetX = 0;
  std::int32_t grabOffsetY = 0;
  std::int32_t lastMouseX = 0;
  std::int32_t lastMouseY = 0;
  std::int32_t dragMoves = 0;

  bool mutexReady = false;  // modelMutex was created; false only when the system refused it
};
static_assert(std::is_standard_layout_v<PannerPlugin>);
static_assert(offsetof(PannerPlugin, editorWindow) == 0);

// Holds modelMutex for a scope. Recursive: safe to nest.
class ModelLock {
 public:
  explicit ModelLock(PannerPlugin& plugin) : mutex_(&plugin.modelMutex) {
    pthread_mutex_lock(mutex_);
  }
  ~ModelLock() { pthread_mutex_unlock(mutex_); }
  ModelLock(const ModelLock&) = delete;
  ModelLock& operator=(const ModelLock&) = delete;

 private:
  pthread_mutex_t* mutex_;
};
