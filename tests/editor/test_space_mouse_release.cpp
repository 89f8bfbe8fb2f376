// Button up and double click in the space view: click selection, end-of-edit reports, the
// selection rectangle, the reset of the selected inputs and the position readout's text.
#include <cstring>

#include "editor/view/position_readout.h"
#include "space_mouse_fixture.h"

namespace {

TEST(FinishDrag, AClickSelectsAtTheGrabOnlyAnUnselectedInputTheRestAtReleaseWithoutReports) {
  const struct {
    const char* what;
    bool shift, ctrl;
    std::vector<int> before, atGrab, atRelease;  // input 0 is clicked
  } cases[] = {{"plain", false, false, {1, 2}, {0}, {0}},
               {"plain on a selected one", false, false, {0, 2}, {0, 2}, {0}},
               {"shift adds", true, false, {1}, {1}, {0, 1}},
               {"ctrl removes", false, true, {0, 1}, {0, 1}, {1}},
               {"ctrl shift toggles", true, true, {0, 2}, {0, 2}, {2}}};
  for (const auto& c : cases) {
    auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
    selectInputs(*plugin, c.before);
    HeldKeys keys(c.shift, c.ctrl, false);
    RecordingHost host;
    ASSERT_TRUE(grab(*plugin, 150, 50));
    EXPECT_EQ(selectedInputs(*plugin), c.atGrab) << c.what;
    EXPECT_EQ(plugin->model.changeFlags.load(), kChangeEditor | kChangeSpeakers) << c.what;
    plugin->model.changeFlags = 0;
    finishDrag(*plugin);
    EXPECT_EQ(selectedInputs(*plugin), c.atRelease) << c.what;
    EXPECT_EQ(plugin->model.changeFlags.load(), kChangeEditor | kChangeInputs) << c.what;
    EXPECT_TRUE(host.calls().empty()) << c.what;
  }
}

TEST(FinishDrag, AWholeGestureReportsEachStepThenEndsEveryValue) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
  selectInputs(*plugin, {0});
  RecordingHost host;
  ASSERT_TRUE(grab(*plugin, 150, 50));
  EXPECT_TRUE(drag(*plugin, 160, 50));
  EXPECT_TRUE(drag(*plugin, 160, 40));
  finishDrag(*plugin);
  const std::vector<Report> expected{automate(5, 0.6), automate(6, 0.5), automate(7, 0.0),
                                     automate(5, 0.6), automate(6, 0.6), automate(7, 0.0),
                                     automate(5, 0.6), endEdit(5),       automate(6, 0.6),
                                     endEdit(6),       automate(7, 0.0), endEdit(7)};
  EXPECT_EQ(reportsOf(host), expected);
  EXPECT_EQ(plugin->view.dragInput, -1);
  EXPECT_EQ(plugin->view.dragMoves, 0);
}

TEST(FinishDrag, SpeakerEndsItsEditOnlyAfterMoving) {
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}});
  RecordingHost host;
  ASSERT_TRUE(grab(*plugin, 150, 50));
  finishDrag(*plugin);
  EXPECT_TRUE(host.calls().empty());

  ASSERT_TRUE(grab(*plugin, 150, 50));
  EXPECT_TRUE(drag(*plugin, 130, 50));
  host.clear();
  finishDrag(*plugin);
  EXPECT_EQ(reportsOf(host), (std::vector<Report>{automate(15, 0.3), endEdit(15), automate(16, 0.5),
                                                  endEdit(16), automate(17, 0.0), endEdit(17)}));
  EXPECT_EQ(plugin->view.dragSpeaker, -1);
}

