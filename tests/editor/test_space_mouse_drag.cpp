// Drag steps in the space view: inputs as a rigid group, mirrored by `reverse`, stopped at the
// border; height with Alt; speakers in a user setup; the rectangle's corner; the host's reports.
#include "editor/view/space_mouse.h"
#include "model/parameter_index.h"
#include "space_mouse_fixture.h"

namespace {

constexpr double kTolerance = 1e-9;

void expectPlace(const InputChannel& input, const Place& place) {
  EXPECT_NEAR(input.x, place.x, kTolerance);
  EXPECT_NEAR(input.y, place.y, kTolerance);
  EXPECT_NEAR(input.z, place.z, kTolerance);
}

TEST(DragInput, FollowsTheMouseKeepingTheGrabOffsetAndReportsEachStep) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
  RecordingHost host;
  ASSERT_TRUE(hitTestAndGrab(*plugin, 152, 48, kViewSize, kViewSize, false));
  plugin->changeFlags = 0;
  EXPECT_TRUE(dragTo(*plugin, 162, 38, kViewSize, kViewSize));
  expectPlace(plugin->inputs[0], {0.6, 0.6, 0.0});
  expectPlace(plugin->inputs[1], {-0.5, 0.0, 0.0});
  EXPECT_EQ(reportsOf(host),
            (std::vector<Report>{automate(5, 0.6), automate(6, 0.6), automate(7, 0.0)}));
  EXPECT_EQ(plugin->dirtyInputs, 1u);
  EXPECT_EQ(plugin->changeFlags.load(), kChangeInputs);
  EXPECT_EQ(plugin->dragMoves, 1);
  EXPECT_EQ(plugin->lastMouseX, 162);
  EXPECT_EQ(plugin->lastMouseY, 38);
}

TEST(DragInput, ShiftGrabJoinsTheSelectionAtTheFirstMove) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}});
  selectInputs(*plugin, {1});
  HeldKeys shift(true, false, false);
  ASSERT_TRUE(hitTestAndGrab(*plugin, 150, 50, kViewSize, kViewSize, false));
  EXPECT_EQ(selectedInputs(*plugin), std::vector<int>{1});
  EXPECT_TRUE(dragTo(*plugin, 140, 50, kViewSize, kViewSize));
  EXPECT_EQ(selectedInputs(*plugin), (std::vector<int>{0, 1}));
  expectPlace(plugin->inputs[0], {0.4, 0.5, 0.0});
  expectPlace(plugin->inputs[1], {-0.6, 0.0, 0.0});
  EXPECT_EQ(plugin->dirtyInputs, 3u);
}

struct GroupCase {
  const char* what;
  int grabbed;
  bool ctrl;
  std::vector<Place> after;
};

// Inputs 0 (0, 0), 1 (0.5, 0) with reverse set, 2 (-0.5, 0), all selected; the grabbed one is
// dragged 10 px right and 5 px up (+0.1, +0.05).
class GroupDrag : public ::testing::TestWithParam<GroupCase> {};

TEST_P(GroupDrag, MovesAsOneMirroringInputsOfTheOtherReverse) {
  const GroupCase& c = GetParam();
  auto plugin = makeRoom({{0.0, 0.0, 0.0}, {0.5, 0.0, 0.0}, {-0.5, 0.0, 0.0}});
  plugin->inputs[1].reverse = 1;
  selectInputs(*plugin, {0, 1, 2});
  HeldKeys keys(false, c.ctrl, false);
  const int grabX = std::vector<int>{100, 150, 50}[c.grabbed];
  ASSERT_TRUE(hitTestAndGrab(*plugin, grabX, 100, kViewSize, kViewSize, false));
  ASSERT_EQ(plugin->dragInput, c.grabbed);
  RecordingHost host;
  EXPECT_TRUE(dragTo(*plugin, grabX + 10, 95, kViewSize, kViewSize));
  for (int i = 0; i < 3; ++i) expectPlace(plugin->inputs[i], c.after[i]);
  std::vector<Report> expected;
  for (int i = 0; i < 3; ++i) {
    expected.push_back(automate(inputParameterIndex(i, kInX), c.after[i].x));
    expected.push_back(automate(inputParameterIndex(i, kInY), c.after[i].y));
    expected.push_back(automate(inputParameterIndex(i, kInZ), 0.0));
  }
  EXPECT_EQ(reportsOf(host), expected);
  EXPECT_EQ(plugin->dirtyInputs, 7u);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GroupDrag,
    ::testing::Values(
        GroupCase{"plain", 0, false, {{0.1, 0.05, 0}, {0.4, -0.05, 0}, {-0.4, 0.05, 0}}},
        GroupCase{"ctrl", 0, true, {{0.1, 0.05, 0}, {0.6, 0.05, 0}, {-0.4, 0.05, 0}}},
        GroupCase{"grab reversed", 1, false, {{-0.1, -0.05, 0}, {0.6, 0.05, 0}, {-0.6, -0.05, 0}}},
        GroupCase{
            "grab reversed ctrl", 1, true, {{0.1, 0.05, 0}, {0.6, 0.05, 0}, {-0.4, 0.05, 0}}}),
    CaseName());

