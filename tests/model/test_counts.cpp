// Count changes: host notifications, matrix bookkeeping, fader strips, dirty marks, the lock.
#include <gtest/gtest.h>

#include <iterator>

#include "model_fixture.h"

namespace {

std::vector<HostCall> notificationsOf(RecordingHost& host) {
  return host.calls();
}

}  // namespace

TEST(CountNotifications, SpeakerShrinkReportsTheRangeThenIoThenTheCount) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  applyLayoutPreset(*plugin, 6);  // 8 speakers
  host.clear();
  setSpeakerCount(*plugin, 6);
  const auto calls = notificationsOf(host);
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[0].opcode, audioMasterVendorSpecific);
  EXPECT_EQ(calls[0].index, kHostExtensionOpcode);
  EXPECT_EQ(calls[0].value, 0);
  EXPECT_EQ(calls[0].change.firstIndex, 6 * 7 + 2 * 10 + 4);
  EXPECT_EQ(calls[0].change.delta, -14);
  EXPECT_EQ(calls[1].opcode, audioMasterIOChanged);
  EXPECT_EQ(calls[2].opcode, audioMasterVendorSpecific);
  EXPECT_EQ(calls[2].value, 13);
  EXPECT_EQ(calls[2].ptrValue, 6);
  EXPECT_EQ(plugin->effect.numParams, 4 + 20 + 42);
}

TEST(CountNotifications, InputGrowthReportsTenParametersPerInput) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  host.clear();
  setInputCount(*plugin, 3);
  const auto calls = notificationsOf(host);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].change.firstIndex, 24);
  EXPECT_EQ(calls[0].change.delta, 10);
  EXPECT_EQ(calls[1].opcode, audioMasterIOChanged);
}

TEST(CountNotifications, ConstructionReportsFromZeroInputsAndSpeakers) {
  RecordingHost host;
  auto plugin = makeInstance(6);
  const auto calls = notificationsOf(host);
  const struct {
    std::int32_t opcode;
    VstIntPtr value;
    ParameterListChange change;
    VstIntPtr ptrValue;
  } expected[] = {
      {audioMasterVendorSpecific, 0, {4, 60}, 0},  // six inputs appear after the globals
      {audioMasterIOChanged, 0, {}, 0},
      {audioMasterVendorSpecific, 0, {64, 42}, 0},  // then the six speakers after them
      {audioMasterIOChanged, 0, {}, 0},
      {audioMasterVendorSpecific, 13, {}, 6},
  };
  ASSERT_EQ(calls.size(), std::size(expected));
  for (std::size_t i = 0; i < calls.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(calls[i].opcode, expected[i].opcode);
    EXPECT_EQ(calls[i].value, expected[i].value);
    if (expected[i].opcode == audioMasterVendorSpecific) {
      EXPECT_EQ(calls[i].index, kHostExtensionOpcode);
    }
    if (expected[i].value == 0 && expected[i].opcode == audioMasterVendorSpecific) {
      EXPECT_EQ(calls[i].change.firstIndex, expected[i].change.firstIndex);
      EXPECT_EQ(calls[i].change.delta, expected[i].change.delta);
    } else {
      EXPECT_EQ(calls[i].ptrValue, expected[i].ptrValue);
    }
  }
}

TEST(CountNotifications, InputShrinkReportsTheRemovedRange) {
  RecordingHost host;
  auto plugin = makeInstance(8);
  host.clear();
  setInputCount(*plugin, 3);
  const auto calls = notificationsOf(host);
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].change.firstIndex, 4 + 30);
  EXPECT_EQ(calls[0].change.delta, -50);
  EXPECT_EQ(calls[1].opcode, audioMasterIOChanged);
  EXPECT_EQ(plugin->effect.numParams, 4 + 30 + 7 * 8);
}

