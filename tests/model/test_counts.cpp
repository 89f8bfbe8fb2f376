// Count changes: host notifications, matrix bookkeeping, fader strips, dirty marks, the lock.
#include <gtest/gtest.h>

#include "model_fixture.h"

TEST(CountNotifications, ChangesReportTheMovedRangeThenIoThenTheSpeakerCount) {
  const struct {
    int startInputs, layoutPreset, newInputs, newSpeakers;
    ParameterListChange change;
    bool reportsSpeakers;
  } cases[] = {
      {2, 6, 2, 6, {6 * 7 + 2 * 10 + 4, -14}, true},  // 8 speakers down to 6
      {2, 1, 3, 2, {24, 10}, false},                  // ten parameters per input
      {8, 6, 3, 8, {4 + 30, -50}, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.newInputs);
    RecordingHost host;
    auto plugin = makeInstance(c.startInputs);
    applyLayoutPreset(*plugin, c.layoutPreset);
    host.clear();
    setInputCount(*plugin, c.newInputs);
    setSpeakerCount(*plugin, c.newSpeakers);
    const auto calls = host.calls();
    ASSERT_EQ(calls.size(), c.reportsSpeakers ? 3u : 2u);
    EXPECT_EQ(std::tuple(calls[0].opcode, calls[0].index, calls[0].value,
                         calls[0].change.firstIndex, calls[0].change.delta),
              std::tuple(audioMasterVendorSpecific, kHostExtensionOpcode, VstIntPtr{0},
                         c.change.firstIndex, c.change.delta));
    EXPECT_EQ(calls[1].opcode, audioMasterIOChanged);
    if (c.reportsSpeakers) {
      EXPECT_EQ(std::pair(calls[2].value, calls[2].ptrValue),
                std::pair(VstIntPtr{13}, VstIntPtr{c.newSpeakers}));
    }
    EXPECT_EQ(plugin->host.effect.numParams, 4 + 10 * c.newInputs + 7 * c.newSpeakers);
  }
}

TEST(CountNotifications, SameCountSendsNothingButStillMarksAResizeAndCountsStayIn0To64) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  plugin->model.changeFlags = 0;
  plugin->model.gainRows = plugin->model.gainCols = 2;
  host.clear();
  setInputCount(*plugin, 2);
  setSpeakerCount(*plugin, 2);
  EXPECT_TRUE(host.calls().empty());
  EXPECT_EQ(plugin->model.changeFlags & kChangeCounts, kChangeCounts);
  EXPECT_EQ(std::pair(plugin->model.gainRows, plugin->model.gainCols), std::pair(-1, -1));
  setInputCount(*plugin, 200);  // counts are clamped to 0..64
  setSpeakerCount(*plugin, -5);
  EXPECT_EQ(std::tuple(plugin->inputCount(), plugin->speakerCount(), plugin->host.effect.numParams),
            std::tuple(64, 0, 4 + 640));
}

TEST(FaderStrips, OffsetResetsWhenTheCountNoLongerReachesPastIt) {
  RecordingHost host;
  auto plugin = makeInstance(20);
  plugin->editor.inputFaderOffset = 12;
  setInputCount(*plugin, 24);
  EXPECT_EQ(plugin->editor.inputFaderOffset, 12);
  setInputCount(*plugin, 23);  // 23 - 11 = 12 <= 12
  EXPECT_EQ(plugin->editor.inputFaderOffset, 0);
  setSpeakerCount(*plugin, 30);
  plugin->editor.speakerFaderOffset = 16;
  setSpeakerCount(*plugin, 28);
  EXPECT_EQ(plugin->editor.speakerFaderOffset, 16);
  setSpeakerCount(*plugin, 27);
  EXPECT_EQ(plugin->editor.speakerFaderOffset, 0);
  plugin->editor.speakerFaderOffset = 16;
  applyLayoutPreset(*plugin, 7);  // presets always start the strip over
  EXPECT_EQ(plugin->editor.speakerFaderOffset, 0);
}

TEST(DirtyMarks, TargetsOneAllOrTheSelectedInputs) {
  RecordingHost host;
  auto plugin = makeInstance(6);
  plugin->model.inputs[1].selected = plugin->model.inputs[3].selected = 1;
  const struct {
    int target;
    std::uint64_t marked;
  } cases[] = {{4, 0x10}, {6, 0}, {kDirtySelectedInputs, 0x0A}, {kDirtyAllInputs, 0x3F}};
  for (const auto& c : cases) {
    plugin->model.dirtyInputs = 0;
    markInputsDirty(*plugin, c.target);
    EXPECT_EQ(plugin->model.dirtyInputs, c.marked) << c.target;
  }
  setInputCount(*plugin, 64);  // the last bit of the word
  plugin->model.dirtyInputs = 0;
  markInputsDirty(*plugin, kDirtyAllInputs);
  EXPECT_EQ(plugin->model.dirtyInputs, ~std::uint64_t{0});
}

TEST(InputLock, StoredAndReportedToAnOpenEditorOnlyAndClearedByCountChanges) {
  RecordingHost host;
  auto plugin = makeInstance(2);
  static int editorCalls = 0;
  editorCalls = 0;
  onLockInputsChanged = [](PannerPlugin&) { ++editorCalls; };
  setLockInputs(*plugin, true);
  EXPECT_EQ(std::pair(int{plugin->editor.lockInputs}, editorCalls), std::pair(1, 0));  // no editor
  plugin->host.editorWindow = reinterpret_cast<HWND>(1);
  setLockInputs(*plugin, true);
  EXPECT_EQ(editorCalls, 1);
  setInputCount(*plugin, 3);
  EXPECT_EQ(std::pair(int{plugin->editor.lockInputs}, editorCalls), std::pair(0, 2));
  plugin->host.editorWindow = nullptr;
  onLockInputsChanged = nullptr;
}
