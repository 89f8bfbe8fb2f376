// What the editor's controls show after a state block is loaded, walking the control list, and that
// no refresh counts as an edit; the centre trim's texts; the names of the speaker strip.
#include <cmath>
#include <map>

#include "editor/editor_dialog.h"
#include "host/services/fader_law.h"
#include "plugin/host_api.h"
#include "plugin/state_chunk.h"
#include "tests/editor/editor_host.h"
#include "tests/model/model_fixture.h"

namespace {

// The host's own fader law, for a linear level; the editor takes silence as -150 dB.
int faderAt(double linear) {
  const double levelDb = std::max(20.0 * std::log10(linear), -150.0);
  return static_cast<int>(std::lround(dbToFaderPosition(levelDb)));
}

// One control's state as the window system holds it, in a few words.
std::string describe(const EditorHost& host, const EditorControl& c) {
  const std::string enabled = host.enabled(c.id) ? " enabled 1" : " enabled 0";
  switch (c.cls) {
    case ControlClass::Edit:
      return "text " + host.text(c.id) + enabled;
    case ControlClass::Label:
      return enabled.substr(1);
    case ControlClass::Button:
      return "check " + std::to_string(host.send(c.id, BM_GETCHECK)) + enabled;
    case ControlClass::Combo: {
      const std::vector<std::string> items = host.comboItems(c.id);
      const int chosen = host.selection(c.id);
      return "choice " + std::to_string(chosen) + "/" + std::to_string(items.size()) + " " +
             (chosen >= 0 ? items[static_cast<std::size_t>(chosen)] : "");
    }
    case ControlClass::Fader: {
      const auto& fader = host.control<winsys::Fader>(c.id);
      return "position " + std::to_string(fader.position()) + " tick " +
             std::to_string(fader.tick()) + " " + fader.valueText();
    }
    case ControlClass::HotTrack: {
      const auto* bitmap = reinterpret_cast<DAUB_IBitmap*>(host.send(c.id, BM_GETIMAGE));
      const int flag = static_cast<int>(c.flag);
      return bitmap == buttonImages.on[flag].bitmap    ? "on"
             : bitmap == buttonImages.off[flag].bitmap ? "off"
                                                       : "other";
    }
    default:
      return "?";
  }
}

// 20 inputs seen from the fifth on, in "LFE" mode; six speakers of a user setup, the fourth an LFE,
// in "Influence" mode; every value distinct.
std::vector<unsigned char> distinctSetup() {
  const RecordingHost recording;
  auto p = makeInstance(20);
  setSpeakerCount(*p, 6);
  ModelState& m = p->model;
  for (int i = 0; i < 20; ++i) {
    InputChannel& input = m.inputs[i];
    input.lfeSend = 0.05 * (i + 1);
    input.mute = i % 3 == 0;
    input.solo = i % 4 == 1;
    input.reverse = i % 5 == 2;
  }
  for (int s = 0; s < 6; ++s) m.speakers[s].influence = 0.25 * (s + 1);
  m.speakers[1].mute = 1;
  m.speakers[2].solo = 1;
  m.speakers[3].isLfe = 1;
  m.optionFlags = kOptionRelativeInfluence | kOptionNormalizeOff | 0x0101;
  m.spaceScaleX = 0.5;
  m.spaceScaleY = 1.2;
  m.spaceScaleZ = 2.0;
  m.centerTrim = 0.5;
  p->view.zoom = 0.3;
  p->editor.inputFaderOffset = 4;
  p->editor.groupKnobModes[0] = 3;
  p->editor.groupKnobModes[1] = 12;
  p->editor.groupKnobModes[2] = 60;
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(*p, &data);
  const auto* bytes = static_cast<const unsigned char*>(data);
  return {bytes, bytes + length};
}

std::map<int, std::string> expectedForDistinctSetup() {
  const std::string trim = "position " + std::to_string(faderAt(0.5)) + " tick 708 -6.0";
  std::map<int, std::string> expected = {
      {item::kInputCount, "text 20 enabled 1"},
      {item::kSpeakerCount, "text 6 enabled 1"},
      {item::kSpeakersLabel, "enabled 1"},
      {item::kLayout, "choice 0/11 user setup"},
      {item::kLfe, "check 1 enabled 1"},
      {item::kGroupMode, "choice 3/15 Back left/Front right"},
      {item::kGroupMode + 1, "choice 12/15 To speaker C"},
      {item::kGroupMode + 2, "choice 14/15 To speaker F"},
      {item::kRelative, "check 1 enabled 1"},
      {item::kAbsolute, "check 0 enabled 1"},
      {item::kNormalize, "check 1 enabled 0"},
      {item::kSpaceX, "position 250 tick 500 "},
      {item::kSpaceX + 1, "position 600 tick 500 "},
      {item::kSpaceX + 2, "position 1000 tick 500 "},
      {item::kZoom, "position 235 tick 447 "},
      {item::kCenterTrim, trim},
      {item::kCenterTrimText, "text -6.0 enabled 1"},
      {item::kInputFaderMode, "choice 1/2 LFE"},
      {item::kSpeakerFaderMode, "choice 1/2 Influence"},
  };
  for (int row = 0; row < kStripRows; ++row) {
    const int i = 4 + row;
    expected[item::kInputFader + row] =
        "position " + std::to_string(faderAt(0.05 * (i + 1))) + " tick 708 ";
    expected[item::kInputMute + row] = i % 3 == 0 ? "on" : "off";
    expected[item::kInputSolo + row] = i % 4 == 1 ? "on" : "off";
    expected[item::kInputReverse + row] = i % 5 == 2 ? "on" : "off";
  }
  for (int s = 0; s < 6; ++s) {
    expected[item::kSpeakerFader + s] = "position " + std::to_string(125 * (s + 1)) + " tick 500 ";
    expected[item::kSpeakerMute + s] = s == 1 ? "on" : "off";
    expected[item::kSpeakerSolo + s] = s == 2 ? "on" : "off";
  }
  return expected;
}

bool refreshedByTheTimer(const EditorControl& c) {
  return c.shows != Shows::Nothing && c.shows != Shows::StripMeter &&
         c.shows != Shows::InputDisplay && c.shows != Shows::SpeakerDisplay;
}

TEST(EditorRefresh, EveryControlShowsTheLoadedState) {
  EditorHost host;
  host.open();
  std::vector<unsigned char> state = distinctSetup();
  host.dispatch(effSetChunk, 0, static_cast<VstIntPtr>(state.size()), state.data());
  host.tick();
  const std::map<int, std::string> expected = expectedForDistinctSetup();
  std::size_t checked = 0;
  for (const EditorControl& control : kEditorControls) {
    if (!refreshedByTheTimer(control) || !host.shown(control.id)) continue;
    ASSERT_TRUE(expected.contains(control.id)) << control.id;
    EXPECT_EQ(describe(host, control), expected.at(control.id)) << control.id;
    ++checked;
  }
  EXPECT_EQ(checked, expected.size());
  EXPECT_EQ(host.plugin().editor.groupKnobModes[2], 14) << "clamped to the last mode";
  host.tick(1000);  // past the typed-edit delay: the trim's "-6.0" is not read back as an edit
  EXPECT_EQ(host.reports, std::vector<Report>{});
  EXPECT_EQ(host.plugin().model.centerTrim, 0.5);
  EXPECT_EQ(host.plugin().inputCount(), 20);
}

TEST(EditorRefresh, CentreTrimShowsDecibelsOrMinusInfinity) {
  const std::pair<double, const char*> cases[] = {{4.0, "12.0"},  {1.0, "0.0"},
                                                  {0.5, "-6.0"},  {1.1e-6, "-119.2"},
                                                  {1e-6, "-inf"}, {0.0, "-inf"}};
  EditorHost host;
  host.open();
  for (const auto& [trim, text] : cases) {
    host.plugin().model.centerTrim = trim;
    host.plugin().model.changeFlags |= kChangeLevels;
    host.tick();
    EXPECT_EQ(host.text(item::kCenterTrimText), text) << trim;
    const auto& fader = host.control<winsys::Fader>(item::kCenterTrim);
    EXPECT_EQ(fader.valueText(), text);
    EXPECT_EQ(fader.position(), std::min(1000, faderAt(trim))) << trim;
  }
}

// Rows of the names bitmap are compared as pictures: the same text on the same fill gives the
// same pixels.
bool sameRows(const PannerPlugin& plugin, int rowA, int rowB) {
  DAUB_IBitmap* names = plugin.editor.namesBitmap;
  const int rowHeight = plugin.view.viewScale / 16;
  for (int y = 0; y < rowHeight; ++y) {
    for (int x = 0; x < names->getWidth(); ++x) {
      if (hostApi.DAUB_GetPixel(names, x, rowA * rowHeight + y) !=
          hostApi.DAUB_GetPixel(names, x, rowB * rowHeight + y)) {
        return false;
      }
    }
  }
  return true;
}

// In a user setup the LFE speaker's row reads "LFE" whatever its name; a preset shows the name.
TEST(EditorRefresh, SpeakerNamesShowLfeInAUserSetup) {
  EditorHost host;
  host.open();
  PannerPlugin& p = host.plugin();
  for (const bool userSetup : {true, false}) {
    setSpeakerCount(p, 4);
    if (!userSetup) p.model.layoutPreset = 2;
    copyChannelName(p.model.speakers[0].name, "LFE");
    copyChannelName(p.model.speakers[2].name, "sub");
    p.model.speakers[2].isLfe = 1;
    copyChannelName(p.model.speakers[1].name, "sub");
    p.model.changeFlags |= kChangeAll;
    host.tick();
    EXPECT_EQ(sameRows(p, kStripRows + 0, kStripRows + 2), userSetup);
    EXPECT_EQ(sameRows(p, kStripRows + 0, kStripRows + 1), false) << "odd rows are darker";
  }
}

}  // namespace
