// The audio routine allocates nothing once the counts are stable.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>

#include "engine_fixture.h"

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
#endif

TEST(RealTime, StableCountsMeanNoAllocationInTheBlock) {
#if !SPATIOLA_COUNT_ALLOCATIONS
  GTEST_SKIP() << "allocation counting needs the plain allocator";
#else
  RecordingHost host;
  auto plugin = makeEngineInstance(8);
  Channels in(8, std::vector<double>(512, 0.25));
  Channels out(10, std::vector<double>(512));
  double* ins[8];
  double* outs[10];
  for (int i = 0; i < 8; ++i) ins[i] = in[static_cast<std::size_t>(i)].data();
  for (int s = 0; s < 10; ++s) outs[s] = out[static_cast<std::size_t>(s)].data();
  processDoubleReplacing(&plugin->effect, ins, outs, 512);  // sizes the matrices once
  counting = true;
  for (int block = 0; block < 50; ++block) {
    if (block % 10 == 3) {
      plugin->inputs[block % 8].x = 0.01 * block;  // changing gains ramp without allocating
      markInputsDirty(*plugin, block % 8);
    }
    plugin->inputs[1].mute = block % 7 == 0;
    processDoubleReplacing(&plugin->effect, ins, outs, block % 5 == 0 ? 17 : 512);
  }
  counting = false;
  EXPECT_EQ(allocations.load(), 0);
  destroyEngine(*plugin);
#endif
}
