// The instance, its fields grouped by owner; each group says which thread writes it and under
// what. `host` comes first: the host and the dispatcher find editorWindow at the object's start.
//
// Threads: the host's audio thread runs the audio routine, its UI thread the dispatcher, the editor
// and the views; setParameter comes from either. The audio thread takes modelMutex once per block
// for bookkeeping and the gain law, then mixes outside it with what it captured and its own state.
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

// Host-facing. [UI thread] except where a field says otherwise.
struct HostState {
  HWND editorWindow = nullptr;  // the open editor dialog
  // Handed to the host. numParams is written under modelMutex; numInputs and numOutputs by the
  // audio thread under it.
  AEffect effect{};
  ERect editorRect{};
  pthread_mutex_t modelMutex;  // recursive, priority inheritance
  bool mutexReady = false;     // modelMutex was created; false only when the system refused it
  // [any thread, atomic] 0 when no channel-count change is pending; else bits 0-7 old input
  // count, 8-15 old speaker count, bit 16 set when the editor started the change.
  std::atomic<std::uint32_t> pendingArrangement{0};
  std::atomic<bool> stateLoaded{false};
  std::atomic<bool> arrangementApplied{false};
  // The last block handed out by effGetChunk: kept per instance so that two instances saving at
  // the same time never share a buffer. Valid until this instance's next effGetChunk.
  GrowableArray<unsigned char> stateChunkBuffer;
};

// The model. [any thread, under modelMutex] every write; the audio thread reads it under the lock.
struct ModelState {
  GrowableArray<InputChannel> inputs;
  GrowableArray<Speaker> speakers;
  double spaceScaleX = 1.0;
  double spaceScaleY = 1.0;
  double spaceScaleZ = 1.0;
  double centerTrim = 1.0;
  std::uint32_t optionFlags = kOptionDefaults;
  std::int32_t layoutPreset = 0;  // -1 when there are no speakers, 0 after a custom count
  std::int32_t userSpeakerCount = 0;
  std::int32_t gainRows = -1;  // the mix's matrices' size; -1 asks the audio thread to re-size
  std::int32_t gainCols = -1;
  std::uint64_t dirtyInputs = ~std::uint64_t{0};  // rows the next block recomputes
  std::atomic<std::uint32_t> changeFlags{0};      // [any thread, atomic] taken by the editor
};

// The mix. [audio thread] only, created and freed with the instance: the gain law fills
// targetGains under modelMutex (it reads the model), the mix reads and writes the rest outside it.
// Only the audio thread re-sizes the matrices.
struct MixState {
  GrowableArray<double> targetGains;  // [input][speaker], row-major, gainCols per row
  GrowableArray<double> appliedGains;
  GrowableArray<double> gainSteps;
  MixEngine* mixEngine = nullptr;  // kernels for this processor, packed gains
  // [audio thread raises, UI thread lets fall or clears; relaxed atomics] The meters of the 16
  // rows the editor's strips show.
  std::atomic<double> inputPeaks[kMeterSlots] = {};
  std::atomic<double> speakerPeaks[kMeterSlots] = {};
};

// The space view and the inline view. [UI thread]
struct ViewState {
  double zoom = 0.48;  // saved with the state; written under modelMutex
  DAUB_IBitmap* viewFront = nullptr;
  DAUB_IBitmap* viewBack = nullptr;
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
};

// The editor dialog. [UI thread]
struct EditorState {
  // First model index in row 0 of each strip; written under modelMutex, read by the audio thread
  // under it for the meters.
  std::int32_t inputFaderOffset = 0;
  std::int32_t speakerFaderOffset = 0;
  std::uint8_t lockInputs = 0;
  std::int32_t groupKnobModes[3] = {0, 6, 7};  // saved with the state
  // Bit t: the typed edit of timer t waits to apply, so a refresh keeps the user's text in it.
  std::uint8_t typingEdits = 0;
  DAUB_IBitmap* namesBitmap = nullptr;
};

struct PannerPlugin {
  PannerPlugin();
  ~PannerPlugin();
  PannerPlugin(const PannerPlugin&) = delete;
  PannerPlugin& operator=(const PannerPlugin&) = delete;

  int inputCount() const { return model.inputs.size(); }
  int speakerCount() const { return model.speakers.size(); }

  HostState host;
  ModelState model;
  MixState mix;
  ViewState view;
  EditorState editor;
};
static_assert(std::is_standard_layout_v<PannerPlugin>);
static_assert(offsetof(PannerPlugin, host.editorWindow) == 0);

// Holds modelMutex for a scope. Recursive: safe to nest.
class ModelLock {
 public:
  explicit ModelLock(PannerPlugin& plugin) : mutex_(&plugin.host.modelMutex) {
    pthread_mutex_lock(mutex_);
  }
  ~ModelLock() { pthread_mutex_unlock(mutex_); }
  ModelLock(const ModelLock&) = delete;
  ModelLock& operator=(const ModelLock&) = delete;

 private:
  pthread_mutex_t* mutex_;
};
