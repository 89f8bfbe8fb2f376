// Button down in the space view: what is grabbed, the hit size, the selection at the grab.
#include "space_mouse_fixture.h"

namespace {

TEST(Grab, HitsWithinTheHalfSizeOfTheScaleOfTheViewInUse) {
  // Input 0 at (0.5, 0.5) is drawn at pixel (150, 50); input 1 at (-0.5, 0) at (50, 100).
  const struct {
    const char* what;
    int mouseX, mouseY, viewScale, inlineScale;
    bool inlineView;
    int grabbed;  // -1: nothing
  } cases[] = {{"corner 5 px off", 155, 45, 256, 256, false, 0},
               {"6 px right", 156, 50, 256, 256, false, -1},
               {"6 px up", 150, 44, 256, 256, false, -1},
               {"input 1", 46, 104, 256, 256, false, 1},
               {"10 px at 200 %", 160, 50, 512, 256, false, 0},
               {"11 px at 200 %", 161, 50, 512, 256, false, -1},
               {"inline uses its own scale", 160, 50, 256, 512, true, 0},
               {"editor ignores the inline scale", 160, 50, 256, 512, false, -1}};
  for (const auto& c : cases) {
    auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
    plugin->view.viewScale = c.viewScale;
    plugin->view.inlineScale = c.inlineScale;
    EXPECT_EQ(hitTestAndGrab(*plugin, c.mouseX, c.mouseY, kViewSize, kViewSize, c.inlineView),
              c.grabbed >= 0)
        << c.what;
    EXPECT_EQ(plugin->view.dragInput, c.grabbed) << c.what;
  }
}

TEST(Grab, LowerIndexWinsWhenDotsOverlapAndKeepsItsOffset) {
  // Input 1 sits exactly under the mouse, input 0 two pixels beside it.
  auto plugin = makeRoom({{0.52, 0.5, 0.0}, {0.5, 0.5, 0.0}});
  plugin->view.bandActive = 1;  // a stale rectangle is dropped by the new grab
  EXPECT_TRUE(grab(*plugin, 150, 50));
  EXPECT_EQ(plugin->view.dragInput, 0);
  EXPECT_EQ(plugin->view.grabOffsetX, 2);
  EXPECT_EQ(plugin->view.grabOffsetY, 0);
  EXPECT_EQ(plugin->view.bandActive, 0);
}

TEST(Grab, RaisedInputIsHitWhereItIsDrawnAndKeepsItsFloorOffset) {
  // z = 0.8 lifts the point by a fifth of its distance from the centre: (150, 50) -> (160, 40).
  auto plugin = makeRoom({{0.5, 0.5, 0.8}});
  EXPECT_FALSE(grab(*plugin, 150, 50));
  ASSERT_TRUE(grab(*plugin, 161, 39));
  EXPECT_EQ(plugin->view.grabOffsetX, 150 - 161);
  EXPECT_EQ(plugin->view.grabOffsetY, 39 - 50);
}

TEST(Grab, EmptyFloorDeselectsEverythingUnlessLocked) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
  selectInputs(*plugin, {0, 1});
  EXPECT_FALSE(grab(*plugin, 100, 180));
  EXPECT_TRUE(selectedInputs(*plugin).empty());
  plugin->model.changeFlags = 0;
  EXPECT_FALSE(grab(*plugin, 100, 180));
  EXPECT_EQ(plugin->model.changeFlags.load(), 0u) << "nothing was selected, nothing to redraw";

  selectInputs(*plugin, {1});
  plugin->editor.lockInputs = 1;
  EXPECT_FALSE(grab(*plugin, 150, 50));
  EXPECT_FALSE(grab(*plugin, 100, 180));
  EXPECT_EQ(selectedInputs(*plugin), std::vector<int>{1});
}

TEST(GrabSpeaker, OnlyInAUserSetupWhereTheRoomScaleDrawsIt) {
  // Speaker 0 at (0.5, 0.5) is drawn at (175, 50) with the room 1.5 wide; LFE speakers count too.
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}});
  plugin->model.speakers[0].isLfe = 1;
  plugin->model.spaceScaleX = 1.5;
  EXPECT_FALSE(grab(*plugin, 150, 50));
  ASSERT_TRUE(grab(*plugin, 177, 48));
  EXPECT_EQ(plugin->view.dragSpeaker, 0);
  EXPECT_EQ(plugin->view.dragInput, -1);
  EXPECT_EQ(plugin->view.grabOffsetX, -2);
  EXPECT_EQ(plugin->model.changeFlags.load(), kChangeEditor | kChangeSpeakers);
  plugin->model.layoutPreset = 2;
  EXPECT_FALSE(grab(*plugin, 177, 48));
  EXPECT_EQ(plugin->view.dragSpeaker, -1);
}

TEST(GrabSpeaker, InputsComeFirstAndLockedInputsLetSpeakersThrough) {
  auto plugin = makeUserSetup({{-0.9, -0.9, 0.0}});  // on top of the input
  EXPECT_TRUE(grab(*plugin, 10, 190));
  EXPECT_EQ(plugin->view.dragInput, 0);
  EXPECT_EQ(plugin->view.dragSpeaker, -1);
  plugin->editor.lockInputs = 1;
  EXPECT_TRUE(grab(*plugin, 10, 190));
  EXPECT_EQ(plugin->view.dragInput, -1);
  EXPECT_EQ(plugin->view.dragSpeaker, 0);
}

}  // namespace