// Input 0 sits at the centre (pixel 100, 100 at every zoom) and is dragged by (dx, dy) pixels;
// input 1, selected with it, is near a border.
struct BorderCase {
  const char* what;
  double zoom;
  Place second;
  bool mirrored;  // input 1 has reverse set
  int dx;
  int dy;
  Place firstAfter;
  Place secondAfter;
};

class BorderLimit : public ::testing::TestWithParam<BorderCase> {};

TEST_P(BorderLimit, TheGroupStopsWhenOneMemberReachesL) {
  const BorderCase& c = GetParam();
  auto plugin = makeRoom({{0.0, 0.0, 0.0}, c.second});
  plugin->zoom = c.zoom;
  plugin->inputs[1].reverse = c.mirrored ? 1 : 0;
  selectInputs(*plugin, {0, 1});
  ASSERT_TRUE(hitTestAndGrab(*plugin, 100, 100, kViewSize, kViewSize, false));
  EXPECT_TRUE(dragTo(*plugin, 100 + c.dx, 100 - c.dy, kViewSize, kViewSize));
  expectPlace(plugin->inputs[0], c.firstAfter);
  expectPlace(plugin->inputs[1], c.secondAfter);

  // Further out, nothing moves and nothing is reported.
  RecordingHost host;
  EXPECT_TRUE(dragTo(*plugin, 100 + 2 * c.dx, 100 - 2 * c.dy, kViewSize, kViewSize));
  expectPlace(plugin->inputs[0], c.firstAfter);
  expectPlace(plugin->inputs[1], c.secondAfter);
  EXPECT_TRUE(host.calls().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BorderLimit,
    ::testing::Values(
        BorderCase{"right at zoom 0.48", 0.48, {0.9, 0, 0}, false, 30, 0, {0.1, 0, 0}, {1.0, 0, 0}},
        BorderCase{"right at zoom 0.24", 0.24, {1.9, 0, 0}, false, 24, 0, {0.1, 0, 0}, {2.0, 0, 0}},
        BorderCase{
            "mirrored one stops left", 0.5, {-0.9, 0, 0}, true, 20, 0, {0.06, 0, 0}, {-0.96, 0, 0}},
        BorderCase{
            "front at zoom 0.5", 0.5, {0, 0.9, 0}, false, 0, 20, {0, 0.06, 0}, {0, 0.96, 0}}),
    CaseName());

TEST(DragHeight, AltRaisesTheGroupAndReleasingAltResumesWithoutAJump) {
  auto plugin = makeRoom({{0.0, 0.0, 0.0}, {0.5, 0.0, 0.0}, {-0.5, 0.0, 0.0}});
  plugin->inputs[2].reverse = 1;
  plugin->spaceScaleZ = 0.5;  // 0.1 in height is sy * 0.5 * 0.1 = 5 px
  selectInputs(*plugin, {0, 1, 2});
  ASSERT_TRUE(hitTestAndGrab(*plugin, 100, 100, kViewSize, kViewSize, false));
  {
    HeldKeys alt(false, false, true);
    EXPECT_TRUE(dragTo(*plugin, 103, 95, kViewSize, kViewSize));
  }
  expectPlace(plugin->inputs[0], {0.0, 0.0, 0.1});
  expectPlace(plugin->inputs[1], {0.5, 0.0, 0.1});
  expectPlace(plugin->inputs[2], {-0.5, 0.0, -0.1});

  EXPECT_TRUE(dragTo(*plugin, 113, 95, kViewSize, kViewSize));
  expectPlace(plugin->inputs[0], {0.1, 0.0, 0.1});
  expectPlace(plugin->inputs[1], {0.6, 0.0, 0.1});
  expectPlace(plugin->inputs[2], {-0.6, 0.0, -0.1});
}

TEST(DragHeight, StopsAtTheLimitAndDownLowers) {
  auto plugin = makeRoom({{0.0, 0.0, 0.9}});
  ASSERT_TRUE(hitTestAndGrab(*plugin, 100, 100, kViewSize, kViewSize, false));
  HeldKeys alt(false, false, true);
  EXPECT_TRUE(dragTo(*plugin, 100, 80, kViewSize, kViewSize));
  EXPECT_NEAR(plugin->inputs[0].z, 0.96, kTolerance);
  EXPECT_TRUE(dragTo(*plugin, 100, 130, kViewSize, kViewSize));
  EXPECT_NEAR(plugin->inputs[0].z, 0.46, kTolerance);
}

TEST(DragSpeaker, MovesOneSpeakerInModelUnitsAndMarksEveryInput) {
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}, {-0.5, 0.5, 0.0}});
  plugin->spaceScaleX = 1.5;  // speaker 0 drawn at (175, 50)
  ASSERT_TRUE(hitTestAndGrab(*plugin, 175, 50, kViewSize, kViewSize, false));
  plugin->changeFlags = 0;
  RecordingHost host;
  EXPECT_TRUE(dragTo(*plugin, 190, 40, kViewSize, kViewSize));
  EXPECT_NEAR(plugin->speakers[0].x, 0.6, kTolerance);
  EXPECT_NEAR(plugin->speakers[0].y, 0.6, kTolerance);
  EXPECT_EQ(plugin->speakers[1].x, -0.5);
  const int first = speakerParameterIndex(1, 0, kSpkX);
  EXPECT_EQ(first, 15);
  EXPECT_EQ(reportsOf(host),
            (std::vector<Report>{automate(15, 0.6), automate(16, 0.6), automate(17, 0.0)}));
  EXPECT_EQ(plugin->dirtyInputs, 1u);
  EXPECT_EQ(plugin->changeFlags.load(), kChangeSpeakers);
}

