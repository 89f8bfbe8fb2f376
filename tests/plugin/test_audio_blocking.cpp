// The audio thread waits for nothing but modelMutex, and a count change holds that lock only for
// the model update: while the host is being told of the change, a block can run to its end.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <semaphore.h>

#include <functional>
#include <thread>

#include "host_double.h"
#include "model/counts.h"
#include "model/layouts.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SPATIOLA_WATCH_WAITS 0  // the sanitizers own the thread library's entry points
#else
#define SPATIOLA_WATCH_WAITS 1
#endif

namespace {

// What the current thread waited on; only the probe's audio thread looks at its own.
struct WaitLog {
  int mutexLocks = 0;
  const pthread_mutex_t* lastMutex = nullptr;
  int otherWaits = 0;  // condition variables and semaphores
};
thread_local WaitLog waits;

}  // namespace

#if SPATIOLA_WATCH_WAITS
template <typename Function>
Function nextDefinition(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// Every blocking entry point of the thread library, counted per thread.
extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) {
  static auto real = nextDefinition<int (*)(pthread_mutex_t*)>("pthread_mutex_lock");
  ++waits.mutexLocks;
  waits.lastMutex = mutex;
  return real(mutex);
}
extern "C" int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  static auto real =
      nextDefinition<int (*)(pthread_cond_t*, pthread_mutex_t*)>("pthread_cond_wait");
  ++waits.otherWaits;
  return real(condition, mutex);
}
extern "C" int sem_wait(sem_t* semaphore) {
  static auto real = nextDefinition<int (*)(sem_t*)>("sem_wait");
  ++waits.otherWaits;
  return real(semaphore);
}
#endif

namespace {

// What an audio block started from inside a host notification found.
struct Probe {
  bool ran = false;
  bool lockWasFree = false;
  WaitLog waited;
  int gainRowsBefore = 0;  // the count change leaves the gain law to the block
  int gainRowsAfter = 0;
  int gainColsAfter = 0;
};

AEffect* probedEffect = nullptr;
Probe probe;

// [audio thread, started by the probe] One block with fresh counters.
void probeBlock(PannerPlugin& plugin) {
  static double in[64][64] = {};
  static double out[64][64] = {};
  double* ins[64];
  double* outs[64];
  for (int c = 0; c < 64; ++c) {
    ins[c] = in[c];
    outs[c] = out[c];
  }
  probe.lockWasFree = pthread_mutex_trylock(&plugin.host.modelMutex) == 0;
  if (probe.lockWasFree) pthread_mutex_unlock(&plugin.host.modelMutex);
  probe.gainRowsBefore = plugin.model.gainRows;
  waits = WaitLog{};
  plugin.host.effect.processDoubleReplacing(&plugin.host.effect, ins, outs, 64);
  probe.waited = waits;
  probe.gainRowsAfter = plugin.model.gainRows;
  probe.gainColsAfter = plugin.model.gainCols;
}

// [UI thread, inside a notification] Another thread processes a block while the host is told.
void runProbe() {
  if (probedEffect == nullptr || probe.ran) return;
  probe.ran = true;
  std::thread audio([] { probeBlock(pluginOf(probedEffect)); });
  audio.join();
}

VstIntPtr hostCallback(AEffect*, std::int32_t opcode, std::int32_t index, VstIntPtr, void* ptr,
                       float) {
  if (const auto answer = hostQueryAnswer(opcode, index, ptr, 8)) return *answer;
  runProbe();
  return 0;
}

struct CountChangeCase {
  const char* name;
  int startPreset;  // laid out before the change; 0 keeps the default layout
  std::function<void(PannerPlugin&, AEffect*)> change;
  int inputs;
  int speakers;
};

void hostChannelCount(PannerPlugin&, AEffect* effect) {
  dispatch(effect, effVendorSpecific, effSetSpeakerArrangement, 8);
  dispatch(effect, effIdle);
}

TEST(AudioBlocking, ABlockCompletesWhileTheHostIsToldOfACountChange) {
  const CountChangeCase cases[] = {
      {"more inputs", 0, [](PannerPlugin& p, AEffect*) { setInputCount(p, 12); }, 12, 8},
      {"fewer speakers", 0, [](PannerPlugin& p, AEffect*) { setSpeakerCount(p, 5); }, 8, 5},
      {"layout preset", 0, [](PannerPlugin& p, AEffect*) { applyLayoutPreset(p, 7); }, 8, 10},
      {"host channel count", 1, &hostChannelCount, 8, 8},
  };
  for (const CountChangeCase& c : cases) {
    SCOPED_TRACE(c.name);
    AEffect* effect = VSTPluginMain(&hostCallback);
    ASSERT_NE(effect, nullptr);
    PannerPlugin& plugin = pluginOf(effect);
    if (c.startPreset != 0) applyLayoutPreset(plugin, c.startPreset);
    probe = Probe{};
    probedEffect = effect;
    c.change(plugin, effect);
    probedEffect = nullptr;
    EXPECT_TRUE(probe.ran);
    EXPECT_TRUE(probe.lockWasFree);
    // The block itself did the re-sizing and gain law, under its own single lock.
    EXPECT_EQ(probe.gainRowsBefore, -1);
    EXPECT_EQ(probe.gainRowsAfter, c.inputs);
    EXPECT_EQ(probe.gainColsAfter, c.speakers);
#if SPATIOLA_WATCH_WAITS
    EXPECT_EQ(probe.waited.mutexLocks, 1);
    EXPECT_EQ(probe.waited.lastMutex, &plugin.host.modelMutex);
    EXPECT_EQ(probe.waited.otherWaits, 0);
#endif
    dispatch(effect, effClose);
  }
}

}  // namespace
