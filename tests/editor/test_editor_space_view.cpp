// The room editing inside the open editor: a group drag and a double click in its space view, the
// position readout in the info label, and the host's inline view repainting the editor's view.
#include <cstring>
#include <functional>
#include <tuple>
#include <utility>

#include "editor/group_edit.h"
#include "editor/view/position_readout.h"
#include "editor/view/space_mouse.h"
#include "editor/view/space_projection.h"
#include "model/layouts.h"
#include "tests/editor/editor_host.h"

namespace {

// A group drag in the editor's space view: the grabbed input follows the mouse, the other moves
// with it, every step is reported; a double click then puts the input back at the centre.
TEST(EditorSpaceView, DragMovesTheGroupWithTheMouseAndADoubleClickResets) {
  EditorHost host(3);
  host.open();
  host.tick();
  const HWND space = host.item(item::kSpaceView);
  const RECT view = host.system->find(space)->clientRect();
  PannerPlugin& p = host.plugin();
  p.model.inputs[0].selected = p.model.inputs[1].selected = 1;
  const ViewGeometry geometry = viewGeometry(p, view.right, view.bottom);
  const auto at = [&](int i) { return projectInput(geometry, p, p.model.inputs[i]).raised; };
  const ViewPoint grab = at(1);
  const ViewPoint other = at(0);
  p.view.inlineRedraw = 0;
  host.driver->drag(space, {grab.x, grab.y}, {grab.x + 60, grab.y - 45}, 0, 5);
  EXPECT_NEAR(at(1).x, grab.x + 60, 1);
  EXPECT_NEAR(at(1).y, grab.y - 45, 1);
  EXPECT_NEAR(at(0).x, other.x + 60, 1);
  EXPECT_NEAR(at(0).y, other.y - 45, 1);
  EXPECT_GT(host.reports.size(), 2u * 3 * 5) << "x, y and z of both inputs at each step";
  EXPECT_EQ(host.reports.back().opcode, audioMasterEndEdit);
  host.tick();
  EXPECT_EQ(p.view.inlineRedraw.load(), 1) << "the inline view must follow the editor's picture";
  host.reports.clear();
  const double otherX = p.model.inputs[0].x;
  host.driver->doubleClick(space, {grab.x + 60, grab.y - 45});
  EXPECT_EQ(std::make_pair(p.model.inputs[1].x, p.model.inputs[1].y), std::make_pair(0.0, 0.0));
  EXPECT_EQ(p.model.inputs[0].x, otherX) << "its first click left the grabbed input selected alone";
  EXPECT_EQ(host.reports.size(), 4u) << "x and y, each ended";
}

// Inputs 0 (0.2, 0.4, 0) and 2 (0, -0.6, 0.2), rotation 0.3; speaker 0 at (0.5, 0, 0.25) in a
// room twice as wide: the readout shows the model's values, and clears itself after two seconds.
TEST(InfoLabel, ShowsThePositionOfTheOnlySelectedInputOrTheSpeakerForTwoSeconds) {
  const struct {
    const char* what;
    std::vector<int> selected;
    std::function<void(PannerPlugin&)> edit;
    const char* label;
  } cases[] = {
      {"an input", {}, [](PannerPlugin& p) { showPositionReadout(p, 1, 0); }, "50%L"},
      {"a speaker",
       {},
       [](PannerPlugin& p) { showPositionReadout(p, -1, 0); },
       "50%R  25%H  (27 deg)"},
      {"past the inputs", {}, [](PannerPlugin& p) { showPositionReadout(p, 3, -1); }, ""},
      {"knob at its end",
       {2},
       [](PannerPlugin& p) { groupKnob(p, 2, 0.1, true); },
       "60%B  30%H  (27 deg)"},
      {"two selected", {0, 2}, [](PannerPlugin& p) { groupKnob(p, 2, 0.1, true); }, ""},
      {"rotation inverted",
       {0},
       [](PannerPlugin& p) { groupInvert(p, 9); },
       "20%R  40%F  (27 deg)"},
      {"height reset", {2}, [](PannerPlugin& p) { resetPositions(p); }, "60%B"},
      {"reset of two", {0, 2}, [](PannerPlugin& p) { resetPositions(p); }, ""},
      {"nothing selected", {}, [](PannerPlugin& p) { groupReset(p, 0); }, ""},
  };
  for (const auto& c : cases) {
    EditorHost host(3);
    PannerPlugin& p = host.plugin();
    setSpeakerCount(p, 1);
    setSpeaker(p, 0, "speaker", 0.5, 0.0, 0.25, 1.0);
    p.model.spaceScaleX = 2.0;
    const double places[3][3] = {{0.2, 0.4, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.6, 0.2}};
    for (int i = 0; i < 3; ++i) {
      InputChannel& input = host.input(i);
      input.x = places[i][0];
      input.y = places[i][1];
      input.z = places[i][2];
      input.diffuseAngle = 0.3;
      input.selected = 0;
    }
    for (const int i : c.selected) host.input(i).selected = 1;
    host.open();
    host.tick();
    c.edit(p);
    EXPECT_EQ(host.text(item::kInfo), c.label) << c.what;
    host.tick(1950);
    EXPECT_EQ(host.text(item::kInfo), c.label) << c.what;
    host.tick(50);
    EXPECT_EQ(host.text(item::kInfo), "") << c.what;
  }
}

// The host's inline view of an open editor: inputs 0 (0.5, 0.5), 1 (-0.5, 0), 2 (0, -0.5) on a
// 200 x 200 bitmap at zoom 0.5, 100 pixels per unit around (100, 100).
class InlineView : public ::testing::Test {
 protected:
  void SetUp() override {
    const double places[3][2] = {{0.5, 0.5}, {-0.5, 0.0}, {0.0, -0.5}};
    for (int i = 0; i < 3; ++i) {
      host_.input(i).x = places[i][0];
      host_.input(i).y = places[i][1];
      host_.input(i).selected = 0;
    }
    host_.open();
    host_.plugin().view.zoom = 0.5;
    host_.tick();
    host_.reports.clear();
  }

