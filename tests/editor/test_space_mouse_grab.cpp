// Button down in the space view: what is grabbed, the hit size, the selection at the grab.
#include "editor/view/space_mouse.h"
#include "space_mouse_fixture.h"

namespace {

struct HitCase {
  const char* what;
  int mouseX;
  int mouseY;
  int viewScale;
  int inlineScale;
  bool inlineView;
  int grabbed;  // -1: nothing
};

// Input 0 at (0.5, 0.5) is drawn at pixel (150, 50); input 1 at (-0.5, 0) at (50, 100).
class HitSize : public ::testing::TestWithParam<HitCase> {};

TEST_P(HitSize, GrabsWithinTheScaledHalfSize) {
  const HitCase& c = GetParam();
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
  plugin->viewScale = c.viewScale;
  plugin->inlineScale = c.inlineScale;
  const bool grabbed =
      hitTestAndGrab(*plugin, c.mouseX, c.mouseY, kViewSize, kViewSize, c.inlineView);
  EXPECT_EQ(grabbed, c.grabbed >= 0);
  EXPECT_EQ(plugin->dragInput, c.grabbed);
  EXPECT_EQ(plugin->dragSpeaker, -1);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HitSize,
    ::testing::Values(HitCase{"centre of input 0", 150, 50, 256, 256, false, 0},
                      HitCase{"corner 5 px off", 155, 45, 256, 256, false, 0},
                      HitCase{"6 px right", 156, 50, 256, 256, false, -1},
                      HitCase{"6 px up", 150, 44, 256, 256, false, -1},
                      HitCase{"input 1", 46, 104, 256, 256, false, 1},
                      HitCase{"10 px at 200 %", 160, 50, 512, 256, false, 0},
                      HitCase{"11 px at 200 %", 161, 50, 512, 256, false, -1},
                      HitCase{"inline uses its own scale", 160, 50, 256, 512, true, 0},
                      HitCase{"editor ignores the inline scale", 160, 50, 256, 512, false, -1},
                      HitCase{"inline at 100 %", 160, 50, 512, 256, true, -1}),
    CaseName());

TEST(Grab, LowerIndexWinsWhenDotsOverlap) {
  // Input 1 sits exactly under the mouse, input 0 two pixels beside it.
  auto plugin = makeRoom({{0.52, 0.5, 0.0}, {0.5, 0.5, 0.0}});
  EXPECT_TRUE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragInput, 0);
  EXPECT_EQ(plugin->grabOffsetX, 2);
  EXPECT_EQ(plugin->grabOffsetY, 0);
}

TEST(Grab, RaisedInputIsHitWhereItIsDrawnAndKeepsItsFloorOffset) {
  // z = 0.8 lifts the point by a fifth of its distance from the centre: (150, 50) -> (160, 40).
  auto plugin = makeRoom({{0.5, 0.5, 0.8}});
  EXPECT_FALSE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  ASSERT_TRUE(hitTestAndGrab(*plugin, 161, 39, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->grabOffsetX, 150 - 161);
  EXPECT_EQ(plugin->grabOffsetY, 39 - 50);
  EXPECT_EQ(plugin->lastMouseX, 161);
  EXPECT_EQ(plugin->lastMouseY, 39);
}

TEST(Grab, ResetsTheDragStateBeforeTesting) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}});
  plugin->dragSpeaker = 3;
  plugin->bandActive = 1;
  plugin->bandRect[0] = 4;
  plugin->dragMoves = 9;
  plugin->grabOffsetX = 7;
  EXPECT_FALSE(hitTestAndGrab(*plugin, 10, 10, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragInput, -1);
  EXPECT_EQ(plugin->dragSpeaker, -1);
  EXPECT_EQ(plugin->bandActive, 0);
  EXPECT_EQ(plugin->bandRect[0], -1);
  EXPECT_EQ(plugin->dragMoves, 0);
  EXPECT_EQ(plugin->grabOffsetX, 0);
}

struct SelectionCase {
  const char* what;
  bool shift;
  bool ctrl;
  std::vector<int> before;
  std::vector<int> after;  // input 0 is clicked
};

class SelectionAtGrab : public ::testing::TestWithParam<SelectionCase> {};

