// The editor dialog in the host's headless window system: opening and closing, the rows each strip
// shows, its "Display:" choice, the sizes at each display scale, and the meters.
#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "editor/editor_dialog.h"
#include "model/counts.h"
#include "plugin/host_api.h"
#include "tests/editor/editor_host.h"

namespace {

using Edges = std::tuple<int, int, int, int>;

Edges edgesOf(const ERect& r) {
  return {r.left, r.top, r.right, r.bottom};
}

TEST(EditorDialog, OpensInTheHostsFrameAndClosesTwiceInARow) {
  EditorHost host;
  ERect* rect = nullptr;
  ASSERT_EQ(host.dispatch(effEditGetRect, 0, 0, &rect), 1);
  EXPECT_EQ(edgesOf(*rect), Edges(0, 0, 520, 640)) << "before any editor";
  const std::size_t windowsBefore = host.system->windowCount();
  for (int round = 0; round < 2; ++round) {
    host.plugin().editor.lockInputs = 1;
    ASSERT_NE(host.open(), nullptr);
    const HWND first = host.dialog;
    ASSERT_NE(host.open(), nullptr) << "opening again replaces the dialog";
    EXPECT_NE(host.dialog, first);
    EXPECT_EQ(host.system->windowCount(), windowsBefore + 1 + kEditorControlCount);
    EXPECT_EQ(host.plugin().editor.lockInputs, 0);
    host.tick();
    ASSERT_EQ(host.dispatch(effEditGetRect, 0, 0, &rect), 1);
    EXPECT_EQ(edgesOf(*rect), Edges(0, 0, 851, 571)) << "stereo: the strips hold two rows";
    EXPECT_NE(host.plugin().editor.namesBitmap, nullptr);
    EXPECT_NE(host.plugin().view.viewFront, nullptr);

    host.plugin().editor.lockInputs = 1;
    host.dispatch(effEditClose);
    EXPECT_EQ(host.plugin().host.editorWindow, nullptr);
    EXPECT_EQ(host.plugin().editor.lockInputs, 0);
    EXPECT_EQ(host.plugin().editor.namesBitmap, nullptr);
    EXPECT_EQ(host.plugin().view.viewFront, nullptr);
    EXPECT_EQ(host.plugin().view.viewBack, nullptr);
    EXPECT_EQ(host.system->windowCount(), windowsBefore);
  }
}

// Both strips of a user setup with `count` channels: one row each up to sixteen, and from 17 on the
// "Display:" choice of the first row, in steps of four.
TEST(EditorDialog, ShowsOneRowPerChannelFromTheDisplayChoice) {
  const std::vector<std::string> all64 = {"1-16",  "5-20",  "9-24",  "13-28", "17-32",
                                          "21-36", "25-40", "29-44", "33-48", "37-52",
                                          "41-56", "45-60", "49-64"};
  const struct {
    int count, offset;
    std::vector<std::string> items;
    int rowsShown;
  } cases[] = {{1, 0, {}, 1},
               {16, 0, {}, 16},
               {17, 0, {"1-16", "5-17"}, 16},
               {17, 4, {"1-16", "5-17"}, 13},
               {64, 0, all64, 16},
               {64, 48, all64, 16}};
  EditorHost host;
  host.open();
  for (const auto& c : cases) {
    setInputCount(host.plugin(), c.count);
    setSpeakerCount(host.plugin(), c.count);
    host.plugin().editor.inputFaderOffset = c.offset;
    host.plugin().model.changeFlags |= kChangeCounts;
    host.tick();
    for (const EditorControl& control : kEditorControls) {
      if (control.strip == Strip::None) continue;
      const int rows = control.strip == Strip::Inputs ? c.rowsShown : std::min(c.count, 16);
      EXPECT_EQ(host.shown(control.id), control.row < rows) << control.id << " of " << c.count;
    }
    for (const int id : {item::kInputDisplay, item::kInputDisplayLabel, item::kSpeakerDisplay,
                         item::kSpeakerDisplayLabel}) {
      EXPECT_EQ(host.shown(id), c.count > 16) << id << " of " << c.count;
    }
    if (c.count <= 16) continue;
    EXPECT_EQ(host.comboItems(item::kInputDisplay), c.items) << c.count;
    EXPECT_EQ(host.selection(item::kInputDisplay), c.offset / 4) << c.count;
  }
}

// The strips are laid out at the scale the host reports for the dialog (100 % and 150 % are in the
// reference pictures); a host without GetWindowDPIScalingForDialog gets every size at 100 %.
TEST(EditorDialog, LaysOutTheStripsAtTheDialogsScale) {
  struct Case {
    int displayScale;
    bool hostTellsScale;
    int rowPitch;
    int buttonSide;
    int clientHeight;
  };
  const Case cases[] = {{384, false, 16, 12, 809}, {512, true, 32, 24, 1142}};
  for (const Case& c : cases) {
    EditorHost host(2, c.displayScale);
    if (!c.hostTellsScale) hostApi.GetWindowDPIScalingForDialog = nullptr;
    host.open();
    host.tick();
    const RECT first = host.rect(item::kInputFader);
    const RECT mute = host.rect(item::kInputMute + 1);
    EXPECT_EQ(host.rect(item::kInputFader + 1).top - first.top, c.rowPitch) << c.displayScale;
    EXPECT_EQ(std::make_pair(mute.right - mute.left, mute.bottom - mute.top),
              std::make_pair(c.buttonSide, c.buttonSide));
    EXPECT_EQ(first.bottom - first.top, c.rowPitch);
    EXPECT_EQ(host.clientRect().bottom, c.clientHeight);
    EXPECT_EQ(host.plugin().view.viewScale, c.hostTellsScale ? c.displayScale : 256);
  }
}

double meterDb(const EditorHost& host, int id) {
  return host.control<winsys::Meter>(id).levelDb(0);
}

// Each tick shows the peak since the last one, then lets it fall to 0.8 of itself; below 1e-8 it
// is gone. Rows past the count read -120 dB.
TEST(EditorDialog, MetersFallOnTheTimer) {
  EditorHost host;
  host.open();
  host.plugin().mix.inputPeaks[0] = 1.0;
  host.plugin().mix.inputPeaks[1] = 2e-8;
  host.plugin().mix.speakerPeaks[1] = 0.5;
  const double fall = 20 * std::log10(0.8);
  const std::tuple<int, double, double, double> expected[] = {
      {item::kInputMeter, 0.0, fall, 2 * fall},
      {item::kInputMeter + 1, -150.0, -150.0, -150.0},
      {item::kInputMeter + 2, -120.0, -120.0, -120.0},
      {item::kSpeakerMeter + 1, 20 * std::log10(0.5), 20 * std::log10(0.4), 20 * std::log10(0.32)},
      {item::kSpeakerMeter + 15, -120.0, -120.0, -120.0}};
  for (int tick = 0; tick < 3; ++tick) {
    host.tick();
    for (const auto& [id, tick0, tick1, tick2] : expected) {
      const double levels[] = {tick0, tick1, tick2};
      EXPECT_NEAR(meterDb(host, id), levels[tick], 1e-9) << id << " tick " << tick;
    }
  }
  EXPECT_NEAR(host.plugin().mix.inputPeaks[1], 2e-8 * 0.8 * 0.8 * 0.8, 1e-20);
  host.tick();
  EXPECT_EQ(host.plugin().mix.inputPeaks[1], 0.0) << "fell below 1e-8";
}

}  // namespace
