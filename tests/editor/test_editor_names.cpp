// The name strips, the rename field with its keys, the lock, the options menu and the group-edit
// box, operated through the host's headless window system.
#include <algorithm>
#include <vector>

#include "editor/dialog_handlers.h"
#include "editor/group_edit.h"
#include "host/services/settings.h"
#include "model/layouts.h"
#include "tests/editor/editor_host.h"
#include "tests/host/services/temp_config.h"

namespace {

using Reports = std::vector<Report>;
constexpr auto automate = BehaviourHost::automate;
constexpr auto end = BehaviourHost::end;

std::vector<int> selectedInputs(const BehaviourHost& host) {
  std::vector<int> selected;
  for (int i = 0; i < host.plugin().inputCount(); ++i) {
    if (host.input(i).selected != 0) selected.push_back(i);
  }
  return selected;
}

TEST(EditorNames, ClicksSelectWithShiftExtendingToTheNearerSelection) {
  struct Case {
    std::vector<int> before;
    unsigned modifiers;
    int row;
    std::vector<int> after;
  };
  const Case cases[] = {
      {{2, 8}, kModShift, 5, {2, 3, 4, 5, 8}},  // a tie goes to the lower side
      {{2, 8}, kModShift, 6, {2, 6, 7, 8}},
      {{8}, kModShift, 5, {5, 6, 7, 8}},
      {{}, kModShift, 4, {4}},
      {{2, 8}, kModControl, 5, {2, 5, 8}},
      {{2, 8}, kModControl, 8, {2}},
      {{2, 8}, 0, 5, {5}},
  };
  for (const Case& c : cases) {
    BehaviourHost host(10, 4);
    for (const int i : c.before) host.input(i).selected = 1;
    host.clickName(Strip::Inputs, c.row, c.modifiers);
    EXPECT_EQ(selectedInputs(host), c.after) << c.row << " with " << c.modifiers;
    EXPECT_NE(host.plugin().model.changeFlags & kChangeEditor, 0u);
  }
}

// Keys typed into the rename field of a double-clicked name; each step is one key or a text.
struct RenameStep {
  const char* text;  // typed first when not null
  int key;
  unsigned modifiers;
};

std::vector<std::string> namesOf(const BehaviourHost& host) {
  std::vector<std::string> names;
  for (int i = 0; i < host.plugin().inputCount(); ++i) names.emplace_back(host.input(i).name);
  for (int s = 0; s < host.plugin().speakerCount(); ++s) names.emplace_back(host.speaker(s).name);
  return names;
}

// A name double-clicked, then texts and keys typed into its rename field; a preset's speakers
// open no field.
TEST(EditorNames, RenameKeysCommitCancelAndMoveAcrossTheStrips) {
  const std::vector<std::string> user = {"channel 1", "channel 2", "speaker A", "speaker B"};
  const auto with = [&user](int k, const char* name) {
    std::vector<std::string> names = user;
    names[static_cast<std::size_t>(k)] = name;
    return names;
  };
  const struct {
    const char* what;
    int preset;  // 0 user setup
    Strip strip;
    int row;
    std::vector<RenameStep> steps;
    std::vector<std::string> names;  // inputs, then speakers
    int fieldOn;                     // renameIndex of the open field, -1 none
  } cases[] = {
      // clang-format off
      {"Return stores", 0, Strip::Inputs, 1, {{"Lead", VK_RETURN, 0}}, with(1, "Lead"), -1},
      {"Escape keeps", 0, Strip::Inputs, 1, {{"Lead", VK_ESCAPE, 0}}, user, -1},
      {"Tab into the speakers of a user setup", 0, Strip::Inputs, 1,
       {{"Bass", VK_TAB, 0}, {"Sub", VK_TAB, 0}}, {"channel 1", "Bass", "Sub", "speaker B"}, 3},
      {"Tab from the last speaker opens nothing", 0, Strip::Speakers, 1, {{"Rear", VK_TAB, 0}},
       with(3, "Rear"), -1},
      {"Shift+Tab back from the first speaker", 0, Strip::Speakers, 0,
       {{"Front", VK_TAB, kModShift}}, with(2, "Front"), 1},
      {"Shift+Tab on the first input only commits", 0, Strip::Inputs, 0,
       {{"Vox", VK_TAB, kModShift}}, with(0, "Vox"), -1},
      {"Tab ends at the last input of a preset", 1, Strip::Inputs, 1, {{"Keys", VK_TAB, 0}},
       {"channel 1", "Keys", "left", "right"}, -1},
      {"a preset's speaker", 1, Strip::Speakers, 0, {}, {"channel 1", "channel 2", "left", "right"},
       -1},
      // clang-format on
  };
  for (const auto& c : cases) {
    BehaviourHost host(2, 2);
    if (c.preset != 0) applyLayoutPreset(host.plugin(), c.preset);
    host.tick();
    host.doubleClickName(c.strip, c.row);
    EXPECT_EQ(renameState.renameEdit != nullptr, !c.steps.empty()) << c.what;
    EXPECT_EQ(registeredAccelerators().size(), c.steps.empty() ? 0u : 1u) << c.what;
    for (const RenameStep& step : c.steps) {
      host.driver->type(step.text);
      host.driver->key(step.key, step.modifiers);
    }
    EXPECT_EQ(namesOf(host), c.names) << c.what;
    const bool open = c.fieldOn >= 0;
    EXPECT_EQ(renameState.renameEdit != nullptr, open) << c.what;
    EXPECT_EQ(registeredAccelerators().size(), open ? 1u : 0u) << c.what;
    EXPECT_EQ(open ? renameState.renameIndex : -1, c.fieldOn) << c.what;
    EXPECT_EQ(host.reports, Reports{}) << "names are no parameters";
  }
  EXPECT_EQ(registeredAccelerators().size(), 0u) << "closing the editor removes the hook";
}

TEST(EditorNames, OtherKeysEditTheFieldAndControlKeysLeaveItOpen) {
  BehaviourHost host(2, 2);
  host.doubleClickName(Strip::Inputs, 0);
  const HWND field = renameState.renameEdit;
  ASSERT_NE(field, nullptr);
  host.driver->key('A', kModControl);
  EXPECT_NE(renameState.renameEdit, nullptr);
  host.driver->type("x");
  host.driver->key(VK_BACK);
  host.driver->type("yz");
  host.driver->key(VK_RETURN);
  EXPECT_STREQ(host.input(0).name, "yz");
  MSG late{field, WM_CHAR, VK_RETURN, 0, 0, {}};
  EXPECT_EQ(translateRenameKey(&late, &renameState.renameAccelerator), 0) << "no field any more";
}

TEST(EditorNames, AClickElsewhereCommitsTheRename) {
  BehaviourHost host(2, 2);
  host.doubleClickName(Strip::Inputs, 1);
  host.driver->type("Pad");
  host.tick(100);
  EXPECT_NE(renameState.renameEdit, nullptr) << "the field keeps the focus";
  host.click(item::kInputCount);
  host.tick(100);
  EXPECT_EQ(renameState.renameEdit, nullptr);
  EXPECT_STREQ(host.input(1).name, "Pad");
}

TEST(EditorNames, LockDisablesTheInputControlsAndTheNameStrip) {
  BehaviourHost host(3, 2);
  host.click(item::kLock);
  ASSERT_EQ(host.plugin().editor.lockInputs, 1);
  std::vector<int> locked = {item::kGroupMode, item::kGroupInvert, item::kGroupReset};
  for (const int first :
       {item::kInputMute, item::kInputSolo, item::kInputReverse, item::kInputFader}) {
    locked.push_back(first + 2);
  }
  for (const int id : locked) EXPECT_FALSE(host.enabled(id)) << id;
  EXPECT_TRUE(host.enabled(item::kSpeakerMute)) << "speakers stay free";
  host.clickName(Strip::Inputs, 1);
  host.doubleClickName(Strip::Inputs, 1);
  EXPECT_EQ(selectedInputs(host), std::vector<int>{});
  EXPECT_EQ(renameState.renameEdit, nullptr);
  const double x = host.input(0).x;
  const RECT view = host.rect(item::kSpaceView);
  host.driver->drag(host.item(item::kSpaceView), {(view.right - view.left) / 2, 10},
                    {(view.right - view.left) / 2 + 40, 60});
  EXPECT_EQ(host.input(0).x, x) << "the space view honours the lock";
  host.click(item::kLock);
  EXPECT_EQ(host.plugin().editor.lockInputs, 0);
  for (const int id : locked) EXPECT_TRUE(host.enabled(id)) << id;
}

TEST(EditorNames, OptionsMenuTogglesTheHostKeptFlag) {
  const TempConfig settings;
  BehaviourHost host(2, 2);
  const RECT names = host.rect(item::kInputBox);
  for (const int expected : {8, 0}) {
    host.driver->answerNextMenu("Adjust inputs/outputs to match changes in track channel count");
    host.driver->click(host.dialog, {names.left + 4, names.top - 4}, 0, winsys::MouseButton::Right);
    EXPECT_EQ(safeModeFlags(""), expected);
  }
  const auto& boxes = host.backend->messageBoxes();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0].text,
            "Remove and re-add (or offline and online) plug-in for change to take effect");
  EXPECT_EQ(boxes[0].caption, "VST: effSetSpeakerArrangement setting tweak");
  host.driver->answerNextMenu("");
  host.driver->click(host.dialog, {names.left + 4, names.top - 4}, 0, winsys::MouseButton::Right);
  EXPECT_EQ(safeModeFlags(""), 0) << "dismissed";
  EXPECT_EQ(boxes.size(), 2u);
}

