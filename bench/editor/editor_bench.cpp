// The editor's two figures, the real plug-in in the host's headless window system: its 50 ms tick
// when nothing changed, and a full refresh and repaint of the dialog with 64 inputs and 64
// speakers.
#include <benchmark/benchmark.h>

#include <memory>

#include "editor/editor_dialog.h"
#include "host/services/host_function_table.h"
#include "host/services/window_table.h"
#include "host/window/backend/headless_backend.h"
#include "host/window/core/window_system.h"
#include "model/counts.h"
#include "platform/host_functions.h"
#include "plugin/host_api.h"
#include "plugin/window_layer.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

namespace {

constexpr int kChannels = 64;

VstIntPtr hostCallback(AEffect*, std::int32_t opcode, std::int32_t index, VstIntPtr, void* ptr,
                       float) {
  if (opcode == kHostExtensionOpcode && index == kHostFunctionLookupIndex) {
    return reinterpret_cast<VstIntPtr>(findHostFunction(static_cast<const char*>(ptr)));
  }
  if (opcode == kHostExtensionOpcode && index == kHostChannelCountIndex) return kChannels;
  return 0;
}

// The editor open at `scale256` on a track of 64 channels, 64 speakers, its first ticks done.
class OpenEditor {
 public:
  explicit OpenEditor(int scale256) : system_(std::make_unique<winsys::HeadlessBackend>(scale256)) {
    winsys::WindowSystem::setCurrent(&system_);
    bindWindowLayer(&findWindowFunction);
    effect_ = VSTPluginMain(&hostCallback);
    setInputCount(plugin(), kChannels);
    setSpeakerCount(plugin(), kChannels);
    frame_ = system_.createFrame("editor", 851, 817, scale256, true);
    effect_->dispatcher(effect_, effEditOpen, 0, 0, frame_, 0.0f);
    for (int tick = 0; tick < 4; ++tick) this->tick();
  }
  ~OpenEditor() {
    effect_->dispatcher(effect_, effEditClose, 0, 0, nullptr, 0.0f);
    effect_->dispatcher(effect_, effClose, 0, 0, nullptr, 0.0f);
    system_.destroy(frame_);
    winsys::WindowSystem::setCurrent(nullptr);
  }
  OpenEditor(const OpenEditor&) = delete;
  OpenEditor& operator=(const OpenEditor&) = delete;

  PannerPlugin& plugin() const { return *static_cast<PannerPlugin*>(effect_->object); }
  winsys::Window& dialog() const { return *system_.find(plugin().host.editorWindow); }
  // The timer's next tick and the paint it asks for.
  void tick() {
    system_.advanceClock(kRefreshIntervalMs);
    system_.paint();
  }

 private:
  winsys::WindowSystem system_;
  AEffect* effect_ = nullptr;
  HWND frame_ = nullptr;
};

void tickUnchanged(benchmark::State& state) {
  OpenEditor editor(static_cast<int>(state.range(0)));
  for (auto _ : state) editor.tick();
}

// Every control read back from the model and every pixel of the dialog drawn again; with range 1
// the room's layers are drawn anew too, as after a move of every speaker and input.
void fullRefreshRepaint(benchmark::State& state) {
  OpenEditor editor(static_cast<int>(state.range(0)));
  const std::uint32_t roomFlags = state.range(1) != 0 ? kChangeSpeakers | kChangeInputs : 0;
  for (auto _ : state) {
    editor.plugin().model.changeFlags.fetch_or(kChangeEditor | kChangeLevels | roomFlags);
    editor.tick();
  }
  const winsys::Window& dialog = editor.dialog();
  state.counters["controls"] = static_cast<double>(dialog.children.size());
  state.counters["pixels"] = dialog.clientWidth() * dialog.clientHeight();
}

}  // namespace

BENCHMARK(tickUnchanged)->Arg(256)->Arg(384)->Unit(benchmark::kMicrosecond);
BENCHMARK(fullRefreshRepaint)
    ->ArgsProduct({{256, 384}, {0, 1}})
    ->ArgNames({"scale", "room"})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
