// The saved state block: layout, round trips, older versions, cut-off and hostile blocks.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <future>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "../model/model_fixture.h"
#include "plugin/state_chunk.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes savedBlock(PannerPlugin& plugin) {
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(plugin, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  return Bytes(bytes, bytes + length);
}

void load(PannerPlugin& plugin, const Bytes& block, std::size_t length) {
  readStateChunk(plugin, block.data(), static_cast<std::int32_t>(length));
}
void load(PannerPlugin& plugin, const Bytes& block) {
  load(plugin, block, block.size());
}

// A loader that never finishes ends the test program within seconds instead of hanging the run.
void loadWithinSeconds(PannerPlugin& plugin, const Bytes& block) {
  auto loaded = std::async(std::launch::async, [&] { load(plugin, block); });
  if (loaded.wait_for(std::chrono::seconds(10)) == std::future_status::timeout) {
    std::fprintf(stderr, "loading a %zu-byte block did not end within 10 s\n", block.size());
    std::_Exit(1);
  }
}

// Writes blocks of any version by hand.
struct BlockBuilder {
  Bytes bytes;
  BlockBuilder& i32(std::int32_t v) {
    for (int i = 0; i < 4; ++i)
      bytes.push_back(static_cast<unsigned char>(static_cast<std::uint32_t>(v) >> (8 * i)));
    return *this;
  }
  BlockBuilder& f64(double v) {
    std::uint64_t bits;
    std::memcpy(&bits, &v, 8);
    for (int i = 0; i < 8; ++i) bytes.push_back(static_cast<unsigned char>(bits >> (8 * i)));
    return *this;
  }
  static constexpr std::int32_t kTextLength = std::numeric_limits<std::int32_t>::min();
  BlockBuilder& name(const std::string& text, std::int32_t length = kTextLength) {
    i32(length == kTextLength ? static_cast<std::int32_t>(text.size()) : length);
    bytes.insert(bytes.end(), text.begin(), text.end());
    return *this;
  }
  // Header of `version` with the given counts; the other fields are recognisable values.
  BlockBuilder& header(int version, std::int32_t inputs, std::int32_t speakers) {
    i32(version).i32(5).i32(7);
    if (version >= 4) i32(4).i32(8);
    i32(1).i32(2).i32(3);
    if (version >= 3) i32(0x20000);
    f64(0.5).f64(0.3).f64(1.5).f64(0.75).f64(0.25);
    return i32(inputs).i32(speakers);
  }
  BlockBuilder& input(int version, double x, const std::string& text,
                      std::int32_t length = kTextLength) {
    if (version >= 3) f64(2.0);
    f64(0.5).f64(x).f64(0.2).f64(0.1).f64(0.3).f64(-0.4).f64(0.6).i32(0b1011);
    return name(text, length);
  }
  BlockBuilder& speaker(int version, double x, const std::string& text,
                        std::int32_t length = kTextLength) {
    if (version >= 3) f64(0.5);
    f64(x).f64(-0.5).f64(0.25);
    if (version >= 2) f64(1.5);
    i32(0b101);
    return name(text, length);
  }
};

class StateChunk : public ::testing::Test {
 protected:
  RecordingHost host;
  std::unique_ptr<PannerPlugin> plugin = makeInstance(2);
  std::unique_ptr<PannerPlugin> other = makeInstance(2);
};

void expectWithinLimits(const PannerPlugin& p) {
  ASSERT_LE(p.inputCount(), 64);
  ASSERT_LE(p.speakerCount(), 64);
  EXPECT_EQ(p.host.effect.numParams, parameterCountFor(p.inputCount(), p.speakerCount()));
  EXPECT_EQ(p.host.effect.numOutputs, p.speakerCount());
  for (const InputChannel& in : p.model.inputs) {
    EXPECT_LT(strnlen(in.name, kNameCapacity), static_cast<std::size_t>(kNameCapacity));
    for (double v : {in.gain, in.x, in.y, in.z, in.diffuse}) EXPECT_TRUE(std::isfinite(v));
  }
}

}  // namespace

