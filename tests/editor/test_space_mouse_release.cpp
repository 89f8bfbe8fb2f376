// Button up and double click in the space view: click selection, end-of-edit reports, the
// selection rectangle and the reset of the selected inputs.
#include "editor/view/space_mouse.h"
#include "space_mouse_fixture.h"

namespace {

struct ClickCase {
  const char* what;
  bool shift;
  bool ctrl;
  std::vector<int> before;
  std::vector<int> after;  // input 0 is clicked
};

class ClickSelection : public ::testing::TestWithParam<ClickCase> {};

TEST_P(ClickSelection, DecidedAtReleaseWithoutReports) {
  const ClickCase& c = GetParam();
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
  selectInputs(*plugin, c.before);
  HeldKeys keys(c.shift, c.ctrl, false);
  RecordingHost host;
  ASSERT_TRUE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  plugin->changeFlags = 0;
  finishDrag(*plugin);
  EXPECT_EQ(selectedInputs(*plugin), c.after);
  EXPECT_EQ(plugin->changeFlags.load(), kChangeEditor | kChangeInputs);
  EXPECT_TRUE(host.calls().empty());
  EXPECT_EQ(plugin->dragInput, -1);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ClickSelection,
    ::testing::Values(ClickCase{"plain", false, false, {1, 2}, {0}},
                      ClickCase{"plain on a selected one", false, false, {0, 2}, {0}},
                      ClickCase{"shift adds", true, false, {1}, {0, 1}},
                      ClickCase{"ctrl adds", false, true, {1}, {0, 1}},
                      ClickCase{"ctrl removes", false, true, {0, 1}, {1}},
                      ClickCase{"ctrl shift toggles", true, true, {0, 2}, {2}}),
    CaseName());

TEST(FinishDrag, AWholeGestureReportsEachStepThenEndsEveryValue) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
  selectInputs(*plugin, {0, 2});
  RecordingHost host;
  ASSERT_TRUE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  EXPECT_TRUE(dragTo(*plugin, 160, 50, kViewSize, kViewSize));
  EXPECT_TRUE(dragTo(*plugin, 160, 40, kViewSize, kViewSize));
  finishDrag(*plugin);
  // Input 0's position parameters are 5, 6, 7; input 2's 25, 26, 27.
  const std::vector<Report> expected{
      automate(5, 0.6),   automate(6, 0.5),  automate(7, 0.0),   automate(25, 0.1),
      automate(26, -0.5), automate(27, 0.0), automate(5, 0.6),   automate(6, 0.6),
      automate(7, 0.0),   automate(25, 0.1), automate(26, -0.4), automate(27, 0.0),
      automate(5, 0.6),   endEdit(5),        automate(6, 0.6),   endEdit(6),
      automate(7, 0.0),   endEdit(7),        automate(25, 0.1),  endEdit(25),
      automate(26, -0.4), endEdit(26),       automate(27, 0.0),  endEdit(27)};
  EXPECT_EQ(reportsOf(host), expected);
  EXPECT_EQ(selectedInputs(*plugin), (std::vector<int>{0, 2}));
  EXPECT_EQ(plugin->dragInput, -1);
  EXPECT_EQ(plugin->dragMoves, 0);
  EXPECT_EQ(plugin->grabOffsetX, 0);
}

TEST(FinishDrag, SpeakerEndsItsEditOnlyAfterMoving) {
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}});
  RecordingHost host;
  ASSERT_TRUE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  plugin->changeFlags = 0;
  finishDrag(*plugin);
  EXPECT_TRUE(host.calls().empty());
  EXPECT_EQ(plugin->changeFlags.load(), kChangeEditor | kChangeSpeakers);

  ASSERT_TRUE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  EXPECT_TRUE(dragTo(*plugin, 130, 50, kViewSize, kViewSize));
  host.clear();
  finishDrag(*plugin);
  EXPECT_EQ(reportsOf(host), (std::vector<Report>{automate(15, 0.3), endEdit(15), automate(16, 0.5),
                                                  endEdit(16), automate(17, 0.0), endEdit(17)}));
  EXPECT_EQ(plugin->dragSpeaker, -1);
}

struct BandCase {
  const char* what;
  bool shift;
  bool ctrl;
  bool locked;
  int fromX;
  int fromY;
  int toX;
  int toY;
  std::vector<int> after;
};

// Dots at (10, 10), (49, 49), (50, 30), (30, 50), (9, 30), and input 5 whose floor (40, 40) is
// inside but which is drawn lowered at (55, 55). Inputs 1 and 2 start selected.
class BandSelection : public ::testing::TestWithParam<BandCase> {};

