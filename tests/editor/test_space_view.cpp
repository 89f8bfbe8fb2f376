// The SpaceView control against a fake window layer: creation, the paint cycle, the cursor and
// the routing of mouse messages.
#include <gtest/gtest.h>

#include "editor/view/space_render.h"
#include "model/counts.h"
#include "plugin/editor_link.h"
#include "plugin/host_api.h"
#include "tests/editor/fake_window_layer.h"

namespace {

using Calls = std::vector<std::string>;

using fake_window::FakeBitmap;

// The view's own bitmaps (with a drawing context); the shared speaker icons are plain ones.
std::vector<FakeBitmap*> bitmapsMade;
DAUB_IBitmap* makeBitmap(int kind, int w, int h) {
  auto* bitmap = new FakeBitmap(w, h);
  if (kind == DAUB_BITMAP_WITH_DC) bitmapsMade.push_back(bitmap);
  return bitmap;
}
int dialogScale(HWND) {
  return 384;
}

class SpaceViewControl : public ::testing::Test {
 protected:
  void SetUp() override {
    fake_window::install();
    bitmapsMade.clear();
    fake_window::parentUserData = reinterpret_cast<LONG_PTR>(&plugin);
  }
  void TearDown() override {
    fake_window::uninstall();
    hostApi = HostApi{};
    delete plugin.view.viewFront;
    delete plugin.view.viewBack;
    releaseSharedDrawingResources();
  }

  // Creates the control and clears the log; the view's procedure is then known.
  void create() {
    ASSERT_EQ(
        spaceViewControlCreator()(fake_window::kParent, 1023, "SpatiolaWindow", 0, 7, 7, 263, 242),
        fake_window::kView);
    fake_window::calls.clear();
  }
  INT_PTR send(UINT message, int x = 0, int y = 0) {
    const LPARAM position = static_cast<LPARAM>((y & 0xFFFF) << 16 | (x & 0xFFFF));
    return fake_window::createdProcedure(fake_window::kView, message, 0, position);
  }