TEST(CountNotifications, SameCountSendsNothingButStillMarksAResize) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  plugin->changeFlags = 0;
  plugin->gainRows = plugin->gainCols = 2;
  host.clear();
  setInputCount(*plugin, 2);
  setSpeakerCount(*plugin, 2);
  EXPECT_TRUE(host.calls().empty());
  EXPECT_EQ(plugin->changeFlags & kChangeCounts, kChangeCounts);
  EXPECT_EQ(plugin->gainRows, -1);
  EXPECT_EQ(plugin->gainCols, -1);
}

TEST(CountLimits, CountsAreClampedTo0Through64) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  setInputCount(*plugin, 200);
  setSpeakerCount(*plugin, -5);
  EXPECT_EQ(plugin->inputCount(), 64);
  EXPECT_EQ(plugin->speakerCount(), 0);
  EXPECT_EQ(plugin->effect.numParams, 4 + 640);
}

TEST(FaderStrips, OffsetResetsWhenTheCountNoLongerReachesPastIt) {
  RecordingHost host;
  auto plugin = makeInstance(20);
  plugin->inputFaderOffset = 12;
  setInputCount(*plugin, 24);
  EXPECT_EQ(plugin->inputFaderOffset, 12);
  setInputCount(*plugin, 23);  // 23 - 11 = 12 <= 12
  EXPECT_EQ(plugin->inputFaderOffset, 0);
  setSpeakerCount(*plugin, 30);
  plugin->speakerFaderOffset = 16;
  setSpeakerCount(*plugin, 28);
  EXPECT_EQ(plugin->speakerFaderOffset, 16);
  applyLayoutPreset(*plugin, 7);  // presets always start the strip over
  EXPECT_EQ(plugin->speakerFaderOffset, 0);
}

TEST(DirtyMarks, TargetsOneAllOrTheSelectedInputs) {
  RecordingHost host;
  auto plugin = makeInstance(6);
  plugin->dirtyInputs = 0;
  markInputsDirty(*plugin, 4);
  EXPECT_EQ(plugin->dirtyInputs, 0x10u);
  markInputsDirty(*plugin, 6);  // past the count: left alone
  EXPECT_EQ(plugin->dirtyInputs, 0x10u);
  plugin->dirtyInputs = 0;
  markInputsDirty(*plugin, kDirtySelectedInputs);
  EXPECT_EQ(plugin->dirtyInputs, 0u);
  plugin->inputs[1].selected = plugin->inputs[3].selected = 1;
  markInputsDirty(*plugin, kDirtySelectedInputs);
  EXPECT_EQ(plugin->dirtyInputs, 0x0Au);
  markInputsDirty(*plugin, kDirtyAllInputs);
  EXPECT_EQ(plugin->dirtyInputs, 0x3Fu);
  setInputCount(*plugin, 64);
  plugin->dirtyInputs = 0;
  markInputsDirty(*plugin, kDirtyAllInputs);
  EXPECT_EQ(plugin->dirtyInputs, ~std::uint64_t{0});
  markInputsDirty(*plugin, 63);
  EXPECT_EQ(plugin->dirtyInputs >> 63, 1u);
}

TEST(InputLock, StoredAndReportedToAnOpenEditorOnlyAndClearedByCountChanges) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  static int editorCalls = 0;
  editorCalls = 0;
  onLockInputsChanged = [](PannerPlugin&) { ++editorCalls; };
  setLockInputs(*plugin, true);
  EXPECT_EQ(plugin->lockInputs, 1);
  EXPECT_EQ(editorCalls, 0);  // no editor open
  plugin->editorWindow = reinterpret_cast<HWND>(1);
  setLockInputs(*plugin, true);
  EXPECT_EQ(editorCalls, 1);
  setInputCount(*plugin, 3);
  EXPECT_EQ(plugin->lockInputs, 0);
  EXPECT_EQ(editorCalls, 2);
  plugin->editorWindow = nullptr;
  onLockInputsChanged = nullptr;
}
