// The built plug-in, loaded with dlopen and driven only through its exports and its AEffect.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <tuple>

#include "plugin_host.h"

namespace {

class Conformance : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(PluginLibrary::instance().loaded()) << dlerror(); }
  TestHost host;
};

std::string speakerName(AEffect* effect, int speaker) {
  const int inputs = effect->numInputs;
  std::string name = textOf(effect, effGetParamName, 4 + 10 * inputs + 7 * speaker);
  return name.substr(0, name.size() - std::string(" gain").size());
}

std::string chunkOf(AEffect* effect) {
  void* data = nullptr;
  const VstIntPtr length = dispatch(effect, effGetChunk, 0, 0, &data);
  return std::string(static_cast<const char*>(data), static_cast<std::size_t>(length));
}

VstIntPtr loadChunk(AEffect* effect, std::string block) {
  return dispatch(effect, effSetChunk, 0, static_cast<VstIntPtr>(block.size()), block.data());
}

}  // namespace

TEST_F(Conformance, RefusesAHostWithoutTheIniFileFunction) {
  host.serveIniFile = false;
  EXPECT_EQ(host.create(), nullptr);
  ASSERT_EQ(host.lookups.size(), 39u);
  EXPECT_EQ(host.lookups[0], "GetResourcePath");
  EXPECT_EQ(host.lookups[1], "get_ini_file");
  EXPECT_EQ(host.lookups[38], "__localizePrepareDialog");
  EXPECT_TRUE(host.calls.empty());  // no channel-count query, nothing else
}

TEST_F(Conformance, BuildsForTheTracksChannelCount) {
  const struct {
    VstIntPtr reported;
    int channels, speakers;
    const char* firstSpeaker;
  } cases[] = {{0, 2, 2, "left"},         {1, 1, 2, "left"},         {3, 3, 4, "front left"},
               {5, 5, 6, "front left"},   {7, 7, 8, "front left"},   {9, 9, 10, "front left"},
               {11, 11, 11, "speaker A"}, {63, 63, 63, "speaker A"}, {64, 2, 2, "left"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reported);
    TestHost caseHost;
    caseHost.channelCount = c.reported;
    AEffect* effect = caseHost.create();
    ASSERT_NE(effect, nullptr);
    EXPECT_EQ(std::tuple(effect->numInputs, effect->numOutputs, effect->numParams),
              std::tuple(c.channels, c.channels, 4 + 10 * c.channels + 7 * c.speakers));
    EXPECT_EQ(speakerName(effect, 0), c.firstSpeaker);
    closeEffect(effect);
  }
}

TEST_F(Conformance, ConstructionReportsEveryCountChangeForTheNewEffect) {
  host.channelCount = 6;
  AEffect* effect = host.create();
  ASSERT_NE(effect, nullptr);
  ASSERT_EQ(host.calls.size(), 6u);
  const HostCall& query = host.calls[0];  // asked before the effect exists
  EXPECT_EQ(std::tuple(query.opcode, query.index, query.value, query.effect),
            std::tuple(kHostExtensionOpcode, kHostChannelCountIndex, VstIntPtr{5}, nullptr));
  // Inputs and speakers are reported as the model's count tests show, each with its I/O change.
  EXPECT_EQ(std::tuple(host.calls[1].effect, host.calls[1].change.delta, host.calls[4].opcode),
            std::tuple(effect, 60, audioMasterIOChanged));
  EXPECT_EQ(std::pair(host.calls[5].value, host.calls[5].ptrValue),
            std::pair(VstIntPtr{13}, VstIntPtr{6}));
  closeEffect(effect);
}

