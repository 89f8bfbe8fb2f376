// Button up and double click in the space view: click selection, end-of-edit reports, the
// selection rectangle and the reset of the selected inputs.
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
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
  selectInputs(*plugin, {0, 2});
  RecordingHost host;
  ASSERT_TRUE(grab(*plugin, 150, 50));
  EXPECT_TRUE(drag(*plugin, 160, 50));
  EXPECT_TRUE(drag(*plugin, 160, 40));
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

class ResetPositions : public ::testing::Test {
 protected:
  std::unique_ptr<PannerPlugin> plugin_ =
      makeRoom({{0.5, -0.25, 0.0}, {0.5, 0.5, 0.3}, {0.1, 0.1, 0.4}});
  RecordingHost host_;
};

TEST_F(ResetPositions, RaisedInputsComeDownAndFloorInputsGoToTheCentre) {
  selectInputs(*plugin_, {0, 1});
  resetPositions(*plugin_);
  EXPECT_EQ(plugin_->model.inputs[1].z, 0.0);
  EXPECT_EQ(plugin_->model.inputs[1].x, 0.5);
  EXPECT_EQ(plugin_->model.inputs[0].x, 0.0);
  EXPECT_EQ(plugin_->model.inputs[2].z, 0.4) << "not selected";
  // A height reset reports x, y and z of every selected input, each value ended.
  EXPECT_EQ(reportsOf(host_),
            (std::vector<Report>{automate(5, 0.0), endEdit(5), automate(6, 0.0), endEdit(6),
                                 automate(7, 0.0), endEdit(7), automate(15, 0.5), endEdit(15),
                                 automate(16, 0.5), endEdit(16), automate(17, 0.0), endEdit(17)}));
  EXPECT_EQ(plugin_->model.dirtyInputs, 3u);
}

TEST_F(ResetPositions, FloorResetReportsXAndY) {
  selectInputs(*plugin_, {0});
  resetPositions(*plugin_);
  EXPECT_EQ(plugin_->model.inputs[0].y, 0.0);
  EXPECT_EQ(reportsOf(host_),
            (std::vector<Report>{automate(5, 0.0), endEdit(5), automate(6, 0.0), endEdit(6)}));
}

TEST_F(ResetPositions, DoesNothingWhenLockedOrAlreadyAtTheCentre) {
  plugin_->model.inputs[0].x = plugin_->model.inputs[0].y = 0.0;
  selectInputs(*plugin_, {0});
  resetPositions(*plugin_);
  selectInputs(*plugin_, {1});
  plugin_->editor.lockInputs = 1;
  resetPositions(*plugin_);
  EXPECT_TRUE(host_.calls().empty());
  EXPECT_EQ(plugin_->model.inputs[1].z, 0.3);
  EXPECT_EQ(plugin_->model.dirtyInputs, 0u);
  EXPECT_EQ(plugin_->model.changeFlags.load(), 0u);
}

}  // namespace