  VstIntPtr send(int message, void* block) {
    return host_.effect->dispatcher(host_.effect, effVendorSpecific, 16, 0, block,
                                    static_cast<float>(message));
  }
  VstIntPtr mouse(int message, int mouseX, int mouseY) {
    const std::int32_t fields[5] = {200, 200, mouseX, mouseY, 0};
    std::memcpy(block_ + 20, fields, sizeof fields);
    return send(message, block_);
  }
  // Whether the editor's space view waits to be repainted; the test's paint clears it.
  bool editorViewInvalid() {
    winsys::Window* view = host_.window(item::kSpaceView);
    const bool invalid = !host_.system->topLevelOf(view)->surface->toPaint.empty();
    host_.system->paint();
    return invalid;
  }

  EditorHost host_{3};
  unsigned char block_[40] = {};
};

TEST_F(InlineView, AnswersTheQueryAndTheHostsSizeLimitsAndResetsNothing) {
  host_.input(0).selected = 1;
  EXPECT_EQ(send(0, nullptr), 1);
  EXPECT_EQ(mouse(WM_LBUTTONDBLCLK, 150, 50), 0);
  EXPECT_EQ(send(0x7FFF, nullptr), 0);
  EXPECT_EQ(host_.input(0).x, 0.5);
  EXPECT_EQ(host_.reports, std::vector<Report>{});
  MINMAXINFO info{};
  info.ptMinTrackSize.y = 5;
  info.ptMaxSize = {300, 200};
  EXPECT_EQ(send(WM_GETMINMAXINFO, &info), 1);
  EXPECT_EQ(std::make_tuple(info.ptReserved.x, info.ptMinTrackSize.x, info.ptMinTrackSize.y,
                            info.ptMaxSize.x),
            std::make_tuple(0x10000, 20, 5, 300));
}

TEST_F(InlineView, ADragAtTheInlineScaleMovesReportsAndRepaintsTheEditor) {
  host_.plugin().view.inlineScale = 512;  // 8 px off the dot is a hit at 200 % only
  EXPECT_EQ(mouse(WM_LBUTTONDOWN, 158, 50), 1);
  EXPECT_EQ(host_.plugin().view.dragInput, 0);
  EXPECT_TRUE(editorViewInvalid());
  EXPECT_EQ(mouse(WM_MOUSEMOVE, 168, 40), 1);
  EXPECT_TRUE(editorViewInvalid());
  EXPECT_EQ(mouse(WM_LBUTTONUP, 168, 40), 1);
  EXPECT_NEAR(host_.input(0).x, 0.6, 1e-9);
  EXPECT_NEAR(host_.input(0).y, 0.6, 1e-9);
  EXPECT_EQ(host_.reports.back(), endEdit(7));
  EXPECT_EQ(host_.plugin().view.dragInput, -1);
}

TEST_F(InlineView, RightDragSelectsWithoutCaptureAndAMoveThatChangesNothingRepaintsNothing) {
  host_.input(2).selected = 1;
  EXPECT_EQ(mouse(WM_RBUTTONDOWN, 40, 40), 1);
  EXPECT_EQ(mouse(WM_MOUSEMOVE, 120, 90), 1);
  EXPECT_EQ(host_.plugin().view.bandRect[2], 120);
  EXPECT_EQ(host_.system->capture(), nullptr);
  EXPECT_EQ(mouse(WM_RBUTTONUP, 160, 110), 1);
  EXPECT_EQ(
      std::make_tuple(host_.input(0).selected, host_.input(1).selected, host_.input(2).selected),
      std::make_tuple(1, 1, 0));
  EXPECT_EQ(host_.plugin().view.bandActive, 0);
  host_.system->paint();
  EXPECT_EQ(mouse(WM_MOUSEMOVE, 10, 10), 1);
  EXPECT_FALSE(editorViewInvalid());
}

}  // namespace
