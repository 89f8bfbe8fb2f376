// The live engine's threads on one in-process instance: the process callback on an audio thread;
// count changes (by the editor under way, by the host with the audio suspended), new buffers
// handed over, parameter changes queued and automation reports recorded on a control thread.
// Under ThreadSanitizer any data race fails; everywhere every report must reach the file on a
// block's first sample.
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <fstream>
#include <random>
#include <string>
#include <thread>

#include "host/live/automation_recorder.h"
#include "host/live/live_engine.h"
#include "model/counts.h"
#include "tests/plugin/host_double.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

namespace {

constexpr int kPeriod = 64;
constexpr double kRate = 48000.0;
constexpr int kSteps = 400;
constexpr int kCapacity = 64;

VstIntPtr hostCallback(AEffect*, std::int32_t opcode, std::int32_t index, VstIntPtr, void* ptr,
                       float) {
  return hostQueryAnswer(opcode, index, ptr, 2).value_or(0);
}

// [control thread] One step chosen by `kind`, each as the live session or the editor makes it.
// Answers the reports it asked to be recorded.
int controlStep(LiveEngine& engine, AutomationRecorder& recorder, AEffect* effect, int kind,
                std::mt19937& random) {
  constexpr int kCounts[] = {1, 2, 5, 8, 16, 33, 64};
  const int count = kCounts[std::uniform_int_distribution<std::size_t>(0, 6)(random)];
  const int parameter = std::uniform_int_distribution<int>(0, 200)(random);
  const float value = std::uniform_real_distribution<float>(0.0f, 1.0f)(random);
  switch (kind) {
    case 0:  // typed into the editor: the callback meets counts its buffers may not hold
      setInputCount(pluginOf(effect), count);
      return 0;
    case 1:  // the host's change, made with the callback out of the plug-in
      EXPECT_TRUE(engine.suspend());
      setSpeakerCount(pluginOf(effect), count);
      engine.resume();
      return 0;
    case 2:  // the session follows the counts the callback published, with the largest buffers
      EXPECT_TRUE(engine.exchange(std::make_unique<RtConfig>(
          std::max(engine.pluginInputs(), 1), std::max(engine.pluginOutputs(), 1), kPeriod, 0)));
      return 0;
    case 3:
      EXPECT_TRUE(engine.queueParameter(parameter, value));
      return 1;  // recorded by the audio thread where it applies it
    default:     // an editor gesture reported by the plug-in
      recorder.report(parameter, value);
      return 1;
  }
}

// The recorded lines' samples.
std::vector<std::int64_t> recordedSamples(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::int64_t> samples;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#' || line[0] == 't') continue;
    samples.push_back(std::llround(std::stod(line) * kRate));
  }
  return samples;
}

TEST(LiveEngineStress, AudioAndControlThreadsShareTheEngine) {
  AEffect* effect = VSTPluginMain(&hostCallback);
  ASSERT_NE(effect, nullptr);
  dispatch(effect, effOpen);
  dispatch(effect, effSetBlockSize, 0, kPeriod);
  dispatch(effect, effMainsChanged, 0, 1);
  const std::string csv = ::testing::TempDir() + "live_engine_stress.csv";
  LiveEngine engine(*effect, "in-process");
  int reports = 0;
  {
    AutomationRecorder recorder(csv, kRate, kPeriod, [&engine] { return engine.nextBlockStart(); });
    engine.setChangeHook(
        [](void* context, std::int64_t sample, std::int32_t parameter, float value) {
          static_cast<AutomationRecorder*>(context)->reportAt(sample, parameter, value);
        },
        &recorder);
    engine.exchange(std::make_unique<RtConfig>(kCapacity, kCapacity, kPeriod, 0));
    std::atomic<bool> stop{false};
    std::thread audio([&] {
      while (!stop.load()) engine.process(kPeriod);
    });
    std::mt19937 random(3);
    for (int step = 0; step < kSteps; ++step) {
      const std::int64_t seen = engine.samplesProcessed();
      while (engine.samplesProcessed() == seen) std::this_thread::yield();
      reports += controlStep(engine, recorder, effect,
                             std::uniform_int_distribution<int>(0, 4)(random), random);
    }
    stop = true;
    audio.join();
    // Changes wait in the queue while the buffers are too small for the counts: they apply once
    // the session has handed over larger ones.
    engine.exchange(std::make_unique<RtConfig>(kCapacity, kCapacity, kPeriod, 0));
    engine.process(kPeriod);
    EXPECT_EQ(recorder.lost(), 0u);
  }
  const std::vector<std::int64_t> samples = recordedSamples(csv);
  EXPECT_EQ(static_cast<int>(samples.size()), reports);
  for (const std::int64_t sample : samples) ASSERT_EQ(sample % kPeriod, 0) << sample;
  EXPECT_EQ(engine.pluginInputs(), effect->numInputs);
  EXPECT_EQ(engine.pluginOutputs(), effect->numOutputs);
  dispatch(effect, effClose);
}

}  // namespace
