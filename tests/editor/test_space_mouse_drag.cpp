// Drag steps in the space view: inputs as a rigid group, mirrored by `reverse`, stopped at the
// border; height with Alt; speakers in a user setup; the host's reports.
#include "space_mouse_fixture.h"

namespace {

TEST(DragInput, ShiftGrabJoinsTheSelectionAtTheFirstMoveAndReportsEachStep) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
  selectInputs(*plugin, {1});
  HeldKeys shift(true, false, false);
  ASSERT_TRUE(grab(*plugin, 152, 48));
  EXPECT_EQ(selectedInputs(*plugin), std::vector<int>{1});
  plugin->model.changeFlags = 0;
  RecordingHost host;
  EXPECT_TRUE(drag(*plugin, 162, 38));
  EXPECT_EQ(selectedInputs(*plugin), (std::vector<int>{0, 1}));
  expectPlace(plugin->model.inputs[0], {0.6, 0.6, 0.0});
  expectPlace(plugin->model.inputs[1], {-0.4, 0.1, 0.0});
  expectPlace(plugin->model.inputs[2], {0.0, -0.5, 0.0});
  EXPECT_EQ(reportsOf(host),
            (std::vector<Report>{automate(5, 0.6), automate(6, 0.6), automate(7, 0.0),
                                 automate(15, -0.4), automate(16, 0.1), automate(17, 0.0)}));
  EXPECT_EQ(plugin->model.dirtyInputs, 3u);
  EXPECT_EQ(plugin->model.changeFlags.load(), kChangeEditor | kChangeInputs);  // the selection grew
}

TEST(DragInput, TheGroupMovesAsOneMirroringInputsOfTheOtherReverse) {
  // Inputs 0 (0, 0), 1 (0.5, 0) with reverse set, 2 (-0.5, 0), all selected; the grabbed one is
  // dragged 10 px right and 5 px up (+0.1, +0.05).
  const struct {
    const char* what;
    int grabbed;
    bool ctrl;
    std::vector<Place> after;
  } cases[] = {{"plain", 0, false, {{0.1, 0.05, 0}, {0.4, -0.05, 0}, {-0.4, 0.05, 0}}},
               {"ctrl", 0, true, {{0.1, 0.05, 0}, {0.6, 0.05, 0}, {-0.4, 0.05, 0}}},
               {"grab reversed", 1, false, {{-0.1, -0.05, 0}, {0.6, 0.05, 0}, {-0.6, -0.05, 0}}},
               {"grab reversed ctrl", 1, true, {{0.1, 0.05, 0}, {0.6, 0.05, 0}, {-0.4, 0.05, 0}}}};
  for (const auto& c : cases) {
    auto plugin = makeRoom({{0.0, 0.0, 0.0}, {0.5, 0.0, 0.0}, {-0.5, 0.0, 0.0}});
    plugin->model.inputs[1].reverse = 1;
    selectInputs(*plugin, {0, 1, 2});
    HeldKeys keys(false, c.ctrl, false);
    const int grabX = c.grabbed == 0 ? 100 : 150;
    ASSERT_TRUE(grab(*plugin, grabX, 100));
    EXPECT_TRUE(drag(*plugin, grabX + 10, 95));
    for (int i = 0; i < 3; ++i) expectPlace(plugin->model.inputs[i], c.after[i], c.what);
  }
}

TEST(DragInput, TheGroupStopsWhenOneMemberReachesTheBorder) {
  // Input 0 sits at the centre (pixel 100, 100 at every zoom) and is dragged by (dx, dy) pixels;
  // input 1, selected with it, is near a border. A second step further out changes nothing.
  // Input 2, unselected, sits nearer the border still and neither moves nor stops the group.
  const struct {
    const char* what;
    double zoom;
    Place second;
    bool mirrored;
    int dx, dy;
    Place firstAfter, secondAfter;
  } cases[] = {
      {"right at zoom 0.48", 0.48, {0.9, 0, 0}, false, 30, 0, {0.1, 0, 0}, {1.0, 0, 0}},
      {"right at zoom 0.24", 0.24, {1.9, 0, 0}, false, 24, 0, {0.1, 0, 0}, {2.0, 0, 0}},
      {"mirrored one stops left", 0.5, {-0.9, 0, 0}, true, 20, 0, {0.06, 0, 0}, {-0.96, 0, 0}},
      {"front at zoom 0.5", 0.5, {0, 0.9, 0}, false, 0, 20, {0, 0.06, 0}, {0, 0.96, 0}}};
  for (const auto& c : cases) {
    auto plugin = makeRoom({{0.0, 0.0, 0.0}, c.second, {0.95, 0.95, 0.0}});
    plugin->view.zoom = c.zoom;
    plugin->model.inputs[1].reverse = c.mirrored ? 1 : 0;
    selectInputs(*plugin, {0, 1});
    ASSERT_TRUE(grab(*plugin, 100, 100));
    EXPECT_TRUE(drag(*plugin, 100 + c.dx, 100 - c.dy));
    RecordingHost host;
    EXPECT_TRUE(drag(*plugin, 100 + 2 * c.dx, 100 - 2 * c.dy));
    expectPlace(plugin->model.inputs[0], c.firstAfter, c.what);
    expectPlace(plugin->model.inputs[1], c.secondAfter, c.what);
    expectPlace(plugin->model.inputs[2], {0.95, 0.95, 0.0}, c.what);
    EXPECT_TRUE(host.calls().empty()) << c.what;
  }
}

