// Three threads on one instance, as a host drives it: the audio thread processes blocks of random
// sizes, the user-interface thread re-shapes the model and saves and loads its state, an automation
// thread sets parameters. Under ThreadSanitizer any data race fails the run; everywhere the output
// must stay finite, the model consistent, and the instance must still pan afterwards.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <iterator>
#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "host_double.h"
#include "model/counts.h"
#include "model/layouts.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

namespace {

constexpr int kChannels = 64;
constexpr int kLargestBlock = 256;
constexpr int kLeastBlocks = 400;

std::atomic<int> notifications{0};
// Lets the control thread keep pace with the audio thread. Relaxed, so that it orders nothing the
// race detector should judge.
std::atomic<int> audioBlocks{0};

// [any thread] Count changes notify from the thread that made them.
VstIntPtr hostCallback(AEffect*, std::int32_t opcode, std::int32_t index, VstIntPtr, void* ptr,
                       float) {
  if (const auto answer = hostQueryAnswer(opcode, index, ptr, 8)) return *answer;
  notifications.fetch_add(1, std::memory_order_relaxed);
  return 0;
}

// The audio thread's buffers: always wide enough for any count the other threads choose.
struct AudioBuffers {
  std::vector<std::vector<double>> in{kChannels, std::vector<double>(kLargestBlock, 0.5)};
  std::vector<std::vector<double>> out{kChannels, std::vector<double>(kLargestBlock)};
  std::vector<double*> ins, outs;

  AudioBuffers() {
    for (int c = 0; c < kChannels; ++c) {
      ins.push_back(in[static_cast<std::size_t>(c)].data());
      outs.push_back(out[static_cast<std::size_t>(c)].data());
    }
  }
  void run(AEffect* effect, int frames) {
    effect->processDoubleReplacing(effect, ins.data(), outs.data(), frames);
  }
  bool allFinite() const {
    for (const auto& channel : out) {
      for (double s : channel) {
        if (!std::isfinite(s)) return false;
      }
    }
    return true;
  }
};

// [audio thread] Runs until told to stop and at least kLeastBlocks were processed, every ninth
// block empty; answers the count of blocks with non-finite output.
int runAudio(AEffect* effect, const std::atomic<bool>& stop) {
  AudioBuffers buffers;
  std::mt19937 random(11);
  std::uniform_int_distribution<int> blockSize(0, kLargestBlock);
  int nonFinite = 0;
  for (int block = 0; !stop.load() || block < kLeastBlocks; ++block) {
    buffers.run(effect, block % 9 == 0 ? 0 : blockSize(random));
    audioBlocks.fetch_add(1, std::memory_order_relaxed);
    nonFinite += buffers.allFinite() ? 0 : 1;
  }
  return nonFinite;
}

// [UI thread] Saves the state and loads it back, as a host does on undo or project reload.
void roundTripState(AEffect* effect) {
  void* data = nullptr;
  const auto length = dispatch(effect, effGetChunk, 0, 0, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::vector<unsigned char> copy(bytes, bytes + length);
  dispatch(effect, effSetChunk, 0, static_cast<VstIntPtr>(copy.size()), copy.data());
}

// [UI thread] One re-shaping step chosen by `kind`.
void controlStep(AEffect* effect, int kind, std::mt19937& random) {
  PannerPlugin& plugin = pluginOf(effect);
  // The edges of the masks' two words and the limit, between small counts that keep blocks cheap.
  constexpr int kCounts[] = {0, 1, 2, 3, 5, 8, 12, 16, 31, 32, 33, 63, 64};
  const int count = kCounts[std::uniform_int_distribution<std::size_t>(0, 12)(random)];
  if (kind == 0) setInputCount(plugin, count);
  if (kind == 1) setSpeakerCount(plugin, count);
  if (kind == 2) applyLayoutPreset(plugin, std::uniform_int_distribution<int>(0, 10)(random));
  if (kind == 3) roundTripState(effect);
  if (kind == 4) dispatch(effect, effVendorSpecific, effSetSpeakerArrangement, count);
  if (kind == 4) dispatch(effect, effIdle);
  if (kind == 5) dispatch(effect, effMainsChanged);
  if (kind >= 6) {
    effect->setParameter(effect, std::uniform_int_distribution<int>(0, 1200)(random),
                         std::uniform_real_distribution<float>(0.0f, 1.0f)(random));
  }
}

// [UI thread] One step per audio block at most: the changes land between and inside blocks
// instead of piling up while one block is mixed.
void runControl(AEffect* effect) {
  std::mt19937 random(5);
  int seen = audioBlocks.load(std::memory_order_relaxed);
  for (int step = 0; step < 300; ++step) {
    while (audioBlocks.load(std::memory_order_relaxed) == seen) std::this_thread::yield();
    seen = audioBlocks.load(std::memory_order_relaxed);
    controlStep(effect, std::uniform_int_distribution<int>(0, 7)(random), random);
  }
}

// [automation thread] Parameter changes as a host's automation plays them, stray indexes and
// non-finite values included.
void runAutomation(AEffect* effect) {
  std::mt19937 random(13);
  std::uniform_int_distribution<int> index(-2, 1200);
  std::uniform_real_distribution<float> value(0.0f, 1.0f);
  for (int step = 0; step < 10000; ++step) {
    effect->setParameter(effect, index(random), step % 97 == 0 ? std::nanf("") : value(random));
    if (step % 5 == 0) effect->getParameter(effect, index(random));
  }
}

TEST(ThreadStress, AudioControlAndAutomationThreadsShareOneInstance) {
  AEffect* effect = VSTPluginMain(&hostCallback);
  ASSERT_NE(effect, nullptr);
  dispatch(effect, effOpen);
  std::atomic<bool> stop{false};
  int nonFiniteBlocks = 0;
  std::thread audioThread([&] { nonFiniteBlocks = runAudio(effect, stop); });
  std::thread automationThread([&] { runAutomation(effect); });
  runControl(effect);
  automationThread.join();
  stop = true;
  audioThread.join();

  EXPECT_EQ(nonFiniteBlocks, 0);
  EXPECT_GT(notifications.load(), 0);
  PannerPlugin& plugin = pluginOf(effect);
  EXPECT_EQ(effect->numParams, parameterCountFor(plugin.inputCount(), plugin.speakerCount()));
  // Whatever the storm left, one input halfway left in a stereo room sounds on the left speaker.
  setInputCount(plugin, 1);
  applyLayoutPreset(plugin, 1);
  // Unit room, unit trim, the input halfway left, unmuted, unity gain.
  const std::pair<int, float> settle[] = {{0, 0.5f},  {1, 0.5f},  {2, 0.5f},  {3, 0.25f},
                                          {4, 0.25f}, {5, 0.25f}, {6, 0.5f},  {7, 0.5f},
                                          {8, 0.0f},  {9, 0.0f},  {12, 0.0f}, {13, 0.0f}};
  for (const auto& [index, value] : settle) effect->setParameter(effect, index, value);
  AudioBuffers buffers;
  buffers.run(effect, 64);
  buffers.run(effect, 64);
  EXPECT_EQ(effect->numOutputs, 2);
  EXPECT_GT(buffers.out[0][63], 0.0);
  EXPECT_GT(buffers.out[0][63], buffers.out[1][63]);
  dispatch(effect, effClose);
}

}  // namespace
