// Three threads on one instance, as a host drives it: the audio thread processes blocks of random
// sizes, the user-interface thread re-shapes the model and saves and loads its state, an automation
// thread sets parameters. Under ThreadSanitizer any data race fails the run; everywhere the output
// must stay finite, the model consistent, and the instance must still pan afterwards.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <iterator>
#include <random>
#include <thread>
#include <vector>

#include "host_double.h"
#include "model/counts.h"
#include "model/field_table.h"
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

// The audio thread's buffers: always wide enough for any count the other threads choose, and 0.5
// on every input.
struct AudioBuffers {
  std::vector<double> in = std::vector<double>(kChannels * kLargestBlock, 0.5);
  std::vector<double> out = std::vector<double>(kChannels * kLargestBlock, 0.0);
  std::vector<double*> ins, outs;

  AudioBuffers() {
    for (int c = 0; c < kChannels; ++c) {
      ins.push_back(&in[static_cast<std::size_t>(c * kLargestBlock)]);
      outs.push_back(&out[static_cast<std::size_t>(c * kLargestBlock)]);
    }
  }
  void run(AEffect* effect, int frames) {
    effect->processDoubleReplacing(effect, ins.data(), outs.data(), frames);
  }
  bool allFinite() const {
    return std::all_of(out.begin(), out.end(), [](double s) { return std::isfinite(s); });
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

// [UI thread] Saves one state and loads it into `to`, as a host does on undo or project reload.
void copyState(AEffect* from, AEffect* to) {
  void* data = nullptr;
  const auto length = dispatch(from, effGetChunk, 0, 0, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::vector<unsigned char> copy(bytes, bytes + length);
  dispatch(to, effSetChunk, 0, static_cast<VstIntPtr>(copy.size()), copy.data());
}

// [test thread] The second of two blocks of 64 frames: the gains have settled.
std::vector<double> settledBlock(AEffect* effect) {
  AudioBuffers buffers;
  buffers.run(effect, 64);
  buffers.run(effect, 64);
  return buffers.out;
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
  if (kind == 3) copyState(effect, effect);
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
// non-finite values included, and the reads a host's parameter list makes.
void runAutomation(AEffect* effect) {
  std::mt19937 random(13);
  std::uniform_int_distribution<int> index(-2, 1200);
  std::uniform_real_distribution<float> value(0.0f, 1.0f);
  char text[256];
  for (int step = 0; step < 10000; ++step) {
    effect->setParameter(effect, index(random), step % 97 == 0 ? std::nanf("") : value(random));
    if (step % 5 == 0) effect->getParameter(effect, index(random));
    if (step % 5 == 1) dispatch(effect, effGetParamName, index(random), 0, text);
    if (step % 5 == 2) dispatch(effect, effGetParamDisplay, index(random), 0, text);
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
  // Whatever the storm left, a fresh instance's state makes it sound as the fresh one does.
  AEffect* fresh = VSTPluginMain(&hostCallback);
  copyState(fresh, effect);
  EXPECT_EQ(effect->numOutputs, fresh->numOutputs);
  const std::vector<double> expected = settledBlock(fresh);
  EXPECT_GT(*std::max_element(expected.begin(), expected.end()), 0.0);
  EXPECT_EQ(settledBlock(effect), expected);
  dispatch(fresh, effClose);
  dispatch(effect, effClose);
}

}  // namespace