TEST_F(Conformance, IdentityNamesCapabilitiesAndFixedAnswers) {
  AEffect* effect = host.create();
  ASSERT_NE(effect, nullptr);
  EXPECT_EQ((std::vector<std::int32_t>{effect->magic, effect->flags, effect->numPrograms,
                                       effect->initialDelay, effect->version}),
            (std::vector<std::int32_t>{kEffectMagic, 4145, 1, 0, 1100}));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&effect->uniqueID), 4), "wokp");
  EXPECT_EQ(textOf(effect, effGetEffectName) + textOf(effect, effGetVendorString),
            "SpatiolaTolvek");
  for (const CanDoAnswer& c : kCanDoAnswers) {
    EXPECT_EQ(dispatch(effect, effCanDo, 0, 0, const_cast<char*>(c.text)), c.answer) << c.text;
  }
  const std::pair<std::int32_t, VstIntPtr> answers[] = {
      {effGetVstVersion, 2400}, {effGetTailSize, 1},
      {effGetPlugCategory, 1},  {effCanDo, 0},
      {effGetProgram, 0},       {200, 0},
      {effEditGetRect, 0}};  // no pointer: no size
  for (const auto& [opcode, answer] : answers)
    EXPECT_EQ(dispatch(effect, opcode), answer) << opcode;
  EXPECT_EQ(dispatch(effect, effCanBeAutomated, effect->numParams - 1), 1);
  EXPECT_EQ(dispatch(effect, effCanBeAutomated, effect->numParams), 0);
  ERect* rect = nullptr;  // no editor here, yet the host gets its size
  EXPECT_EQ(dispatch(effect, effEditGetRect, 0, 0, &rect), 1);
  ASSERT_NE(rect, nullptr);
  EXPECT_EQ(std::tuple(rect->top, rect->left, rect->bottom, rect->right),
            std::tuple(0, 0, 640, 520));
  closeEffect(effect);
}

TEST_F(Conformance, ParameterTextsThroughTheDispatcher) {
  AEffect* effect = host.create();
  char text[256];
  EXPECT_EQ(dispatch(effect, effGetParamDisplay, 4), 0);  // no buffer
  EXPECT_EQ(dispatch(effect, effVendorSpecific, effGetParamDisplay, 4, text, 1.0f), 0xbeef);
  EXPECT_STREQ(text, "12.0");              // the given value, not the current one
  if constexpr (sizeof(VstIntPtr) == 8) {  // a value past 32 bits does not wrap onto parameter 4
    dispatch(effect, effVendorSpecific, effGetParamDisplay, (VstIntPtr{1} << 32) + 4, text, 1.0f);
    EXPECT_STRNE(text, "12.0");
  }
  effect->setParameter(effect, 5, 0.75f);
  EXPECT_EQ(textOf(effect, effGetParamDisplay, 5), "0.750000");
  EXPECT_EQ(dispatch(effect, effVendorSpecific, effString2Parameter, 0, text), 0);
  EXPECT_EQ(dispatch(effect, effVendorSpecific, 99, 0, text), 0);
  closeEffect(effect);
}

TEST_F(Conformance, StateRoundTripsThroughTheDispatcher) {
  AEffect* source = host.create();
  source->setParameter(source, 5, 0.9f);
  source->setParameter(source, 24 + 4, 0.25f);
  const std::string block = chunkOf(source);
  host.channelCount = 6;
  AEffect* target = host.create();
  const std::size_t before = host.calls.size();
  EXPECT_EQ(loadChunk(target, block), 0);
  EXPECT_EQ(host.calls.size(), before);  // loading tells the host nothing
  EXPECT_EQ(std::tuple(target->numInputs, target->numOutputs, target->numParams),
            std::tuple(2, 2, 4 + 20 + 14));
  EXPECT_EQ(chunkOf(target), block);
  EXPECT_EQ(dispatch(target, effGetChunk), 0);
  closeEffect(source);
  closeEffect(target);
}

namespace {

void arrange(AEffect* effect, int channels) {
  VstSpeakerArrangement in{};
  VstSpeakerArrangement out{};
  out.numChannels = channels;
  dispatch(effect, effSetSpeakerArrangement, 0, reinterpret_cast<VstIntPtr>(&in), &out);
}

}  // namespace

TEST_F(Conformance, TheHostMayReLayTheSpeakersOnceAndHearsOfItAtIdle) {
  AEffect* effect = host.create();
  host.calls.clear();
  arrange(effect, 6);
  EXPECT_EQ(speakerName(effect, 2), "front center");
  EXPECT_EQ(host.calls.size(), 3u);  // the count change itself
  effect->setParameter(effect, 4, 1.0f);
  EXPECT_EQ(effect->getParameter(effect, 4), 0.25f);  // host values wait for the idle report
  host.calls.clear();
  EXPECT_EQ(dispatch(effect, effIdle), 1);
  ASSERT_EQ(host.calls.size(), 1u);
  const HostCall& report = host.calls[0];
  EXPECT_EQ(std::tuple(report.opcode, report.index, report.value, report.ptrValue),
            std::tuple(audioMasterVendorSpecific, kHostExtensionOpcode, 13,
                       (6 << 20) | (2 << 12) | 0xF00));
  EXPECT_EQ(effect->numParams, 4 + 20 + 42);
  EXPECT_EQ(effect->numOutputs, 2);  // the host's buffers are not the plug-in's to change
  host.calls.clear();
  dispatch(effect, effIdle);
  EXPECT_TRUE(host.calls.empty());
  effect->setParameter(effect, 4, 1.0f);
  EXPECT_EQ(effect->getParameter(effect, 4), 1.0f);
  closeEffect(effect);
}

