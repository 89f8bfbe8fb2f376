// The inline view's messages through the dispatcher, against a fake window layer: answers, the
// host's size limits and the invalidation of the open editor's view.
#include <gtest/gtest.h>

#include <cstring>

#include "plugin/plugin_entry.h"
#include "tests/editor/fake_window_layer.h"

namespace {

using Calls = std::vector<std::string>;

class InlineMessages : public ::testing::Test {
 protected:
  void SetUp() override {
    fake_window::install();
    plugin.effect.object = &plugin;
  }
  void TearDown() override { fake_window::uninstall(); }

  VstIntPtr send(int message, void* ptr) {
    return dispatcher(&plugin.effect, effVendorSpecific, 16, 0, ptr, static_cast<float>(message));
  }
  // A block with the mouse at (x, y) in a 200 x 160 view.
  void* mouseAt(int x, int y) {
    const std::int32_t fields[5] = {200, 160, x, y, 0};
    std::memcpy(block + 20, fields, sizeof fields);
    return block;
  }

  PannerPlugin plugin;
  unsigned char block[40] = {};
};

TEST_F(InlineMessages, AnswersTheQueryAndIgnoresOtherMessages) {
  EXPECT_EQ(send(0, nullptr), 1);
  EXPECT_EQ(send(WM_LBUTTONDBLCLK, mouseAt(10, 10)), 0);
  EXPECT_EQ(send(WM_KEYDOWN, mouseAt(10, 10)), 0);
  EXPECT_EQ(send(0x7FFF, nullptr), 0);
}

TEST_F(InlineMessages, MinMaxInfoGetsTheHostsFlagAndMinimumWidth) {
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

TEST_F(InlineMessages, HandledMouseMessagesRepaintTheOpenEditorsView) {
  for (int message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_RBUTTONDOWN, WM_RBUTTONUP}) {
    plugin.editorWindow = nullptr;
    fake_window::calls.clear();
    EXPECT_EQ(send(message, mouseAt(10, 10)), 1) << message;
    EXPECT_TRUE(fake_window::calls.empty()) << message;
    plugin.editorWindow = fake_window::kParent;
    EXPECT_EQ(send(message, mouseAt(10, 10)), 1) << message;
    EXPECT_EQ(fake_window::calls, (Calls{"GetDlgItem 1023", "InvalidateRect view all 0"}))
        << message;
  }
}

TEST_F(InlineMessages, AMoveThatChangesNothingLeavesTheEditorAlone) {
  plugin.editorWindow = fake_window::kParent;
  fake_window::calls.clear();
  EXPECT_EQ(send(WM_MOUSEMOVE, mouseAt(10, 10)), 1);
  EXPECT_TRUE(fake_window::calls.empty());
}

TEST_F(InlineMessages, MouseMessagesWithoutABlockDoNothing) {
  plugin.editorWindow = fake_window::kParent;
  fake_window::calls.clear();
  EXPECT_EQ(send(WM_LBUTTONDOWN, nullptr), 0);
  EXPECT_TRUE(fake_window::calls.empty());
}

}  // namespace