TEST(DragSpeaker, LimitAppliesAfterTheRoomScaleAndAltChangesHeight) {
  auto plugin = makeUserSetup({{0.0, 0.0, 0.0}});
  plugin->spaceScaleX = 0.5;
  plugin->spaceScaleZ = 2.0;
  ASSERT_TRUE(hitTestAndGrab(*plugin, 100, 100, kViewSize, kViewSize, false));
  EXPECT_TRUE(dragTo(*plugin, 160, 100, kViewSize, kViewSize));
  EXPECT_NEAR(plugin->speakers[0].x, 0.96, kTolerance) << "0.6 / 0.5 = 1.2 is past L";
  HeldKeys alt(false, false, true);
  EXPECT_TRUE(dragTo(*plugin, 160, 80, kViewSize, kViewSize));
  EXPECT_NEAR(plugin->speakers[0].z, 0.1, kTolerance);
  EXPECT_NEAR(plugin->speakers[0].x, 0.96, kTolerance);
}

TEST(DragSpeaker, ASpeakerThatVanishedIsNeitherWrittenNorReported) {
  auto plugin = makeUserSetup({{0.5, 0.5, 0.0}, {-0.5, 0.5, 0.0}});
  ASSERT_TRUE(hitTestAndGrab(*plugin, 50, 50, kViewSize, kViewSize, false));
  ASSERT_EQ(plugin->dragSpeaker, 1);
  setSpeakerCount(*plugin, 1);
  RecordingHost host;
  EXPECT_FALSE(dragTo(*plugin, 60, 50, kViewSize, kViewSize));
  finishDrag(*plugin);
  EXPECT_TRUE(host.calls().empty());
  EXPECT_EQ(plugin->dragSpeaker, -1);
}

TEST(DragInput, AViewWithoutPixelsMovesNothing) {
  auto plugin = makeRoom({{0.0, 0.0, 0.0}});
  ASSERT_TRUE(hitTestAndGrab(*plugin, 0, 0, 0, 0, true));
  RecordingHost host;
  for (const auto& [width, height] : {std::pair{0, 0}, std::pair{200, 0}, std::pair{0, 200}}) {
    EXPECT_FALSE(dragTo(*plugin, 10, 10, width, height));
  }
  expectPlace(plugin->inputs[0], {0.0, 0.0, 0.0});
  EXPECT_TRUE(host.calls().empty());
}

TEST(DragBand, MovesTheSecondCornerOnlyWhileARectangleIsDrawn) {
  auto plugin = makeRoom({{0.5, 0.5, 0.0}});
  EXPECT_FALSE(dragTo(*plugin, 40, 40, kViewSize, kViewSize));
  EXPECT_EQ(plugin->dragMoves, 1);
  startBandSelect(*plugin, 10, 20);
  plugin->changeFlags = 0;
  EXPECT_TRUE(dragTo(*plugin, 50, 60, kViewSize, kViewSize));
  EXPECT_EQ(std::vector<int>(plugin->bandRect, plugin->bandRect + 4),
            (std::vector<int>{10, 20, 50, 60}));
  EXPECT_EQ(plugin->changeFlags.load(), kChangeInputs);
  EXPECT_EQ(plugin->inputs[0].x, 0.5);
}

}  // namespace