// Two selected inputs, the second reversed: one knob step right (4 * 1638 of 0x8000 travel) in
// the top row's mode moves the first by d and the second back, limited to the visible room, and
// reports each value with the end of the gesture.
TEST(EditorNames, GroupKnobStepsInTheRowsModeScaleWithTheKeysAndStopAtTheRoomsEdge) {
  const double step = 4 * 1638 * 0.1 / 32768;
  const struct {
    int mode;
    unsigned modifiers;
    double InputChannel::*field;
    double start, moved;  // the reversed input starts at -0.2 and moves the other way
    std::size_t reports;  // a value and its end per field and input
  } cases[] = {{kGroupLeftRight, 0, &InputChannel::x, 0.2, step, 8},
               {kGroupLeftRight, kModControl, &InputChannel::x, 0.2, step / 4, 8},
               {kGroupLeftRight, kModShift, &InputChannel::x, 0.2, step, 8},
               {kGroupLeftRight, 0, &InputChannel::x, 0.99, 0.01, 8},
               {kGroupLowHigh, 0, &InputChannel::z, 0.2, step, 12},
               {kGroupDiffusionBias, 0, &InputChannel::diffuseBias, 0.2, step, 4}};
  for (const auto& c : cases) {
    BehaviourHost host(2, 4);
    for (int i = 0; i < 2; ++i) {
      host.input(i).*c.field = i == 0 ? c.start : -0.2;
      host.input(i).selected = 1;
    }
    host.input(1).reverse = 1;
    host.choose(item::kGroupMode, c.mode);
    host.key(item::kGroupKnob, VK_RIGHT, c.modifiers);
    EXPECT_NEAR(host.input(0).*c.field, c.start + c.moved, 1e-12) << c.mode << " " << c.modifiers;
    EXPECT_NEAR(host.input(1).*c.field, -0.2 - c.moved, 1e-12) << c.mode << " " << c.modifiers;
    ASSERT_EQ(host.reports.size(), c.reports) << c.mode;
    EXPECT_EQ(host.reports[1], end(host.reports[0].index)) << c.mode;
  }
}

