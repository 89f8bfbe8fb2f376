// The audio routine allocates nothing once the counts are stable: not for ramps, mute and solo,
// blocks of any length including none; only the block after a count change may re-size.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>

#include "engine_fixture.h"
#include "model/parameters.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SPATIOLA_COUNT_ALLOCATIONS 0  // the sanitizers own malloc
#else
#define SPATIOLA_COUNT_ALLOCATIONS 1
#endif

#if SPATIOLA_COUNT_ALLOCATIONS
namespace {
std::atomic<bool> counting{false};
std::atomic<int> allocations{0};
}  // namespace

extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* pointer, std::size_t size);
extern "C" void* __libc_memalign(std::size_t alignment, std::size_t size);

// Every heap allocation of the process (operator new included) passes here.
extern "C" void* malloc(std::size_t size) {
  if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1);
  return __libc_malloc(size);
}
extern "C" void* calloc(std::size_t count, std::size_t size) {
  if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1);
  return __libc_calloc(count, size);
}
extern "C" void* realloc(void* pointer, std::size_t size) {
  if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1);
  return __libc_realloc(pointer, size);
}
// Over-aligned operator new comes through here.
extern "C" void* aligned_alloc(std::size_t alignment, std::size_t size) {
  if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1);
  return __libc_memalign(alignment, size);
}
extern "C" int posix_memalign(void** pointer, std::size_t alignment, std::size_t size) {
  if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1);
  *pointer = __libc_memalign(alignment, size);
  return *pointer != nullptr ? 0 : 12;  // ENOMEM
}

namespace {

// Eight inputs into ten outputs, with blocks of the given lengths; counts only what is asked.
class Blocks {
 public:
  Blocks()
      : plugin_(makeEngineInstance(8)),
        in_(8, std::vector<double>(512, 0.25)),
        out_(64, std::vector<double>(512)) {
    for (int i = 0; i < 8; ++i) ins_[i] = in_[static_cast<std::size_t>(i)].data();
    for (int s = 0; s < 64; ++s) outs_[s] = out_[static_cast<std::size_t>(s)].data();
    run(512);  // sizes the matrices once
  }
  ~Blocks() { destroyEngine(*plugin_); }
  PannerPlugin& plugin() { return *plugin_; }
  void run(int frames) { processDoubleReplacing(&plugin_->host.effect, ins_, outs_, frames); }
  int countedRun(int frames) {
    allocations = 0;
    counting = true;
    run(frames);
    counting = false;
    return allocations.load();
  }

 private:
  std::unique_ptr<PannerPlugin> plugin_;
  Channels in_;
  Channels out_;
  double* ins_[8];
  double* outs_[64];
};

void ramp(PannerPlugin& plugin, int block) {
  plugin.model.inputs[0].x = 0.1 * (block % 8) - 0.4;
  markInputsDirty(plugin, 0);
}

// Blocks of every length after each change, once the block after a count change has re-sized.
TEST(RealTime, NoAllocationWhileTheCountsStayOnlyInTheBlockAfterTheyChange) {
  const struct {
    const char* name;
    std::function<void(PannerPlugin&, int block)> change;  // made before each block
  } cases[] = {
      {"position ramps",
       [](PannerPlugin& p, int b) {
         p.model.inputs[b % 8].y = 0.05 * b - 0.5;
         markInputsDirty(p, b % 8);
       }},
      {"all gains glide",
       [](PannerPlugin& p, int b) {
         for (InputChannel& input : p.model.inputs) input.gain = (b % 3) * 0.5;
         markInputsDirty(p, -1);
       }},
      {"mute and solo",
       [](PannerPlugin& p, int b) {
         p.model.inputs[b % 8].mute = b % 2;
         p.model.inputs[(b + 3) % 8].solo = b % 3 == 0;
         p.model.speakers[(b + 5) % 8].solo = b % 4 == 0;
       }},
      {"parameters from the host and the meter strip",
       [](PannerPlugin& p, int b) {
         setParameterSlot(&p.host.effect, 4 + 10 * (b % 8) + 1, 0.1f * static_cast<float>(b % 10));
         setParameterSlot(&p.host.effect, 0, 0.3f + 0.01f * static_cast<float>(b));
         p.editor.inputFaderOffset = b % 3;
         p.editor.speakerFaderOffset = b % 2;
       }},
      // Count changes before the first block only; then the input moves.
      {"more speakers",
       [](PannerPlugin& p, int b) { b == 0 ? setSpeakerCount(p, 40) : ramp(p, b); }},
      {"fewer inputs", [](PannerPlugin& p, int b) { b == 0 ? setInputCount(p, 3) : ramp(p, b); }},
      {"layout", [](PannerPlugin& p, int b) { b == 0 ? applyLayoutPreset(p, 7) : ramp(p, b); }},
      {"meter reset re-sizes",
       [](PannerPlugin& p, int b) { b == 0 ? void(p.model.gainRows = -1) : ramp(p, b); }},
  };
  const int lengths[] = {512, 0, 1, 17, 0, 333};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    RecordingHost host;
    Blocks blocks;
    c.change(blocks.plugin(), 0);
    blocks.run(64);  // may re-size the matrices
    int allocated = 0;
    for (int b = 1; b < 24; ++b) {
      c.change(blocks.plugin(), b);
      allocated += blocks.countedRun(lengths[b % 6]);
    }
    EXPECT_EQ(allocated, 0);
  }
}

}  // namespace
#else
TEST(RealTime, NeedsThePlainAllocator) {
  GTEST_SKIP() << "allocation counting needs the plain allocator";
}
#endif
