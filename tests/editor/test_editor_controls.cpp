// The dialog's controls operated as a user does, in the host's headless window system: what each
// changes in the model and exactly which automation the host receives.
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "model/layouts.h"
#include "plugin/host_api.h"
#include "tests/editor/editor_host.h"

namespace {

using Reports = std::vector<Report>;
using ValueOf = double (*)(const PannerPlugin&);
constexpr auto automate = BehaviourHost::automate;
constexpr auto end = BehaviourHost::end;
constexpr double kDbToNeper = 0.11512925464970228;

int inputIndex(int input, int parameter) {
  return inputParameterIndex(input, parameter);
}

TEST(EditorControls, TypedCountsApplyHalfASecondAfterTheLastKey) {
  const struct {
    int edit;
    const char* text;
    int inputs, speakers;
  } cases[] = {{item::kInputCount, "0", 2, 4},   {item::kInputCount, "65", 2, 4},
               {item::kInputCount, "two", 2, 4}, {item::kInputCount, "2", 2, 4},
               {item::kSpeakerCount, "7", 2, 7}, {item::kInputCount, "64", 64, 4}};
  for (const auto& c : cases) {
    BehaviourHost host(2, 4);
    host.typeInto(c.edit, c.text);
    host.plugin().model.changeFlags.fetch_or(kChangeLevels);  // the host automates meanwhile
    host.tick(450);
    const auto counts = [&host] {
      return std::make_pair(host.plugin().inputCount(), host.plugin().speakerCount());
    };
    EXPECT_EQ(counts(), std::make_pair(2, 4)) << c.text << ": not yet";
    host.tick(50);
    EXPECT_EQ(counts(), std::make_pair(c.inputs, c.speakers)) << c.text;
    const bool applied = c.inputs != 2 || c.speakers != 4;
    EXPECT_EQ(host.plugin().host.pendingArrangement, applied ? 0x10402u : 0u) << c.text;
    EXPECT_EQ(host.reports, Reports{}) << c.text;
    host.plugin().model.changeFlags.fetch_or(kChangeLevels);
    host.tick(50);
    EXPECT_EQ(host.text(c.edit),
              std::to_string(c.edit == item::kInputCount ? c.inputs : c.speakers))
        << c.text << ": once applied, a refresh shows the count again";
  }
  BehaviourHost host(2, 4);  // every key restarts the delay
  host.typeInto(item::kInputCount, "1");
  host.tick(400);
  host.driver->type("2");
  host.tick(400);
  EXPECT_EQ(host.plugin().inputCount(), 2);
  host.tick(100);
  EXPECT_EQ(host.plugin().inputCount(), 12);
}

TEST(EditorControls, TypedTrimIsLimitedToFourAndReportedOnce) {
  const struct {
    const char* text;
    double trim;
    Reports reports;
  } steps[] = {{"20", 4.0, {automate(3, 1.0f), end(3)}},
               {"30", 4.0, {}},
               {"-200", 0.0, {automate(3, 0.0f), end(3)}},
               {"-300", 0.0, {}},
               {"not a number", 1.0, {automate(3, 0.25f), end(3)}},
               {"-6", std::exp(-6 * kDbToNeper), {automate(3, 0.12529f), end(3)}}};
  BehaviourHost host(2, 4);
  for (const auto& step : steps) {
    host.reports.clear();
    host.typeInto(item::kCenterTrimText, step.text);
    host.plugin().model.changeFlags.fetch_or(kChangeLevels);
    host.tick(500);
    EXPECT_DOUBLE_EQ(host.plugin().model.centerTrim, step.trim) << step.text;
    EXPECT_EQ(host.reports, step.reports) << step.text;
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
  constexpr int nIn = 4;
  constexpr unsigned kCtrlAlt = kModControl | kModAlt;
  const struct {
    int id;
    unsigned modifiers;
    std::vector<int> flags;  // the button's flag on the four channels, from 1 1 0 1
    int parameter;           // the clicked channel's, reported with its new flag; -1 none
  } cases[] = {
      // clang-format off
      {item::kInputMute + 2, 0, {1, 1, 1, 1}, inputIndex(2, kInMute)},
      {item::kInputMute + 2, kModControl, {0, 0, 0, 0}, inputIndex(2, kInMute)},
      {item::kInputMute + 2, kCtrlAlt, {0, 0, 1, 0}, inputIndex(2, kInMute)},
      {item::kInputSolo + 1, 0, {1, 0, 0, 1}, inputIndex(1, kInSolo)},
      {item::kInputReverse + 3, kCtrlAlt, {0, 0, 0, 1}, -1},
      {item::kSpeakerSolo + 1, kModControl, {0, 0, 0, 0}, speakerParameterIndex(nIn, 1, kSpkSolo)},
      {item::kSpeakerMute + 3, 0, {1, 1, 0, 0}, speakerParameterIndex(nIn, 3, kSpkMute)},
      // clang-format on
  };
  for (const auto& c : cases) {
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

// A key on a fader (Home or End: SB_THUMBTRACK at the new position, then SB_ENDSCROLL) or a combo
// choice, and the value it sets. The trim fader also writes its text into the edit,
// which starts no typed-edit timer.
TEST(EditorControls, EachControlSetsItsValueAndReportsIt) {
  enum Action { kKey, kChoose };
  const double top = std::min(4.0, std::exp(hostApi.SLIDER2DB(1000) * kDbToNeper));
  char topText[16];
  std::snprintf(topText, sizeof topText, "%.1f", levelDb(top));
  const auto topReport = static_cast<float>(top / 4);
  const ValueOf trim = [](const PannerPlugin& p) { return p.model.centerTrim; };
  const ValueOf zoom = [](const PannerPlugin& p) { return p.view.zoom; };
  const float tiny = 1e-6f;
  const struct {
    int id;
    Action action;
    int arg;
    ValueOf value;
    double expected;
    Reports reports;
    const char* trimText = "0.0";
  } cases[] = {
      // clang-format off
      {item::kSpaceX, kKey, VK_END, [](const PannerPlugin& p) { return p.model.spaceScaleX; }, 2.0,
       {automate(0, 1.0f), automate(0, 1.0f), end(0)}},
      {item::kSpaceX + 2, kKey, VK_HOME, [](const PannerPlugin& p) { return p.model.spaceScaleZ; },
       2.0 * tiny, {automate(2, tiny), automate(2, tiny), end(2)}},
      {item::kZoom, kKey, VK_END, zoom, 0.85f + 0.1f, {}},
      {item::kCenterTrim, kKey, VK_END, trim, top,
       {automate(3, topReport), automate(3, topReport), end(3)}, topText},
      {item::kLayout, kChoose, 4, [](const PannerPlugin& p) { return 1.0 * p.model.layoutPreset; },
       4, {}},
      {item::kInputDisplay, kChoose, 1, [](const PannerPlugin& p) {
         return 1.0 * p.editor.inputFaderOffset; }, 4, {}},
      {item::kSpeakerDisplay, kChoose, 1, [](const PannerPlugin& p) {
         return 1.0 * p.editor.speakerFaderOffset; }, 4, {}},
      // clang-format on
  };
  for (const auto& c : cases) {
    BehaviourHost host(20, 20);
    host.plugin().model.dirtyInputs = 0;
    if (c.action == kKey) host.key(c.id, c.arg);
    if (c.action == kChoose) host.choose(c.id, c.arg);
    EXPECT_DOUBLE_EQ(c.value(host.plugin()), c.expected) << c.id;
    EXPECT_EQ(host.reports, c.reports) << c.id;
    if (c.action == kKey) {  // the parameters among the faders reach the gains, the view's zoom not
      EXPECT_EQ(host.plugin().model.dirtyInputs != 0, !c.reports.empty()) << c.id;
    }
    EXPECT_EQ(host.text(item::kCenterTrimText), c.trimText) << c.id;
    host.tick(1000);
    EXPECT_EQ(host.reports.size(), c.reports.size()) << c.id << ": no typed-edit timer";
  }
  BehaviourHost host(3, 5);
  host.choose(item::kLayout, 5);
  EXPECT_EQ(host.plugin().speakerCount(), 6) << "5.1 surround";
  EXPECT_EQ(host.plugin().host.pendingArrangement, 0x10503u);
  EXPECT_EQ(host.plugin().model.gainRows, -1);
  host.tick();
  EXPECT_EQ(host.selection(item::kLayout), 5);
}

// One step right on input row `row`'s fader (10 of 1000) moves the inputs `moved` by as many
// fader steps each; with Control+Alt every input takes the clicked row's new value.
TEST(EditorControls, InputFadersMoveTheSelectedGroupByEqualSteps) {
  const struct {
    int row;
    unsigned modifiers;
    std::vector<int> moved;
  } cases[] = {{0, 0, {0, 2}}, {1, 0, {1}}, {1, kModControl, {1}}, {1, kModControl | kModAlt, {1}}};
  const double gains[] = {1.0, 0.7, 0.25};
  for (const auto& c : cases) {
    BehaviourHost host(3, 4);
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
      const double kept = moved ? host.input(i).gain : gains[i];
      const bool all = c.modifiers == (kModControl | kModAlt);
      EXPECT_EQ(host.input(i).gain, all ? host.input(c.row).gain : kept) << i;
    }
  }
}

TEST(EditorControls, InputFadersInLfeModeMoveTheSend) {
  BehaviourHost host(2, 4);
  host.choose(item::kInputFaderMode, 1);
  host.key(item::kInputFader + 1, VK_END);
  const double top = std::min(4.0, std::exp(hostApi.SLIDER2DB(1000) * kDbToNeper));
  EXPECT_EQ(host.input(1).lfeSend, top);
  EXPECT_EQ(host.input(1).gain, 1.0);
  const int send = inputIndex(1, kInLfeSend);
  EXPECT_EQ(host.reports, (Reports{automate(send, static_cast<float>(top / 4)), end(send)}));
}

// End on speaker 1's fader in "Influence" mode; Control+Alt gives every speaker the value.
TEST(EditorControls, SpeakerFadersSetGainOrInfluence) {
  for (const unsigned modifiers : {0u, kModControl | kModAlt}) {
    BehaviourHost host(2, 4);
    host.choose(item::kSpeakerFaderMode, 1);
    host.reports.clear();
    host.key(item::kSpeakerFader + 1, VK_END, modifiers);
    for (int s = 0; s < 4; ++s) {
      EXPECT_EQ(host.speaker(s).influence, s == 1 || modifiers != 0 ? 2.0 : 1.0) << s;
    }
    const int index = speakerParameterIndex(2, 1, kSpkInfluence);
    EXPECT_EQ(host.reports, (Reports{automate(index, 1.0f), end(index)}));
    EXPECT_NE(host.plugin().model.changeFlags & kChangeSpeakers, 0u) << "the view redraws them";
  }
  BehaviourHost host(2, 4);
  host.key(item::kSpeakerFader, VK_HOME);
  EXPECT_LT(host.speaker(0).gain, 1e-6) << "gain mode";
  EXPECT_EQ(host.reports.size(), 2u);
}

TEST(EditorControls, InfluenceModeDecidesTheNormalisationBox) {
  const struct {
    int id;
    std::uint32_t flags;  // relative and normalise-off bits after the click
    bool checked, enabled;
  } steps[] = {{item::kRelative, 0x30000, true, false},
               {item::kAbsolute, 0x10000, false, true},
               {item::kNormalize, 0x00000, true, true},
               {item::kNormalize, 0x10000, false, true}};
  BehaviourHost host(2, 4);
  for (const auto& step : steps) {
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

}  // namespace