TEST(EditorNames, ResetAndInvertActInTheirRowsMode) {
  BehaviourHost host(3, 4);
  for (int i = 0; i < 3; ++i) {
    host.input(i).x = 0.5;
    host.input(i).y = -0.25;
    host.input(i).diffuse = 0.75;
    host.input(i).selected = i != 1;
  }
  host.click(item::kGroupInvert + 1);  // "Rotate": half a turn
  EXPECT_EQ(host.input(0).x, -0.5);
  EXPECT_EQ(host.input(2).y, 0.25);
  EXPECT_EQ(host.input(1).x, 0.5) << "not selected";
  const int x0 = inputParameterIndex(0, kInX);
  const int x2 = inputParameterIndex(2, kInX);
  EXPECT_EQ(host.reports,
            (Reports{automate(x0, 0.25f), end(x0), automate(x0 + 1, 0.625f), end(x0 + 1),
                     automate(x2, 0.25f), end(x2), automate(x2 + 1, 0.625f), end(x2 + 1)}));
  host.reports.clear();
  host.click(item::kGroupReset + 2);  // "Diffusion level"
  EXPECT_EQ(host.input(0).diffuse, 0.0);
  EXPECT_EQ(host.input(1).diffuse, 0.75);
  const int d0 = inputParameterIndex(0, kInDiffuse);
  const int d2 = inputParameterIndex(2, kInDiffuse);
  EXPECT_EQ(host.reports, (Reports{automate(d0, 0.0f), end(d0), automate(d2, 0.0f), end(d2)}));
}

}  // namespace
