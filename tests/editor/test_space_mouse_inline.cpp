// The host's inline view through the dispatcher: its answers, the host's size limits, and mouse
// editing with the host's block (size and mouse at byte 20) and the inline DPI scale, repainting
// the open editor's view.
#include <cstring>

#include "plugin/plugin_entry.h"
#include "space_mouse_fixture.h"
#include "tests/editor/fake_window_layer.h"

namespace {

using Calls = std::vector<std::string>;
const Calls kRepaintEditor{"GetDlgItem 1023", "InvalidateRect view all 0"};

class InlineView : public ::testing::Test {
 protected:
  void SetUp() override {
    fake_window::install();
    plugin_->host.effect.object = plugin_.get();
  }
  void TearDown() override { fake_window::uninstall(); }

  VstIntPtr send(int message, void* block) {
    return dispatcher(&plugin_->host.effect, effVendorSpecific, 16, 0, block,
                      static_cast<float>(message));
  }
  VstIntPtr mouse(int message, int mouseX, int mouseY) {
    const std::int32_t fields[5] = {kViewSize, kViewSize, mouseX, mouseY, 0};
    std::memcpy(block_ + 20, fields, sizeof fields);
    return send(message, block_);
  }

  std::unique_ptr<PannerPlugin> plugin_ =
      makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
  unsigned char block_[40] = {};
};

TEST_F(InlineView, AnswersTheQueryAndIgnoresWhatItDoesNotHandle) {
  selectInputs(*plugin_, {0});
  RecordingHost host;
  EXPECT_EQ(send(0, nullptr), 1);
  EXPECT_EQ(mouse(WM_LBUTTONDBLCLK, 150, 50), 0);  // no reset from the inline view
  EXPECT_EQ(mouse(WM_KEYDOWN, 150, 50), 0);
  EXPECT_EQ(send(0x7FFF, nullptr), 0);
  EXPECT_EQ(send(WM_LBUTTONDOWN, nullptr), 0);
  EXPECT_EQ(plugin_->model.inputs[0].x, 0.5);
  EXPECT_TRUE(host.calls().empty());
}

TEST_F(InlineView, MinMaxInfoGetsTheHostsFlagAndMinimumWidth) {
  MINMAXINFO info{};
  info.ptMinTrackSize.y = 5;
  info.ptMaxSize = {300, 200};
  EXPECT_EQ(send(WM_GETMINMAXINFO, &info), 1);
  EXPECT_EQ(info.ptReserved.x, 0x10000);
  EXPECT_EQ(info.ptMinTrackSize.x, 20);
  EXPECT_EQ(info.ptMinTrackSize.y, 5);
  EXPECT_EQ(info.ptMaxSize.x, 300);
  EXPECT_EQ(send(WM_GETMINMAXINFO, nullptr), 1);
}

TEST_F(InlineView, ADragAtTheInlineScaleMovesReportsAndRepaintsTheEditor) {
  plugin_->view.inlineScale = 512;  // 8 px off the dot is a hit at 200 % only
  plugin_->host.editorWindow = fake_window::kParent;
  RecordingHost host;
  EXPECT_EQ(mouse(WM_LBUTTONDOWN, 158, 50), 1);
  EXPECT_EQ(plugin_->view.dragInput, 0);
  EXPECT_EQ(fake_window::calls, kRepaintEditor);
  fake_window::calls.clear();
  EXPECT_EQ(mouse(WM_MOUSEMOVE, 168, 40), 1);
  EXPECT_EQ(fake_window::calls, kRepaintEditor);
  EXPECT_EQ(mouse(WM_LBUTTONUP, 168, 40), 1);
  EXPECT_NEAR(plugin_->model.inputs[0].x, 0.6, 1e-9);
  EXPECT_NEAR(plugin_->model.inputs[0].y, 0.6, 1e-9);
  EXPECT_EQ(reportsOf(host).back(), endEdit(7));
  EXPECT_EQ(plugin_->view.dragInput, -1);
}

TEST_F(InlineView, RightDragSelectsWithoutCaptureAndRepaintsOnlyAnOpenEditor) {
  selectInputs(*plugin_, {2});
  EXPECT_EQ(mouse(WM_RBUTTONDOWN, 40, 40), 1);
  EXPECT_EQ(mouse(WM_MOUSEMOVE, 120, 90), 1);
  EXPECT_EQ(plugin_->view.bandRect[2], 120);
  EXPECT_EQ(mouse(WM_RBUTTONUP, 160, 110), 1);
  EXPECT_EQ(selectedInputs(*plugin_), (std::vector<int>{0, 1}));
  EXPECT_EQ(plugin_->view.bandActive, 0);
  plugin_->host.editorWindow = fake_window::kParent;
  EXPECT_EQ(mouse(WM_MOUSEMOVE, 10, 10), 1);  // changes nothing
  EXPECT_TRUE(fake_window::calls.empty());
}

}  // namespace