TEST_P(SelectionAtGrab, PlainGrabOfAnUnselectedInputSelectsOnlyIt) {
  const SelectionCase& c = GetParam();
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
  selectInputs(*plugin, c.before);
  HeldKeys keys(c.shift, c.ctrl, false);
  ASSERT_TRUE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  EXPECT_EQ(selectedInputs(*plugin), c.after);
  EXPECT_EQ(plugin->changeFlags.load(), kChangeEditor | kChangeSpeakers);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SelectionAtGrab,
    ::testing::Values(SelectionCase{"plain", false, false, {1, 2}, {0}},
                      SelectionCase{"plain on a selected one", false, false, {0, 2}, {0, 2}},
                      SelectionCase{"shift", true, false, {1}, {1}},
                      SelectionCase{"ctrl", false, true, {1}, {1}},
                      SelectionCase{"ctrl on a selected one", false, true, {0, 1}, {0, 1}}),
    CaseName());

TEST(Grab, EmptyFloorDeselectsEverything) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
  selectInputs(*plugin, {0, 1});
  EXPECT_FALSE(hitTestAndGrab(*plugin, 100, 180, kViewSize, kViewSize, false));
  EXPECT_TRUE(selectedInputs(*plugin).empty());
  EXPECT_EQ(plugin->changeFlags.load(), kChangeEditor | kChangeSpeakers);

  plugin->changeFlags = 0;
  EXPECT_FALSE(hitTestAndGrab(*plugin, 100, 180, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->changeFlags.load(), 0u) << "nothing was selected, nothing to redraw";
}

TEST(Grab, LockedInputsCanNeitherBeGrabbedNorDeselected) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
  selectInputs(*plugin, {1});
  plugin->lockInputs = 1;
  EXPECT_FALSE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragInput, -1);
  EXPECT_FALSE(hitTestAndGrab(*plugin, 100, 180, kViewSize, kViewSize, false));
  EXPECT_EQ(selectedInputs(*plugin), std::vector<int>{1});
}

TEST(GrabSpeaker, OnlyInAUserSetup) {
  // Speaker 1 at (0.25, -0.5) lies at pixel (125, 150).
  auto plugin = makeUserSetup({{-0.5, 0.5, 0.0}, {0.25, -0.5, 0.0}});
  ASSERT_TRUE(hitTestAndGrab(*plugin, 127, 148, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragSpeaker, 1);
  EXPECT_EQ(plugin->dragInput, -1);
  EXPECT_EQ(plugin->grabOffsetX, -2);
  EXPECT_EQ(plugin->grabOffsetY, -2);
  EXPECT_EQ(plugin->changeFlags.load(), kChangeEditor | kChangeSpeakers);

  plugin->layoutPreset = 2;
  EXPECT_FALSE(hitTestAndGrab(*plugin, 127, 148, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragSpeaker, -1);
}

TEST(GrabSpeaker, FollowsTheRoomScaleAndTakesLfeSpeakers) {
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}});
  plugin->speakers[0].isLfe = 1;
  plugin->spaceScaleX = 1.5;  // drawn at (175, 50)
  EXPECT_FALSE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  EXPECT_TRUE(hitTestAndGrab(*plugin, 175, 50, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragSpeaker, 0);
}

TEST(GrabSpeaker, InputsComeFirstAndLockedInputsLetSpeakersThrough) {
  auto plugin = makeUserSetup({{-0.9, -0.9, 0.0}});  // on top of the input
  EXPECT_TRUE(hitTestAndGrab(*plugin, 10, 190, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragInput, 0);
  EXPECT_EQ(plugin->dragSpeaker, -1);
  plugin->lockInputs = 1;
  EXPECT_TRUE(hitTestAndGrab(*plugin, 10, 190, kViewSize, kViewSize, false));
  EXPECT_EQ(plugin->dragInput, -1);
  EXPECT_EQ(plugin->dragSpeaker, 0);
}

TEST(BandSelect, StartsAtTheMouseWithNothingGrabbed) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}});
  plugin->dragInput = 0;
  plugin->dragMoves = 4;
  plugin->lastMouseX = 30;
  startBandSelect(*plugin, 12, 34);
  EXPECT_EQ(plugin->dragInput, -1);
  EXPECT_EQ(plugin->dragSpeaker, -1);
  EXPECT_EQ(plugin->bandActive, 1);
  EXPECT_EQ(std::vector<int>(plugin->bandRect, plugin->bandRect + 4),
            (std::vector<int>{12, 34, 12, 34}));
  EXPECT_EQ(plugin->dragMoves, 0);
  EXPECT_EQ(plugin->lastMouseX, 0);
  EXPECT_EQ(plugin->changeFlags.load(), kChangeEditor | kChangeSpeakers);
}

}  // namespace
