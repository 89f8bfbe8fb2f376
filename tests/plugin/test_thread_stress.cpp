// Three threads on one instance, as a host drives it: the audio thread processes blocks of random
// sizes, the user-interface thread re-shapes the model and saves and loads its state, an automation
// thread sets parameters. Under ThreadSanitizer any data race fails the run; everywhere the output
// must stay finite and the model consistent.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "model/counts.h"
#include "model/layouts.h"
#include "model/panner_plugin.h"
#include "platform/host_functions.h"
#include "platform/vst2.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

namespace {

constexpr int kChannels = 64;
constexpr int kLargestBlock = 256;
constexpr int kControlSteps = 300;
constexpr int kAutomationSteps = 10000;
constexpr int kLeastBlocks = 400;

std::atomic<int> notifications{0};
// Lets the control thread keep pace with the audio thread. Relaxed, so that it orders nothing the
// race detector should judge.
std::atomic<int> audioBlocks{0};

const char* iniFile() {
  return "/tmp/spatiola-stress.ini";
}

// [any thread] Count changes notify from the thread that made them.
VstIntPtr hostCallback(AEffect*, std::int32_t opcode, std::int32_t index, VstIntPtr, void* ptr,
                       float) {
  if (opcode == kHostExtensionOpcode && index == kHostFunctionLookupIndex) {
    const std::string name = static_cast<const char*>(ptr);
    return name == "get_ini_file" ? reinterpret_cast<VstIntPtr>(&iniFile) : 0;
  }
  if (opcode == kHostExtensionOpcode && index == kHostChannelCountIndex) return 8;
  notifications.fetch_add(1, std::memory_order_relaxed);
  return 0;
}

VstIntPtr dispatch(AEffect* effect, std::int32_t opcode, std::int32_t index = 0,
                   VstIntPtr value = 0, void* ptr = nullptr) {
  return effect->dispatcher(effect, opcode, index, value, ptr, 0.0f);
}

PannerPlugin& pluginOf(AEffect* effect) {
  return *static_cast<PannerPlugin*>(effect->object);
}

// The audio thread's buffers: always wide enough for any count the other threads choose.
struct AudioBuffers {
  std::vector<std::vector<double>> in{kChannels, std::vector<double>(kLargestBlock)};
  std::vector<std::vector<double>> out{kChannels, std::vector<double>(kLargestBlock)};
  std::vector<double*> inPointers;
  std::vector<double*> outPointers;

