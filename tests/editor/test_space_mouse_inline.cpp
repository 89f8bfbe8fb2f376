// Mouse editing through the host's inline view: the same operations, driven by the dispatcher's
// inline messages with the host's block (size and mouse at byte 20) and the inline DPI scale.
#include <cstring>

#include "plugin/plugin_entry.h"
#include "space_mouse_fixture.h"

namespace {

constexpr int kInlineIndex = 16;

class InlineMouse : public ::testing::Test {
 protected:
  void SetUp() override {
    plugin_ = makeRoom({{0.5, 0.5, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.5, 0.0}});
    plugin_->effect.object = plugin_.get();
  }
  VstIntPtr send(int message, int mouseX, int mouseY) {
    const std::int32_t fields[5] = {kViewSize, kViewSize, mouseX, mouseY, 0};
    std::memcpy(block_ + 20, fields, sizeof fields);
    return dispatcher(&plugin_->effect, effVendorSpecific, kInlineIndex, 0, block_,
                      static_cast<float>(message));
  }

  std::unique_ptr<PannerPlugin> plugin_;
  unsigned char block_[40] = {};
};

TEST_F(InlineMouse, ADragMovesTheInputAndReportsLikeTheEditor) {
  RecordingHost host;
  EXPECT_EQ(send(WM_LBUTTONDOWN, 150, 50), 1);
  EXPECT_EQ(plugin_->dragInput, 0);
  EXPECT_EQ(send(WM_MOUSEMOVE, 160, 40), 1);
  EXPECT_EQ(send(WM_LBUTTONUP, 160, 40), 1);
  EXPECT_NEAR(plugin_->inputs[0].x, 0.6, 1e-9);
  EXPECT_NEAR(plugin_->inputs[0].y, 0.6, 1e-9);
  EXPECT_EQ(reportsOf(host),
            (std::vector<Report>{automate(5, 0.6), automate(6, 0.6), automate(7, 0.0),
                                 automate(5, 0.6), endEdit(5), automate(6, 0.6), endEdit(6),
                                 automate(7, 0.0), endEdit(7)}));
  EXPECT_EQ(plugin_->dragInput, -1);
  EXPECT_EQ(selectedInputs(*plugin_), std::vector<int>{0});
}

TEST_F(InlineMouse, HitSizeFollowsTheHostBitmapsScale) {
  plugin_->inlineScale = 512;
  send(WM_LBUTTONDOWN, 160, 50);
  EXPECT_EQ(plugin_->dragInput, 0);
  plugin_->inlineScale = 256;
  plugin_->viewScale = 512;
  send(WM_LBUTTONDOWN, 160, 50);
  EXPECT_EQ(plugin_->dragInput, -1);
}

TEST_F(InlineMouse, RightDragSelectsWithoutCapture) {
  selectInputs(*plugin_, {2});
  EXPECT_EQ(send(WM_RBUTTONDOWN, 40, 40), 1);
  EXPECT_EQ(plugin_->bandActive, 1);
  EXPECT_EQ(send(WM_MOUSEMOVE, 120, 90), 1);
  EXPECT_EQ(plugin_->bandRect[2], 120);
  EXPECT_EQ(send(WM_RBUTTONUP, 160, 110), 1);
  EXPECT_EQ(selectedInputs(*plugin_), (std::vector<int>{0, 1}));
  EXPECT_EQ(plugin_->bandActive, 0);
}

TEST_F(InlineMouse, DoubleClickResetsNothing) {
  selectInputs(*plugin_, {0});
  RecordingHost host;
  EXPECT_EQ(send(WM_LBUTTONDBLCLK, 150, 50), 0);
  EXPECT_EQ(plugin_->inputs[0].x, 0.5);
  EXPECT_TRUE(host.calls().empty());
}

}  // namespace