namespace {

// Runs `steps` on a new effect of `channels`: "aN" the host's arrangement of N channels, "eN" its
// extension form (no arrangement record), "s" a load of the effect's own state. Answers the
// speaker count it ends with.
int speakersAfter(TestHost& host, VstIntPtr channels, const std::string& steps) {
  host.channelCount = channels;
  AEffect* effect = host.create();
  std::istringstream stream(steps);
  for (std::string step; stream >> step;) {
    const int n = step.size() > 1 ? std::stoi(step.substr(1)) : 0;
    if (step[0] == 'a') arrange(effect, n);
    if (step[0] == 'e') dispatch(effect, effVendorSpecific, effSetSpeakerArrangement, n);
    if (step[0] == 's') loadChunk(effect, chunkOf(effect));
  }
  const int speakers = (effect->numParams - 4 - 10 * effect->numInputs) / 7;
  closeEffect(effect);
  return speakers;
}

}  // namespace

TEST_F(Conformance, OneReLayoutOnlyForALargerCountOfAPresetLayout) {
  const struct {
    VstIntPtr channels;
    const char* steps;
    int speakers;
  } cases[] = {
      {2, "a2 a1 a9", 10},  // not larger: nothing, and the re-layout is still available
      {2, "a6 a8", 6},      // one only
      {11, "a20", 11},      // a custom layout is the user's
      {2, "s a6", 2},       // so is a loaded state
      {2, "e2 a6", 2},      // the extension form uses it up even without a change
      {2, "e40", 10},       // and needs no arrangement record; a large count gets 9.1
  };
  for (const auto& c : cases) {
    EXPECT_EQ(speakersAfter(host, c.channels, c.steps), c.speakers) << c.steps;
  }
}

TEST_F(Conformance, OpenAsksForIdleCalls) {
  AEffect* effect = host.create();
  host.calls.clear();
  EXPECT_EQ(dispatch(effect, effOpen), 0);
  ASSERT_EQ(host.calls.size(), 1u);
  EXPECT_EQ(std::tuple(host.calls[0].opcode, host.calls[0].effect),
            std::tuple(audioMasterNeedIdle, effect));
  closeEffect(effect);
}

TEST_F(Conformance, ABlockOfAudioIsPannedEndToEnd) {
  AEffect* effect = host.create();
  double in[2][64];
  double out[2][64];
  std::fill_n(in[0], 64, 1.0);
  std::fill_n(in[1], 64, 0.5);
  double* ins[] = {in[0], in[1]};
  double* outs[] = {out[0], out[1]};
  effect->processDoubleReplacing(effect, ins, outs, 64);
  // Each input sits a quarter in from its side: 0.21370467852847463 towards it, 0 away from it.
  for (int n = 0; n < 64; ++n) {
    ASSERT_NEAR(out[0][n], 0.21370467852847463, 1e-15);
    ASSERT_NEAR(out[1][n], 0.5 * 0.21370467852847463, 1e-15);
  }
  std::vector<float> samples(64, 7.0f);  // only double precision is processed
  float* channels[] = {samples.data(), samples.data()};
  effect->processReplacing(effect, channels, channels, 64);
  effect->process(effect, channels, channels, 64);
  EXPECT_EQ(samples, std::vector<float>(64, 7.0f));
  closeEffect(effect);
}

TEST_F(Conformance, SlotsOfAnEffectWithoutInstanceAnswerNothing) {
  AEffect* effect = host.create();
  AEffect orphan = *effect;
  orphan.object = nullptr;
  EXPECT_EQ(dispatch(&orphan, effGetChunk), 0);
  EXPECT_EQ(dispatch(&orphan, effClose), 0);
  EXPECT_EQ(dispatch(&orphan, effIdle), 1);
  EXPECT_EQ(dispatch(&orphan, effVendorSpecific, effSetSpeakerArrangement, 8), 0);
  EXPECT_EQ(orphan.getParameter(&orphan, 4), 0.0f);
  orphan.setParameter(&orphan, 4, 1.0f);
  orphan.processDoubleReplacing(&orphan, nullptr, nullptr, 64);
  closeEffect(effect);
}