TEST_F(StateChunk, EveryFieldSurvivesARoundTrip) {
  // Header, two inputs named "channel N" (9 bytes), speakers "left" and "right".
  EXPECT_EQ(savedBlock(*plugin).size(), 84u + 2 * (72 + 9) + (48 + 4) + (48 + 5));
  PannerPlugin& p = *plugin;
  p.model.layoutPreset = 0;
  p.model.userSpeakerCount = 2;
  p.editor.inputFaderOffset = 4;
  p.editor.speakerFaderOffset = 8;
  std::copy_n(std::array{3, 9, 11}.begin(), 3, p.editor.groupKnobModes);
  p.model.optionFlags = 0x20101;
  p.model.centerTrim = 0.7;
  p.view.zoom = 1.0f * 0.85f + 0.1f;  // the zoom fader's top, a little above 0.95
  p.model.spaceScaleX = 1.25;
  p.model.spaceScaleY = 0.5;
  p.model.spaceScaleZ = 2.0;
  p.model.inputs[1] = InputChannel{3.5, 0.25, -0.75, 0.625, 0.125, 0.8, -0.3, -0.9, 1, 0, 1, 1, {}};
  copyChannelName(p.model.inputs[1].name, std::string(63, 'n').c_str());
  p.model.speakers[0] = Speaker{0.5, 0.1, 0.2, 0.3, 1.75, 1, 0, 1, {}};
  copyChannelName(p.model.speakers[0].name, "sub");
  const Bytes block = savedBlock(p);
  load(*other, block);
  // Every field differs from a fresh instance's, so equal blocks mean every field was read back;
  // the flags, packed in one word, are seen in the model too.
  EXPECT_EQ(savedBlock(*other), block);
  const ModelState& m = other->model;
  EXPECT_EQ(std::tuple(m.inputs[0].mute, m.inputs[1].mute, m.inputs[1].solo, m.inputs[1].reverse,
                       m.speakers[0].isLfe, m.speakers[0].solo),
            std::tuple(0, 1, 0, 1, 1, 1));
}

TEST_F(StateChunk, EveryVersionFinishesTheModelUpdateOlderOnesTakeDefaultsLaterOnesReadAs4) {
  for (int version : {0, 1, 2, 3, 4, 9}) {
    SCOPED_TRACE(version);
    BlockBuilder b;
    b.header(version, 1, 1).input(version, 0.1, "in").speaker(version, 0.4, "out");
    plugin->model.optionFlags = 0x10000;
    plugin->editor.inputFaderOffset = 12;
    plugin->mix.inputPeaks[0] = 0.5;
    plugin->model.gainRows = plugin->model.gainCols = 2;  // as sized by an earlier block
    plugin->model.changeFlags = 0;
    plugin->host.stateLoaded = false;
    load(*plugin, b.bytes);
    // Loading finishes the model update: meters cleared, matrix resized, every change flagged.
    const ModelState& m = plugin->model;
    EXPECT_EQ(
        std::tuple(plugin->mix.inputPeaks[0].load(), m.gainRows, m.gainCols, m.changeFlags.load(),
                   plugin->host.stateLoaded.load(), plugin->host.effect.numOutputs),
        std::tuple(0.0, -1, -1, 31u, true, 1));
    // Fields a version lacks take their defaults.
    EXPECT_EQ(
        std::tuple(plugin->editor.inputFaderOffset, m.optionFlags, m.inputs[0].gain,
                   m.speakers[0].gain, m.speakers[0].influence),
        std::tuple(version >= 4 ? 4 : 0, version >= 3 ? 0x20000u : 0u, version >= 3 ? 2.0 : 1.0,
                   version >= 3 ? 0.5 : 1.0, version >= 2 ? 1.5 : 1.0));
    EXPECT_EQ(
        std::tuple(m.inputs[0].x, m.speakers[0].x, std::string(m.speakers[0].name), m.centerTrim),
        std::tuple(0.1, 0.4, "out", 0.5));
  }
}