  AudioBuffers() {
    std::mt19937 noise(7);
    std::uniform_real_distribution<double> sample(-1.0, 1.0);
    for (auto& channel : in) {
      for (double& s : channel) s = sample(noise);
      inPointers.push_back(channel.data());
    }
    for (auto& channel : out) outPointers.push_back(channel.data());
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

struct AudioResult {
  int blocks = 0;
  int zeroBlocks = 0;
  int nonFiniteBlocks = 0;
};

// [audio thread] Runs until told to stop and at least kLeastBlocks were processed.
AudioResult runAudio(AEffect* effect, const std::atomic<bool>& stop) {
  AudioBuffers buffers;
  std::mt19937 random(11);
  std::uniform_int_distribution<int> blockSize(0, kLargestBlock);
  AudioResult result;
  while (!stop.load() || result.blocks < kLeastBlocks) {
    const int frames = result.blocks % 9 == 0 ? 0 : blockSize(random);
    effect->processDoubleReplacing(effect, buffers.inPointers.data(), buffers.outPointers.data(),
                                   frames);
    ++result.blocks;
    audioBlocks.fetch_add(1, std::memory_order_relaxed);
    result.zeroBlocks += frames == 0 ? 1 : 0;
    result.nonFiniteBlocks += buffers.allFinite() ? 0 : 1;
  }
  return result;
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
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kCounts) - 1);
  switch (kind) {
    case 0:
      setInputCount(plugin, kCounts[pick(random)]);
      break;
    case 1:
      setSpeakerCount(plugin, kCounts[pick(random)]);
      break;
    case 2:
      applyLayoutPreset(plugin, std::uniform_int_distribution<int>(0, 10)(random));
      break;
    case 3:
      roundTripState(effect);
      break;
    case 4:
      dispatch(effect, effVendorSpecific, effSetSpeakerArrangement, kCounts[pick(random)]);
      dispatch(effect, effIdle);
      break;
    case 5:
      dispatch(effect, effMainsChanged, 0, 0);
      break;
    default:
      effect->setParameter(effect, std::uniform_int_distribution<int>(0, 1200)(random),
                           std::uniform_real_distribution<float>(0.0f, 1.0f)(random));
  }
}

// [UI thread] One step per audio block at most: the changes land between and inside blocks
// instead of piling up while one block is mixed.
void runControl(AEffect* effect, int steps, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> kind(0, 7);
  int seen = audioBlocks.load(std::memory_order_relaxed);
  for (int step = 0; step < steps; ++step) {
    while (audioBlocks.load(std::memory_order_relaxed) == seen) std::this_thread::yield();
    seen = audioBlocks.load(std::memory_order_relaxed);
    controlStep(effect, kind(random), random);
  }
}

// [automation thread] Parameter changes as a host's automation plays them, stray indexes and
// non-finite values included.
void runAutomation(AEffect* effect) {
  std::mt19937 random(13);
  std::uniform_int_distribution<int> index(-2, 1200);
  std::uniform_real_distribution<float> value(0.0f, 1.0f);
  for (int step = 0; step < kAutomationSteps; ++step) {
    const float v = step % 97 == 0 ? std::nanf("") : value(random);
    effect->setParameter(effect, index(random), v);
    if (step % 5 == 0) effect->getParameter(effect, index(random));
  }
}

TEST(ThreadStress, AudioControlAndAutomationThreadsShareOneInstance) {
  AEffect* effect = VSTPluginMain(&hostCallback);
  ASSERT_NE(effect, nullptr);
  dispatch(effect, effOpen);
  std::atomic<bool> stop{false};
  AudioResult audio;
  std::thread audioThread([&] { audio = runAudio(effect, stop); });
  std::thread automationThread([&] { runAutomation(effect); });
  runControl(effect, kControlSteps, 5);
  automationThread.join();
  stop = true;
  audioThread.join();

  EXPECT_EQ(audio.nonFiniteBlocks, 0);
  EXPECT_GE(audio.blocks, kLeastBlocks);
  EXPECT_GT(audio.zeroBlocks, 0);
  EXPECT_GT(notifications.load(), 0);
  PannerPlugin& plugin = pluginOf(effect);
  EXPECT_EQ(effect->numParams, parameterCountFor(plugin.inputCount(), plugin.speakerCount()));
  dispatch(effect, effClose);
}

// After the storm the instance still pans: an input left of centre sounds on the left speaker.
TEST(ThreadStress, InstanceStillPansAfterTheStorm) {
  AEffect* effect = VSTPluginMain(&hostCallback);
  ASSERT_NE(effect, nullptr);
  std::atomic<bool> stop{false};
  std::thread audioThread([&] { runAudio(effect, stop); });
  runControl(effect, kControlSteps / 4, 17);
  stop = true;
  audioThread.join();

  PannerPlugin& plugin = pluginOf(effect);
  setInputCount(plugin, 1);
  applyLayoutPreset(plugin, 1);  // stereo
  // Whatever the storm left: unit room, unit trim, the input halfway left, unmuted, unity gain.
  const std::pair<int, float> settle[] = {{0, 0.5f},  {1, 0.5f},  {2, 0.5f},  {3, 0.25f},
                                          {4, 0.25f}, {5, 0.25f}, {6, 0.5f},  {7, 0.5f},
                                          {8, 0.0f},  {9, 0.0f},  {12, 0.0f}, {13, 0.0f}};
  for (const auto& [index, value] : settle) effect->setParameter(effect, index, value);
  AudioBuffers buffers;
  for (auto& channel : buffers.in) std::fill(channel.begin(), channel.end(), 0.5);
  for (int block = 0; block < 2; ++block) {
    effect->processDoubleReplacing(effect, buffers.inPointers.data(), buffers.outPointers.data(),
                                   64);
  }
  EXPECT_EQ(effect->numOutputs, 2);
  EXPECT_GT(buffers.out[0][63], 0.0);
  EXPECT_GT(buffers.out[0][63], buffers.out[1][63]);
  dispatch(effect, effClose);
}

}  // namespace
