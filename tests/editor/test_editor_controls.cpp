// The dialog's controls operated as a user does, in the host's headless window system: what each
// changes in the model and exactly which automation the host receives.
#include <cmath>
#include <string>
#include <vector>

#include "model/layouts.h"
#include "plugin/host_api.h"
#include "tests/editor/behaviour_host.h"

namespace {

using Reports = std::vector<Report>;
constexpr auto automate = BehaviourHost::automate;
constexpr auto end = BehaviourHost::end;

int inputIndex(int input, int parameter) {
  return inputParameterIndex(input, parameter);
}

TEST(EditorControls, TypedCountsApplyHalfASecondAfterTheLastKey) {
  struct Case {
    int edit;
    const char* text;
    int inputs;
    int speakers;
  };
  const Case cases[] = {{item::kInputCount, "0", 2, 4},   {item::kInputCount, "65", 2, 4},
                        {item::kInputCount, "two", 2, 4}, {item::kInputCount, "2", 2, 4},
                        {item::kSpeakerCount, "7", 2, 7}, {item::kInputCount, "64", 64, 4}};
  for (const Case& c : cases) {
    BehaviourHost host(2, 4);
    host.typeInto(c.edit, c.text);
    host.plugin().model.changeFlags.fetch_or(kChangeLevels);  // the host automates meanwhile
    host.tick(450);
    EXPECT_EQ(host.plugin().inputCount(), 2) << c.text << ": not yet";
    EXPECT_EQ(host.plugin().speakerCount(), 4) << c.text << ": not yet";
    host.tick(50);
    EXPECT_EQ(host.plugin().inputCount(), c.inputs) << c.text;
    EXPECT_EQ(host.plugin().speakerCount(), c.speakers) << c.text;
    const bool applied = c.inputs != 2 || c.speakers != 4;
    EXPECT_EQ(host.plugin().host.pendingArrangement, applied ? 0x10402u : 0u) << c.text;
    EXPECT_EQ(host.reports, Reports{}) << c.text;
    host.plugin().model.changeFlags.fetch_or(kChangeLevels);
    host.tick(50);
    EXPECT_EQ(host.text(c.edit),
              std::to_string(c.edit == item::kInputCount ? c.inputs : c.speakers))
        << c.text << ": once applied, a refresh shows the count again";
  }
}

TEST(EditorControls, EveryKeyRestartsTheCountDelay) {
  BehaviourHost host(2, 4);
  host.typeInto(item::kInputCount, "1");
  host.tick(400);
  host.driver->type("2");
  host.tick(400);
  EXPECT_EQ(host.plugin().inputCount(), 2);
  host.tick(100);
  EXPECT_EQ(host.plugin().inputCount(), 12);
}

TEST(EditorControls, TypedTrimIsLimitedToFourAndReportedOnce) {
  struct Step {
    const char* text;
    double trim;
    Reports reports;
  };
  const Step steps[] = {
      {"20", 4.0, {automate(3, 1.0f), end(3)}},
      {"30", 4.0, {}},
      {"-200", 0.0, {automate(3, 0.0f), end(3)}},
      {"-300", 0.0, {}},
      {"not a number", 1.0, {automate(3, 0.25f), end(3)}},
      {"-6", std::exp(-6 * 0.11512925464970228), {automate(3, 0.12529f), end(3)}}};
  BehaviourHost host(2, 4);
  for (const Step& step : steps) {
    host.reports.clear();
    host.typeInto(item::kCenterTrimText, step.text);
    host.plugin().model.changeFlags.fetch_or(kChangeLevels);
    host.tick(500);
    EXPECT_DOUBLE_EQ(host.plugin().model.centerTrim, step.trim) << step.text;
    ASSERT_EQ(host.reports.size(), step.reports.size()) << step.text;
    for (std::size_t k = 0; k < step.reports.size(); ++k) {
      EXPECT_EQ(host.reports[k].opcode, step.reports[k].opcode) << step.text;
      EXPECT_NEAR(host.reports[k].value, step.reports[k].value, 1e-5) << step.text;
    }
    EXPECT_EQ(host.text(item::kCenterTrimText), step.text) << "the edit keeps what was typed";
  }
}

// The flag a strip button shows, on channel k of its strip.
std::uint8_t& flagOf(BehaviourHost& host, const EditorControl& button, int k) {
  constexpr std::uint8_t InputChannel::*kInput[] = {&InputChannel::mute, &InputChannel::solo,
                                                    &InputChannel::reverse};
  constexpr std::uint8_t Speaker::*kSpeaker[] = {&Speaker::mute, &Speaker::solo};
  const auto flag = static_cast<int>(button.flag);
  return button.strip == Strip::Inputs ? host.input(k).*kInput[flag]
                                       : host.speaker(k).*kSpeaker[flag];
}

TEST(EditorControls, StripButtonsToggleOrClearWithControl) {
  struct Case {
    int id;
    unsigned modifiers;
    std::vector<int> flags;  // the button's flag on the four channels, from 1 1 0 1
    int parameter;           // the clicked channel's, reported with its new flag; -1 none
  };
  constexpr int nIn = 4;
  const Case cases[] = {
      {item::kInputMute + 2, 0, {1, 1, 1, 1}, inputIndex(2, kInMute)},
      {item::kInputMute + 2, kModControl, {0, 0, 0, 0}, inputIndex(2, kInMute)},
      {item::kInputMute + 2, kModControl | kModAlt, {0, 0, 1, 0}, inputIndex(2, kInMute)},
      {item::kInputSolo + 1, 0, {1, 0, 0, 1}, inputIndex(1, kInSolo)},
      {item::kInputReverse + 3, kModControl | kModAlt, {0, 0, 0, 1}, -1},
      {item::kSpeakerSolo + 1, kModControl, {0, 0, 0, 0}, speakerParameterIndex(nIn, 1, kSpkSolo)},
      {item::kSpeakerMute + 3, 0, {1, 1, 0, 0}, speakerParameterIndex(nIn, 3, kSpkMute)},
  };
  for (const Case& c : cases) {
    BehaviourHost host(nIn, 4);
    const EditorControl& button = *findEditorControl(c.id);
    for (int k = 0; k < 4; ++k) flagOf(host, button, k) = k == 2 ? 0 : 1;
    host.click(c.id, c.modifiers);
    std::vector<int> flags;
    for (int k = 0; k < 4; ++k) flags.push_back(flagOf(host, button, k));
    EXPECT_EQ(flags, c.flags) << c.id;
    const float reported = flags[static_cast<std::size_t>(button.row)];
    const Reports expected =
        c.parameter < 0 ? Reports{} : Reports{automate(c.parameter, reported), end(c.parameter)};
    EXPECT_EQ(host.reports, expected) << c.id;
  }
}

using ValueOf = double (*)(const PannerPlugin&);

// Home or End on a fader: SB_THUMBTRACK at the new position, then SB_ENDSCROLL.
TEST(EditorControls, RoomZoomAndTrimFadersSetTheirValueAndReportIt) {
  struct Case {
    int id;
    int key;
    ValueOf value;
    double expected;
    Reports reports;
  };
  const float tiny = 1e-6f;
  const Case cases[] = {
      {item::kSpaceX,
       VK_END,
       [](const PannerPlugin& p) { return p.model.spaceScaleX; },
       2.0,
       {automate(0, 1.0f), automate(0, 1.0f), end(0)}},
      {item::kSpaceX + 2,
       VK_HOME,
       [](const PannerPlugin& p) { return p.model.spaceScaleZ; },
       2.0 * tiny,
       {automate(2, tiny), automate(2, tiny), end(2)}},
      {item::kZoom, VK_HOME, [](const PannerPlugin& p) { return p.view.zoom; }, 0.1f, {}},
      {item::kZoom, VK_END, [](const PannerPlugin& p) { return p.view.zoom; }, 0.85f + 0.1f, {}},
      {item::kCenterTrim,
       VK_HOME,
       [](const PannerPlugin& p) { return p.model.centerTrim; },
       0.0,
       {automate(3, 0.0f), automate(3, 0.0f), end(3)}},
  };
  for (const Case& c : cases) {
    BehaviourHost host(2, 4);
    host.key(c.id, c.key);
    EXPECT_EQ(c.value(host.plugin()), c.expected) << c.id;
    EXPECT_EQ(host.reports, c.reports) << c.id;
  }
}

TEST(EditorControls, TrimFaderWritesItsTextToTheEdit) {
  BehaviourHost host(2, 4);
  host.key(item::kCenterTrim, VK_HOME);
  EXPECT_EQ(host.text(item::kCenterTrimText), "-inf");
  host.key(item::kCenterTrim, VK_END);
  const double top = std::min(4.0, std::exp(hostApi.SLIDER2DB(1000) * 0.11512925464970228));
  EXPECT_DOUBLE_EQ(host.plugin().model.centerTrim, top);
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", levelDb(top));
  EXPECT_EQ(host.text(item::kCenterTrimText), text);
  EXPECT_EQ(host.plugin().inputCount(), 2) << "no typed-edit timer was started";
}

// One step right on input row `row`'s fader (10 of 1000) moves the inputs `moved` by as many
// fader steps each; with Control+Alt every input takes the clicked row's new value.
TEST(EditorControls, InputFadersMoveTheSelectedGroupByEqualSteps) {
  struct Case {
    int row;
    unsigned modifiers;
    std::vector<int> moved;
    bool allTakeIt;
  };
  const Case cases[] = {
      {0, 0, {0, 2}, false}, {1, 0, {1}, false}, {1, kModControl | kModAlt, {1}, true}};
  for (const Case& c : cases) {
    BehaviourHost host(3, 4);
    const double gains[] = {1.0, 0.7, 0.25};
    for (int i = 0; i < 3; ++i) {
      host.input(i).gain = gains[i];
      host.input(i).selected = i != 1;
    }
    host.plugin().model.changeFlags.fetch_or(kChangeLevels);
    host.tick();
    host.key(item::kInputFader + c.row, VK_RIGHT, c.modifiers);
    Reports expected;
    for (const int i : c.moved) {
      EXPECT_EQ(faderPositionOfLevel(host.input(i).gain), faderPositionOfLevel(gains[i]) + 10) << i;
      expected.push_back(
          automate(inputIndex(i, kInGain), static_cast<float>(host.input(i).gain / 4)));
    }
    for (const int i : c.moved) expected.push_back(end(inputIndex(i, kInGain)));
    EXPECT_EQ(host.reports, expected) << c.row;
    for (int i = 0; i < 3; ++i) {
      const bool moved = std::find(c.moved.begin(), c.moved.end(), i) != c.moved.end();
      if (c.allTakeIt) {
        EXPECT_EQ(host.input(i).gain, host.input(c.row).gain) << i;
      } else if (!moved) {
        EXPECT_EQ(host.input(i).gain, gains[i]) << i;
      }
    }
  }
}

TEST(EditorControls, InputFadersInLfeModeMoveTheSend) {
  BehaviourHost host(2, 4);
  host.choose(item::kInputFaderMode, 1);
  EXPECT_EQ(host.plugin().model.optionFlags & kOptionInputFaderModeMask, 1u);
  host.reports.clear();
  host.key(item::kInputFader + 1, VK_END);
  const double top = std::exp(hostApi.SLIDER2DB(1000) * 0.11512925464970228);
  EXPECT_EQ(host.input(1).lfeSend, std::min(top, 4.0));
  EXPECT_EQ(host.input(1).gain, 1.0);
  const int send = inputIndex(1, kInLfeSend);
  const auto reported = static_cast<float>(std::min(top, 4.0) / 4);
  EXPECT_EQ(host.reports, (Reports{automate(send, reported), end(send)}));
}

TEST(EditorControls, SpeakerFadersSetGainOrInfluence) {
  struct Case {
    int mode;
    unsigned modifiers;
    double Speaker::*field;
    int parameter;
    double value;  // of speaker 1 after End
    float reported;
  };
  const Case cases[] = {{1, 0, &Speaker::influence, kSpkInfluence, 2.0, 1.0f},
                        {1, kModControl | kModAlt, &Speaker::influence, kSpkInfluence, 2.0, 1.0f}};
  for (const Case& c : cases) {
    BehaviourHost host(2, 4);
    host.choose(item::kSpeakerFaderMode, c.mode);
    host.reports.clear();
    host.key(item::kSpeakerFader + 1, VK_END, c.modifiers);
    const bool all = c.modifiers != 0;
    for (int s = 0; s < 4; ++s) {
      EXPECT_EQ(host.speaker(s).*c.field, s == 1 || all ? c.value : 1.0) << s;
    }
    const int index = speakerParameterIndex(2, 1, c.parameter);
    EXPECT_EQ(host.reports, (Reports{automate(index, c.reported), end(index)}));
  }
  BehaviourHost host(2, 4);
  host.key(item::kSpeakerFader, VK_HOME);
  EXPECT_LT(host.speaker(0).gain, 1e-6) << "gain mode";
  EXPECT_EQ(host.reports.size(), 2u);
}

TEST(EditorControls, CombosSetLayoutFaderModesAndFirstRows) {
  struct Case {
    int id;
    int index;
    ValueOf value;
    double expected;
  };
  const Case cases[] = {
      {item::kLayout, 4, [](const PannerPlugin& p) { return double(p.model.layoutPreset); }, 4},
      {item::kSpeakerFaderMode, 1,
       [](const PannerPlugin& p) {
         return double(p.model.optionFlags & kOptionSpeakerFaderModeMask);
       },
       0x100},
      {item::kInputDisplay, 1,
       [](const PannerPlugin& p) { return double(p.editor.inputFaderOffset); }, 4},
      {item::kSpeakerDisplay, 1,
       [](const PannerPlugin& p) { return double(p.editor.speakerFaderOffset); }, 4},
      {item::kGroupMode + 2, 9,
       [](const PannerPlugin& p) { return double(p.editor.groupKnobModes[2]); }, 9},
  };
  for (const Case& c : cases) {
    BehaviourHost host(20, 20);
    host.choose(c.id, c.index);
    EXPECT_EQ(c.value(host.plugin()), c.expected) << c.id;
    EXPECT_EQ(host.reports, Reports{}) << c.id;
  }
  BehaviourHost host(3, 5);
  host.choose(item::kLayout, 5);
  EXPECT_EQ(host.plugin().speakerCount(), 6) << "5.1 surround";
  EXPECT_EQ(host.plugin().host.pendingArrangement, 0x10503u);
  EXPECT_EQ(host.plugin().model.gainRows, -1);
  host.tick();
  EXPECT_EQ(host.selection(item::kLayout), 5);
}

TEST(EditorControls, InfluenceModeDecidesTheNormalisationBox) {
  struct Step {
    int id;
    std::uint32_t flags;  // relative and normalise-off bits after the click
    bool checked;
    bool enabled;
  };
  const Step steps[] = {{item::kRelative, 0x30000, true, false},
                        {item::kAbsolute, 0x10000, false, true},
                        {item::kNormalize, 0x00000, true, true},
                        {item::kNormalize, 0x10000, false, true}};
  BehaviourHost host(2, 4);
  for (const Step& step : steps) {
    host.plugin().model.dirtyInputs = 0;
    host.click(step.id);
    EXPECT_EQ(host.plugin().model.optionFlags & 0x30000, step.flags) << step.id;
    EXPECT_EQ(host.send(item::kNormalize, BM_GETCHECK), step.checked ? BST_CHECKED : BST_UNCHECKED);
    EXPECT_EQ(host.enabled(item::kNormalize), step.enabled) << step.id;
    EXPECT_EQ(host.plugin().model.dirtyInputs, 3u) << "every gain row";
  }
  EXPECT_EQ(host.reports, Reports{});
}

// One host at a time: the window system is the process's current one.
TEST(EditorControls, LfeBoxGivesAndTakesTheFourthSpeakersRole) {
  {
    BehaviourHost host(2, 6);
    host.click(item::kLfe);
    EXPECT_EQ(host.speaker(3).isLfe, 1);
    EXPECT_STREQ(host.speaker(3).name, "LFE");
    host.speaker(5).isLfe = 1;
    host.click(item::kLfe);
    for (int s = 0; s < 6; ++s) EXPECT_EQ(host.speaker(s).isLfe, 0) << s;
    EXPECT_STREQ(host.speaker(3).name, "speaker D");
  }
  BehaviourHost three(2, 3);
  three.click(item::kLfe);
  for (int s = 0; s < 3; ++s) EXPECT_EQ(three.speaker(s).isLfe, 0) << "no fourth speaker";
}

// A loaded state refreshes every control; none of those changes is taken for the user's.
TEST(EditorControls, ARefreshFromTheModelIsNoEdit) {
  BehaviourHost host(2, 4);
  void* data = nullptr;
  const auto length = static_cast<VstIntPtr>(host.dispatch(effGetChunk, 0, 0, &data));
  const std::vector<unsigned char> before(static_cast<unsigned char*>(data),
                                          static_cast<unsigned char*>(data) + length);
  setInputCount(host.plugin(), 9);
  host.plugin().model.centerTrim = 0.5;
  host.plugin().model.changeFlags = kChangeAll;
  host.tick(1000);
  EXPECT_EQ(host.reports, Reports{});
  EXPECT_EQ(host.plugin().inputCount(), 9);
  EXPECT_EQ(host.plugin().model.centerTrim, 0.5);
  host.dispatch(effSetChunk, 0, length, const_cast<unsigned char*>(before.data()));
  host.tick(1000);
  EXPECT_EQ(host.plugin().inputCount(), 2);
  EXPECT_EQ(host.reports, Reports{});
}

}  // namespace