TEST_F(StateChunk, CutOffBlocksAtEveryLengthKeepWholeRecordsOnly) {
  setSpeakerCount(*plugin, 3);
  plugin->model.inputs[1].mute = 1;
  const Bytes block = savedBlock(*plugin);
  std::vector<std::size_t> ends;  // end of each record: inputs, then speakers
  std::size_t at = 84;
  for (const InputChannel& in : plugin->model.inputs)
    ends.push_back(at += 72 + std::strlen(in.name));
  for (const Speaker& sp : plugin->model.speakers) ends.push_back(at += 48 + std::strlen(sp.name));
  ASSERT_EQ(at, block.size());
  for (std::size_t length = 0; length <= block.size(); ++length) {
    SCOPED_TRACE(length);
    auto target = makeInstance(2);
    target->model.centerTrim = 0.123;
    load(*target, block, length);
    expectWithinLimits(*target);
    ASSERT_EQ(target->inputCount(), length < 80 ? 0 : 2);  // the counts end the header
    ASSERT_EQ(target->speakerCount(), length < 84 ? 0 : 3);
    EXPECT_EQ(target->model.centerTrim, length < 44 ? 0.123 : 1.0);  // unread fields keep theirs
    const Bytes again = savedBlock(*target);  // a record not read whole is saved as zeros
    for (std::size_t r = 0; r < ends.size() && length >= 84; ++r) {
      const bool whole =
          again.size() >= ends[r] &&
          std::equal(block.begin() + 84, block.begin() + ends[r], again.begin() + 84);
      EXPECT_EQ(whole, ends[r] <= length) << "record " << r;
    }
  }
}

TEST_F(StateChunk, BadNameLengthsEndTheRecordsOfTheirKind) {
  BlockBuilder tooLong;  // 63 bytes kept, the next record starts 100 bytes further on
  tooLong.header(4, 2, 1).input(4, 0.1, std::string(100, 'q')).input(4, 0.2, "2nd");
  load(*plugin, tooLong.speaker(4, 0.3, "s").bytes);
  EXPECT_EQ(std::string(plugin->model.inputs[0].name), std::string(63, 'q'));
  EXPECT_STREQ(plugin->model.inputs[1].name, "2nd");
  EXPECT_STREQ(plugin->model.speakers[0].name, "s");
  BlockBuilder negative;  // this and later inputs stay zero, the speakers are read from here
  negative.header(4, 3, 1).input(4, 0.1, "one").input(4, 0.2, "", -5).speaker(4, 0.3, "s");
  load(*plugin, negative.bytes);
  ASSERT_EQ(plugin->inputCount(), 3);
  EXPECT_STREQ(plugin->model.inputs[0].name, "one");
  EXPECT_EQ(plugin->model.inputs[1].gain, 0.0);
  EXPECT_EQ(plugin->model.speakers[0].x, 0.3);
  BlockBuilder pastTheEnd;  // the speaker keeps what was read, with an empty name
  pastTheEnd.header(4, 0, 2).speaker(4, 0.3, "", 1000).speaker(4, 0.4, "never");
  load(*plugin, pastTheEnd.bytes);
  ASSERT_EQ(plugin->speakerCount(), 2);
  EXPECT_EQ(plugin->model.speakers[0].x, 0.3);
  EXPECT_STREQ(plugin->model.speakers[0].name, "");
  EXPECT_EQ(plugin->model.speakers[1].x, 0.0);
}

TEST_F(StateChunk, CountsOutOfRangeAreBounded) {
  BlockBuilder negative;
  negative.header(4, -5, -1);
  load(*plugin, negative.bytes);
  EXPECT_EQ(plugin->inputCount() + plugin->speakerCount(), 0);
  {  // 70 inputs: 64 kept, the rest parsed so that the speaker is found
    BlockBuilder b;
    b.header(4, 70, 1);
    for (int i = 0; i < 70; ++i) b.input(4, i < 64 ? 0.01 * i : 0.9, "in" + std::to_string(i));
    b.speaker(4, 0.3, "found");
    load(*plugin, b.bytes);
    EXPECT_EQ(plugin->inputCount(), 64);
    EXPECT_STREQ(plugin->model.inputs[63].name, "in63");
    EXPECT_STREQ(plugin->model.speakers[0].name, "found");
    expectWithinLimits(*plugin);
  }
  for (int trailing : {0, 3, 7}) {  // counts the data cannot hold: bounded, zero-filled, and
    BlockBuilder b;                 // parsing ends with the data, not with 2^31 empty records
    b.header(4, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::max());
    b.bytes.resize(b.bytes.size() + static_cast<std::size_t>(trailing), 0xAB);
    loadWithinSeconds(*plugin, b.bytes);
    EXPECT_EQ(plugin->inputCount(), 64);
    EXPECT_EQ(plugin->speakerCount(), 64);
    EXPECT_EQ(plugin->model.inputs[1].gain, 0.0);
    expectWithinLimits(*plugin);
  }
}