TEST_P(BandSelection, SelectsTheDotsInsideTheHalfOpenRectangle) {
  const BandCase& c = GetParam();
  auto plugin = makeRoom({{-0.9, 0.9, 0.0},
                          {-0.51, 0.51, 0.0},
                          {-0.5, 0.7, 0.0},
                          {-0.7, 0.5, 0.0},
                          {-0.91, 0.7, 0.0},
                          {-0.6, 0.6, -1.0}});
  selectInputs(*plugin, {1, 2});
  plugin->lockInputs = c.locked ? 1 : 0;
  HeldKeys keys(c.shift, c.ctrl, false);
  RecordingHost host;
  startBandSelect(*plugin, c.fromX, c.fromY);
  EXPECT_TRUE(dragTo(*plugin, 30, 30, kViewSize, kViewSize));
  plugin->changeFlags = 0;
  finishBandSelect(*plugin, c.toX, c.toY, kViewSize, kViewSize);
  EXPECT_EQ(selectedInputs(*plugin), c.after);
  EXPECT_EQ(plugin->bandActive, 0);
  EXPECT_EQ(plugin->bandRect[2], -1);
  EXPECT_EQ(plugin->changeFlags.load(), kChangeEditor | kChangeInputs);
  EXPECT_TRUE(host.calls().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BandSelection,
    ::testing::Values(
        BandCase{"plain", false, false, false, 10, 10, 50, 50, {0, 1}},
        BandCase{"drawn backwards", false, false, false, 50, 50, 10, 10, {0, 1}},
        BandCase{"shift keeps the rest", true, false, false, 10, 10, 50, 50, {0, 1, 2}},
        BandCase{"ctrl toggles", false, true, false, 10, 10, 50, 50, {0}},
        BandCase{"ctrl shift", true, true, false, 10, 10, 50, 50, {0, 2}},
        BandCase{"one pixel wider", false, false, false, 9, 10, 51, 51, {0, 1, 2, 3, 4}},
        BandCase{"locked inputs", false, false, true, 10, 10, 50, 50, {1, 2}}),
    CaseName());

TEST(ResetPositions, RaisedInputsComeDownAndFloorInputsGoToTheCentre) {
  auto plugin = makeRoom({{0.5, 0.5, 0.3}, {0.2, 0.0, 0.0}, {0.1, 0.1, 0.4}});
  selectInputs(*plugin, {0, 1});
  plugin->editorWindow = InfoLabelRecorder::editor();
  InfoLabelRecorder label;
  RecordingHost host;
  resetPositions(*plugin);
  EXPECT_EQ(plugin->inputs[0].z, 0.0);
  EXPECT_EQ(plugin->inputs[0].x, 0.5);
  EXPECT_EQ(plugin->inputs[1].x, 0.0);
  EXPECT_EQ(plugin->inputs[2].z, 0.4) << "not selected";
  // A height reset reports x, y and z of every selected input, each value ended.
  EXPECT_EQ(reportsOf(host),
            (std::vector<Report>{automate(5, 0.5), endEdit(5), automate(6, 0.5), endEdit(6),
                                 automate(7, 0.0), endEdit(7), automate(15, 0.0), endEdit(15),
                                 automate(16, 0.0), endEdit(16), automate(17, 0.0), endEdit(17)}));
  EXPECT_EQ(plugin->dirtyInputs, 3u);
  EXPECT_EQ(plugin->changeFlags.load() & kChangeInputs, kChangeInputs);
  EXPECT_EQ(label.calls(), (std::vector<std::string>{"kill 10", "text 1287 "}))
      << "two inputs selected: the readout is emptied";
}

TEST(ResetPositions, FloorResetReportsXAndYAndShowsTheOneSelectedInput) {
  auto plugin = makeRoom({{0.5, -0.25, 0.0}, {0.5, 0.5, 0.3}});
  selectInputs(*plugin, {1});
  plugin->editorWindow = InfoLabelRecorder::editor();
  InfoLabelRecorder label;
  RecordingHost host;
  resetPositions(*plugin);
  EXPECT_EQ(label.calls(), (std::vector<std::string>{"kill 10", "text 1287 50%R  50%F  (45 deg)",
                                                     "timer 10 2000"}));

  plugin->inputs[1].selected = 0;
  plugin->inputs[0].selected = 1;
  host.clear();
  resetPositions(*plugin);
  EXPECT_EQ(plugin->inputs[0].x, 0.0);
  EXPECT_EQ(plugin->inputs[0].y, 0.0);
  EXPECT_EQ(reportsOf(host),
            (std::vector<Report>{automate(5, 0.0), endEdit(5), automate(6, 0.0), endEdit(6)}));
}

TEST(ResetPositions, DoesNothingWhenLockedUnselectedOrAlreadyAtTheCentre) {
  auto plugin = makeRoom({{0.0, 0.0, 0.0}, {0.5, 0.5, 0.5}});
  plugin->editorWindow = InfoLabelRecorder::editor();
  InfoLabelRecorder label;
  RecordingHost host;
  selectInputs(*plugin, {0});
  resetPositions(*plugin);
  selectInputs(*plugin, {1});
  plugin->lockInputs = 1;
  resetPositions(*plugin);
  EXPECT_TRUE(host.calls().empty());
  EXPECT_TRUE(label.calls().empty());
  EXPECT_EQ(plugin->inputs[1].z, 0.5);
  EXPECT_EQ(plugin->dirtyInputs, 0u);
  EXPECT_EQ(plugin->changeFlags.load(), 0u);
}

}  // namespace