TEST(BandSelection, SelectsTheDotsInsideTheHalfOpenRectangle) {
  // Dots at (10, 10), (49, 49), (50, 30), (30, 50), (9, 30), and input 5 whose floor (40, 40) is
  // inside but which is drawn lowered at (55, 55). Inputs 1 and 2 start selected.
  const struct {
    const char* what;
    bool shift, ctrl, locked;
    int fromX, fromY, toX, toY;
    std::vector<int> after;
  } cases[] = {{"plain", false, false, false, 10, 10, 50, 50, {0, 1}},
               {"drawn backwards", false, false, false, 50, 50, 10, 10, {0, 1}},
               {"shift keeps the rest", true, false, false, 10, 10, 50, 50, {0, 1, 2}},
               {"ctrl toggles", false, true, false, 10, 10, 50, 50, {0}},
               {"one pixel wider", false, false, false, 9, 10, 51, 51, {0, 1, 2, 3, 4}},
               {"locked inputs", false, false, true, 10, 10, 50, 50, {1, 2}}};
  for (const auto& c : cases) {
    auto plugin = makeRoom({{-0.9, 0.9, 0.0},
                            {-0.51, 0.51, 0.0},
                            {-0.5, 0.7, 0.0},
                            {-0.7, 0.5, 0.0},
                            {-0.91, 0.7, 0.0},
                            {-0.6, 0.6, -1.0}});
    selectInputs(*plugin, {1, 2});
    plugin->editor.lockInputs = c.locked ? 1 : 0;
    HeldKeys keys(c.shift, c.ctrl, false);
    RecordingHost host;
    startBandSelect(*plugin, c.fromX, c.fromY);
    plugin->model.changeFlags = 0;
    finishBandSelect(*plugin, c.toX, c.toY, kViewSize, kViewSize);
    EXPECT_EQ(selectedInputs(*plugin), c.after) << c.what;
    EXPECT_EQ(plugin->view.bandActive, 0) << c.what;
    EXPECT_EQ(plugin->model.changeFlags.load(), kChangeEditor | kChangeInputs) << c.what;
    EXPECT_TRUE(host.calls().empty()) << c.what;
  }
}

// Inputs 0 (0.5, -0.25, 0), 1 (0.5, 0.5, 0.3), 2 (0.1, 0.1, 0.4) and 3 at the centre: a raised
// input comes down, one on the floor goes to the centre; each changed value is reported and ended.
TEST(ResetPositions, RaisedInputsComeDownAndFloorInputsGoToTheCentreUnlessLocked) {
  const std::vector<Place> start{{0.5, -0.25, 0.0}, {0.5, 0.5, 0.3}, {0.1, 0.1, 0.4}, {0, 0, 0}};
  const struct {
    std::vector<int> selected;
    bool locked;
    std::vector<Place> after;
    std::vector<Report> reports;  // x, y and z for a height reset, x and y on the floor
  } cases[] = {{{0, 1},
                false,
                {{0, 0, 0}, {0.5, 0.5, 0}, start[2], start[3]},
                {automate(5, 0.0), endEdit(5), automate(6, 0.0), endEdit(6), automate(7, 0.0),
                 endEdit(7), automate(15, 0.5), endEdit(15), automate(16, 0.5), endEdit(16),
                 automate(17, 0.0), endEdit(17)}},
               {{0},
                false,
                {{0, 0, 0}, start[1], start[2], start[3]},
                {automate(5, 0.0), endEdit(5), automate(6, 0.0), endEdit(6)}},
               {{3}, false, start, {}},
               {{1}, true, start, {}}};
  for (const auto& c : cases) {
    auto plugin = makeRoom(start);
    selectInputs(*plugin, c.selected);
    plugin->editor.lockInputs = c.locked ? 1 : 0;
    RecordingHost host;
    resetPositions(*plugin);
    for (int i = 0; i < 4; ++i) expectPlace(plugin->model.inputs[i], c.after[i]);
    EXPECT_EQ(reportsOf(host), c.reports);
    std::uint64_t rows = 0;
    for (const int i : c.selected) rows |= c.reports.empty() ? 0 : std::uint64_t{1} << i;
    EXPECT_EQ(plugin->model.dirtyInputs, rows);
    EXPECT_EQ(plugin->model.changeFlags.load(), c.reports.empty() ? 0u : kChangeInputs);
  }
}

// The readout of the info label: percent and degrees without the last separator.
TEST(ReadoutText, PercentAndDegreesWithoutTheLastSeparator) {
  const struct {
    double x, y, z;
    const char* text;
  } cases[] = {{0.5, 0.5, 0.0, "50%R  50%F  (45 deg)"},
               {-0.25, 0.0, 0.0, "25%L"},
               {0.0, -1.0, 0.0, "100%B"},
               {0.0, 0.0, 0.0, ""},
               {-0.5, -0.5, 0.0, "50%L  50%B  (-135 deg)"},
               {0.0, 0.0, -0.3, "-30%H  (-90 deg)"},
               {0.3, 0.4, 0.5, "30%R  40%F  (37 deg)  50%H  (45 deg)"},
               {0.001, 0.0, 0.0, "0%R"}};
  for (const auto& c : cases) {
    char text[kReadoutCapacity];
    std::memset(text, 'x', sizeof text);
    formatPosition(text, kReadoutCapacity, c.x, c.y, c.z);
    EXPECT_STREQ(text, c.text);
  }
}

}  // namespace