TEST(DragHeight, AltRaisesTheGroupToTheLimitAndReleasingAltResumesWithoutAJump) {
  auto plugin = makeRoom({{0.0, 0.0, 0.0}, {-0.5, 0.0, 0.9}});
  plugin->model.inputs[1].reverse = 1;
  plugin->model.spaceScaleZ = 0.5;  // 0.1 in height is sy * 0.5 * 0.1 = 5 px
  selectInputs(*plugin, {0, 1});
  ASSERT_TRUE(grab(*plugin, 100, 100));
  {
    HeldKeys alt(false, false, true);
    EXPECT_TRUE(drag(*plugin, 103, 95));
    expectPlace(plugin->model.inputs[0], {0.0, 0.0, 0.1});
    expectPlace(plugin->model.inputs[1], {-0.5, 0.0, 0.8});  // mirrored: down
    EXPECT_TRUE(drag(*plugin, 103, 105));
    EXPECT_TRUE(drag(*plugin, 103, 115));
    expectPlace(plugin->model.inputs[1], {-0.5, 0.0, 0.96});  // stopped at the limit
    expectPlace(plugin->model.inputs[0], {0.0, 0.0, -0.06});
  }
  EXPECT_TRUE(drag(*plugin, 113, 115));
  expectPlace(plugin->model.inputs[0], {0.1, 0.0, -0.06});
}

TEST(DragSpeaker, MovesOneSpeakerInModelUnitsLimitedAfterTheRoomScale) {
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}, {-0.5, 0.5, 0.0}});
  plugin->model.spaceScaleX = 1.5;  // speaker 0 drawn at (175, 50)
  plugin->model.spaceScaleZ = 2.0;
  ASSERT_TRUE(grab(*plugin, 175, 50));
  plugin->model.changeFlags = 0;
  RecordingHost host;
  EXPECT_TRUE(drag(*plugin, 190, 40));
  EXPECT_NEAR(plugin->model.speakers[0].x, 0.6, kPlaceTolerance);
  EXPECT_NEAR(plugin->model.speakers[0].y, 0.6, kPlaceTolerance);
  EXPECT_EQ(plugin->model.speakers[1].x, -0.5);
  EXPECT_EQ(reportsOf(host),  // speaker 0's position parameters follow the input's
            (std::vector<Report>{automate(15, 0.6), automate(16, 0.6), automate(17, 0.0)}));
  EXPECT_EQ(plugin->model.dirtyInputs, 1u);
  EXPECT_EQ(plugin->model.changeFlags.load(), kChangeSpeakers);
  EXPECT_TRUE(drag(*plugin, 260, 40));
  EXPECT_NEAR(plugin->model.speakers[0].x, 0.96, kPlaceTolerance) << "1.6 / 1.5 is past L";
  {
    HeldKeys alt(false, false, true);
    EXPECT_TRUE(drag(*plugin, 260, 20));
    EXPECT_NEAR(plugin->model.speakers[0].z, 0.1, kPlaceTolerance);
    EXPECT_NEAR(plugin->model.speakers[0].x, 0.96, kPlaceTolerance);
  }
  EXPECT_TRUE(drag(*plugin, 260, 20));  // Alt let go: no jump to the mouse
  EXPECT_NEAR(plugin->model.speakers[0].y, 0.6, kPlaceTolerance);
  EXPECT_NEAR(plugin->model.speakers[0].x, 0.96, kPlaceTolerance);
  {
    HeldKeys alt(false, false, true);
    EXPECT_TRUE(drag(*plugin, 230, 20));  // level: no height step, so the grab keeps its anchor
  }
  EXPECT_TRUE(drag(*plugin, 230, 20));
  EXPECT_NEAR(plugin->model.speakers[0].x, (244 - 260 + 230 - 100) / 150.0, kPlaceTolerance);
}

TEST(DragSpeaker, ASpeakerThatVanishedIsNeitherWrittenNorReported) {
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}, {-0.5, 0.5, 0.0}});
  ASSERT_TRUE(grab(*plugin, 50, 50));
  ASSERT_EQ(plugin->view.dragSpeaker, 1);
  setSpeakerCount(*plugin, 1);
  RecordingHost host;
  EXPECT_FALSE(drag(*plugin, 60, 50));
  finishDrag(*plugin);
  EXPECT_TRUE(host.calls().empty());
  EXPECT_EQ(plugin->view.dragSpeaker, -1);
}

TEST(DragInput, AViewWithoutPixelsMovesNothing) {
  auto plugin = makeRoom({{0.0, 0.0, 0.0}});
  ASSERT_TRUE(hitTestAndGrab(*plugin, 0, 0, 0, 0, true));
  RecordingHost host;
  EXPECT_FALSE(dragTo(*plugin, 10, 10, 200, 0));
  EXPECT_FALSE(dragTo(*plugin, 10, 10, 0, 200));
  expectPlace(plugin->model.inputs[0], {0.0, 0.0, 0.0});
  EXPECT_TRUE(host.calls().empty());
}

}  // namespace