TEST_F(StateChunk, NonFiniteAndOutOfRangeRealsAreMadeSafe) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  BlockBuilder b;
  b.i32(4).i32(1).i32(0).i32(-8).i32(63).i32(99).i32(-1).i32(5).i32(-1);
  b.f64(nan).f64(inf).f64(-inf).f64(1e300).f64(0.0).i32(1).i32(1);
  b.f64(nan).f64(-inf).f64(1e300).f64(-1e300).f64(nan).f64(7.0).f64(-3.0).f64(inf).i32(0).name("x");
  b.f64(inf).f64(nan).f64(5.0).f64(-5.0).f64(-1.0).i32(0).name("y");
  load(*plugin, b.bytes);  // the header's integers: HeaderIntegersLandOnValuesTheEditorCanShow
  EXPECT_EQ(plugin->model.optionFlags, 0x30101u);  // each fader mode is 0 or 1, no undefined bits
  const ModelState& m = plugin->model;
  const InputChannel& in = m.inputs[0];
  EXPECT_EQ((std::vector<double>{m.centerTrim, plugin->view.zoom, m.spaceScaleX, m.spaceScaleY,
                                 m.spaceScaleZ, m.speakers[0].gain, m.speakers[0].x,
                                 m.speakers[0].influence}),
            (std::vector<double>{1.0, 0.48, 1.0, 2.0, 2e-6, 1.0, 0.0, 0.0}));
  EXPECT_EQ((std::vector<double>{in.gain, in.lfeSend, in.x, in.y, in.z, in.diffuse, in.diffuseBias,
                                 in.diffuseAngle}),
            (std::vector<double>{1.0, 0.0, 4.8, -4.8, 0.0, 1.0, -1.0, 0.0}));
}

TEST_F(StateChunk, HeaderIntegersLandOnValuesTheEditorCanShow) {
  const struct {
    std::int32_t written, layout, faderOffset, knobMode;
  } cases[] = {{10, 10, 8, 10},  {7, 7, 4, 7},   {11, 10, 8, 11},
               {63, 10, 60, 63}, {-2, -1, 0, 0}, {80, 10, 60, 73}};
  for (const auto& c : cases) {
    BlockBuilder b;
    b.i32(4).i32(c.written).i32(2).i32(c.written).i32(c.written);
    b.i32(c.written).i32(c.written).i32(c.written).i32(0);
    b.f64(1.0).f64(0.48).f64(1.0).f64(1.0).f64(1.0).i32(0).i32(0);
    load(*plugin, b.bytes);
    EXPECT_EQ(plugin->model.layoutPreset, c.layout) << c.written;
    EXPECT_EQ(plugin->editor.inputFaderOffset, c.faderOffset) << c.written;
    EXPECT_EQ(plugin->editor.speakerFaderOffset, c.faderOffset) << c.written;
    EXPECT_EQ(plugin->editor.groupKnobModes[2], c.knobMode) << c.written;
    EXPECT_EQ(savedBlock(*plugin)[4], static_cast<unsigned char>(c.layout));  // and saved as loaded
  }
}

TEST_F(StateChunk, TwoInstancesSavingAtOnceKeepTheirOwnBlocks) {
  setSpeakerCount(*other, 40);
  bool same[2] = {true, true};
  std::vector<std::thread> savers;
  for (PannerPlugin* p : {plugin.get(), other.get()}) {
    savers.emplace_back([p, expected = savedBlock(*p), &same = same[savers.size()]] {
      for (int i = 0; i < 200; ++i) same = same && savedBlock(*p) == expected;
    });
  }
  for (std::thread& saver : savers) saver.join();
  EXPECT_EQ(std::pair(same[0], same[1]), std::pair(true, true));
}