  PannerPlugin plugin;
};

TEST_F(SpaceViewControl, CreatesThePlacedChildForItsClassOnly) {
  const PlaskControlCreator creator = spaceViewControlCreator();
  ASSERT_NE(creator, nullptr);
  EXPECT_EQ(creator(fake_window::kParent, 1023, "KESTELknob", 0, 10, 20, 300, 200), nullptr);
  EXPECT_EQ(creator(fake_window::kParent, 1023, nullptr, 0, 10, 20, 300, 200), nullptr);
  EXPECT_TRUE(fake_window::calls.empty());
  EXPECT_EQ(creator(fake_window::kParent, 1023, "SpatiolaWindow", 0, 10, 20, 300, 200),
            fake_window::kView);
  EXPECT_EQ(fake_window::calls, (Calls{"CreateDialog 0 parent 0", "SetWindowLong -12 1023",
                                       "SetWindowPos 10 20 300 200 0x14", "ShowWindow 1"}));
}

TEST_F(SpaceViewControl, SetsTheArrowCursorButWithoutAnInstanceLeavesAllToTheDefault) {
  create();
  EXPECT_EQ(send(WM_SETCURSOR), 1);
  EXPECT_EQ(fake_window::calls, (Calls{"LoadCursor 32512", "SetCursor arrow"}));
  fake_window::parentUserData = 0;
  for (UINT message : {WM_SETCURSOR, WM_PAINT, WM_LBUTTONDOWN}) {
    fake_window::calls.clear();
    EXPECT_EQ(send(message), fake_window::kDefaultAnswer);
    EXPECT_EQ(fake_window::calls.size(), 1u) << message;
  }
}

TEST_F(SpaceViewControl, FirstPaintMakesScaledBitmapsDrawsAndCopiesToTheScreen) {
  hostApi.DAUB_CreateBitmap = &makeBitmap;
  hostApi.GetWindowDPIScalingForDialog = &dialogScale;
  create();
  plugin.model.changeFlags = kChangeLevels;
  EXPECT_EQ(send(WM_PAINT), fake_window::kDefaultAnswer);
  ASSERT_EQ(bitmapsMade.size(), 2u);
  EXPECT_EQ(plugin.view.viewFront, bitmapsMade[0]);
  EXPECT_EQ(plugin.view.viewBack, bitmapsMade[1]);
  EXPECT_EQ(bitmapsMade[0]->width, 120);
  EXPECT_EQ(bitmapsMade[1]->height, 90);
  EXPECT_EQ(plugin.view.viewScale, 384);
  EXPECT_EQ(bitmapsMade[1]->advisedScale, 384);
  // The new back layer forced a full redraw; the editor took bits 8 and 16, the inline view must
  // still repaint, other bits are left for the dialog.
  EXPECT_EQ(plugin.model.changeFlags.load(), kChangeLevels);
  EXPECT_EQ(plugin.view.inlineRedraw.load(), 1);
  EXPECT_EQ(fake_window::calls, (Calls{"BeginPaint", "BitBlt screen 0 0 120 90 bitmap 0 0 0",
                                       "EndPaint", "DefWindowProc 0xf"}));
  // Later paints keep the bitmaps and flag the inline view only when the picture changed.
  plugin.view.inlineRedraw = 0;
  send(WM_PAINT);
  EXPECT_EQ(bitmapsMade.size(), 2u);
  EXPECT_EQ(plugin.view.inlineRedraw.load(), 0);
  plugin.model.changeFlags |= kChangeInputs;
  send(WM_PAINT);
  EXPECT_EQ(plugin.view.inlineRedraw.load(), 1);
  EXPECT_EQ(plugin.model.changeFlags.load(), kChangeLevels);
}

TEST_F(SpaceViewControl, WithoutHostBitmapsThePaintStillValidates) {
  create();
  send(WM_PAINT);
  EXPECT_EQ(plugin.view.viewFront, nullptr);
  EXPECT_EQ(fake_window::calls, (Calls{"BeginPaint", "EndPaint", "DefWindowProc 0xf"}));
}

TEST_F(SpaceViewControl, ButtonUpsAndMovesActOnlyOnACaptureHeldForSomething) {
  setInputCount(plugin, 1);
  create();
  plugin.view.bandActive = 1;
  plugin.view.dragInput = 0;
  EXPECT_EQ(send(WM_RBUTTONUP, 5, 5), 0);  // no capture
  EXPECT_EQ(send(WM_LBUTTONUP, 5, 5), 0);
  fake_window::capture = fake_window::kView;
  plugin.view.bandActive = 0;
  plugin.view.dragInput = -1;
  EXPECT_EQ(send(WM_RBUTTONUP, 5, 5), 0);  // captured, nothing held
  EXPECT_EQ(send(WM_LBUTTONUP, 5, 5), 0);
  EXPECT_EQ(send(WM_MOUSEMOVE, 5, 5), fake_window::kDefaultAnswer);
  EXPECT_EQ(fake_window::calls, Calls{"DefWindowProc 0x200"});
}

// The routing end to end with the room editing behind it. The client area is 120 x 90: centre
// (60, 45), 57.6 x 43.2 px per model unit; input 0 sits at the centre, input 1 at (89, 23).
TEST_F(SpaceViewControl, LeftDragsMoveRightDragsSelectAndADoubleClickResets) {
  setInputCount(plugin, 2);
  plugin.model.inputs[0].x = plugin.model.inputs[0].y = 0.0;
  plugin.model.inputs[1].x = plugin.model.inputs[1].y = 0.5;
  create();
  EXPECT_EQ(send(WM_RBUTTONDOWN, 50, 35), 0);
  send(WM_MOUSEMOVE, 70, 55);
  EXPECT_EQ(plugin.view.bandRect[2], 70);
  EXPECT_EQ(send(WM_RBUTTONUP, 70, 55), 0);
  EXPECT_EQ(plugin.model.inputs[0].selected, 1);
  EXPECT_EQ(plugin.model.inputs[1].selected, 0);
  EXPECT_EQ(plugin.view.bandActive, 0);
  EXPECT_EQ(fake_window::calls, (Calls{"SetCapture", "SendMessage parent 0x113 1",
                                       "DefWindowProc 0x200", "ReleaseCapture"}));
  fake_window::calls.clear();
  EXPECT_EQ(send(WM_LBUTTONDOWN, 10, 80), 0);  // empty floor: no capture
  EXPECT_TRUE(fake_window::calls.empty());
  EXPECT_EQ(send(WM_LBUTTONDOWN, 60, 45), 0);
  EXPECT_EQ(plugin.view.dragInput, 0);
  EXPECT_EQ(fake_window::calls, Calls{"SetCapture"});
  fake_window::calls.clear();
  EXPECT_EQ(send(WM_MOUSEMOVE, 89, 45), fake_window::kDefaultAnswer);
  EXPECT_NEAR(plugin.model.inputs[0].x, 29 / 57.6, 1e-9);
  EXPECT_EQ(fake_window::calls, (Calls{"SendMessage parent 0x113 1", "DefWindowProc 0x200"}));
  fake_window::calls.clear();
  EXPECT_EQ(send(WM_LBUTTONUP, 89, 45), 0);
  EXPECT_EQ(plugin.view.dragInput, -1);
  EXPECT_EQ(fake_window::calls, Calls{"ReleaseCapture"});
  EXPECT_EQ(send(WM_LBUTTONDBLCLK, 5, 5), 0);  // resets the selection, not what is under the mouse
  EXPECT_EQ(plugin.model.inputs[0].x, 0.0);
  EXPECT_EQ(plugin.model.inputs[1].x, 0.5);
}

}  // namespace
