// The tree through the names plug-ins bind: message order at create and destroy, handles,
// geometry, focus and Tab, capture, posted messages, timers on the virtual clock, painting.
#include <map>

#include "tests/host/window/window_test_support.h"

using namespace winsys;

namespace {

class WindowTree : public WindowTest {
 protected:
  const HWND top = frame();
  // "<id><c|d|n> " for each WM_CREATE, WM_DESTROY and WM_NCDESTROY the recording windows got.
  std::string trace(const std::map<HWND, int>& ids) const {
    const std::map<UINT, const char*> kinds{
        {WM_CREATE, "c "}, {WM_DESTROY, "d "}, {WM_NCDESTROY, "n "}};
    std::string out;
    for (const Recorded& r : recorded()) {
      if (kinds.contains(r.message)) out += std::to_string(ids.at(r.window)) + kinds.at(r.message);
    }
    return out;
  }
};

}  // namespace

TEST_F(WindowTree, CreateAndDestroySendTheirMessagesChildrenFirst) {
  const HWND a = child(top, 1), b = child(a, 2), c = child(a, 3), d = child(b, 4);
  const std::map<HWND, int> ids{{a, 1}, {b, 2}, {c, 3}, {d, 4}};
  EXPECT_EQ(trace(ids), "1c 2c 3c 4c ");
  recorded().clear();
  EXPECT_EQ(bound<PlaskId::DestroyWindow>()(a), 1);
  EXPECT_EQ(trace(ids), "4d 4n 2d 2n 3d 3n 1d 1n ");
  // Destroyed and foreign handles are refused, not read.
  int notAWindow = 0;
  for (HWND gone : {a, b, c, d, reinterpret_cast<HWND>(&notAWindow)}) {
    EXPECT_EQ(bound<PlaskId::IsWindow>()(gone), 0);
    EXPECT_EQ(bound<PlaskId::SendMessage>()(gone, WM_USER, 1, 2), 0);
    EXPECT_EQ(bound<PlaskId::DestroyWindow>()(gone), 0);
    EXPECT_EQ(bound<PlaskId::GetParent>()(gone), nullptr);
    EXPECT_EQ(bound<PlaskId::GetDC>()(gone), nullptr);
  }
  EXPECT_EQ(bound<PlaskId::GetDlgItem>()(top, 1), nullptr);
  EXPECT_EQ(system->windowCount(), 1u);
}

TEST_F(WindowTree, GeometryStateAndLookups) {
  const HWND outer = child(top, 10, {30, 40, 230, 140});
  const HWND inner = child(outer, 11, {5, 6, 55, 26});
  POINT p{7, 8};
  bound<PlaskId::ClientToScreen>()(inner, &p);
  EXPECT_EQ((std::array{p.x, p.y}), (std::array{42, 54}));
  bound<PlaskId::ScreenToClient>()(outer, &p);
  EXPECT_EQ((std::array{p.x, p.y}), (std::array{12, 14}));
  RECT r{};
  bound<PlaskId::GetWindowRect>()(inner, &r);
  EXPECT_EQ((std::array{r.left, r.top, r.right, r.bottom}), (std::array{35, 46, 85, 66}));
  EXPECT_EQ(bound<PlaskId::IsChild>()(top, inner), 1);
  EXPECT_EQ(bound<PlaskId::IsChild>()(inner, top), 0);
  EXPECT_EQ(bound<PlaskId::GetDlgItem>()(outer, 11), inner);
  bound<PlaskId::SetWindowLong>()(inner, GWL_USERDATA, 0x5151);
  bound<PlaskId::SetWindowLong>()(inner, GWL_ID, 12);
  EXPECT_EQ(bound<PlaskId::GetWindowLong>()(inner, GWL_USERDATA), 0x5151);
  EXPECT_EQ(bound<PlaskId::GetDlgItem>()(outer, 12), inner);
  bound<PlaskId::ShowWindow>()(outer, SW_HIDE);
  EXPECT_EQ(bound<PlaskId::IsWindowVisible>()(inner), 0) << "a hidden parent hides its children";
  bound<PlaskId::SetWindowPos>()(outer, nullptr, 0, 0, 300, 20,
                                 SWP_NOMOVE | SWP_NOZORDER | SWP_SHOWWINDOW);
  bound<PlaskId::GetClientRect>()(outer, &r);
  EXPECT_EQ((std::array{r.right, r.bottom}), (std::array{300, 20}));
  EXPECT_EQ(received(WM_SIZE).back().lParam, makeLParam(300, 20));
}

TEST_F(WindowTree, TabMovesTheFocusOverVisibleEnabledTabStops) {
  const HWND stops[] = {child(top, 1, {0, 0, 9, 9}, WS_VISIBLE | WS_TABSTOP),
                        child(top, 2, {0, 0, 9, 9}, WS_VISIBLE),
                        child(top, 3, {0, 0, 9, 9}, WS_VISIBLE | WS_TABSTOP),
                        child(top, 4, {0, 0, 9, 9}, WS_VISIBLE | WS_TABSTOP | WS_DISABLED),
                        child(top, 5, {0, 0, 9, 9}, WS_TABSTOP),
                        child(top, 6, {0, 0, 9, 9}, WS_VISIBLE | WS_TABSTOP)};
  const auto focusId = [&] {
    return bound<PlaskId::GetWindowLong>()(bound<PlaskId::GetFocus>()(), GWL_ID);
  };
  std::vector<LONG_PTR> order;
  for (int i = 0; i < 4; ++i) {
    driver->key(VK_TAB);
    order.push_back(focusId());
  }
  driver->key(VK_TAB, kModShift);
  order.push_back(focusId());
  EXPECT_EQ(order, (std::vector<LONG_PTR>{1, 3, 6, 1, 6}));
  recorded().clear();
  bound<PlaskId::SetFocus>()(stops[2]);
  EXPECT_EQ(received(WM_KILLFOCUS).at(0).window, stops[5]);
  EXPECT_EQ(received(WM_SETFOCUS).at(0).lParam, 0);
  EXPECT_EQ(received(WM_SETFOCUS).at(0).wParam, reinterpret_cast<WPARAM>(stops[5]));
  driver->key('Q');
  EXPECT_EQ(received(WM_KEYDOWN).at(0).window, stops[2]) << "keys go to the focus";
}

TEST_F(WindowTree, CaptureKeepsTheMouseAndRightClicksBecomeContextMenus) {
  const HWND a = child(top, 1, {0, 0, 50, 50});
  const HWND b = child(top, 2, {100, 0, 150, 50});
  bound<PlaskId::SetCapture>()(a);
  driver->move(b, {10, 10});
  EXPECT_EQ(received(WM_MOUSEMOVE).back().window, a);
  EXPECT_EQ(received(WM_MOUSEMOVE).back().lParam, makeLParam(110, 10)) << "in a's coordinates";
  bound<PlaskId::ReleaseCapture>()();
  EXPECT_EQ(received(WM_CAPTURECHANGED).size(), 1u);
  EXPECT_EQ(bound<PlaskId::GetCapture>()(), nullptr);
  recorded().clear();
  driver->click(b, {5, 5}, 0, MouseButton::Right);
  const std::vector<Recorded> menus = received(WM_CONTEXTMENU);
  ASSERT_EQ(menus.size(), 1u) << "the frame ignores it after b passed it on";
  EXPECT_EQ(menus[0].wParam, reinterpret_cast<WPARAM>(b));
  EXPECT_EQ(menus[0].lParam, makeLParam(105, 5)) << "screen coordinates";
  // A window that captures a right drag handles the right button itself.
  recorded().clear();
  driver->press(b, {5, 5}, MouseButton::Right);
  bound<PlaskId::SetCapture>()(b);
  driver->release(b, {20, 20}, MouseButton::Right);
  EXPECT_TRUE(received(WM_CONTEXTMENU).empty());
}

// The driver moves the pointer only where it is not yet: a double click is no drag.
TEST_F(WindowTree, TheDriverClicksWhereThePointerRestsWithoutMovingIt) {
  const HWND a = child(top, 1, {0, 0, 50, 50});
  driver->doubleClick(a, {10, 10});
  driver->click(a, {12, 10});
  std::vector<UINT> order;
  for (const Recorded& r : recorded()) {
    if (r.window == a && r.message >= WM_MOUSEMOVE && r.message <= WM_LBUTTONDBLCLK) {
      order.push_back(r.message);
    }
  }
  EXPECT_EQ(order, (std::vector<UINT>{WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK,
                                      WM_LBUTTONUP, WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP}));
}

TEST_F(WindowTree, PostedMessagesAndTimersOnTheVirtualClock) {
  const HWND a = child(top, 1);
  bound<PlaskId::PostMessage>()(a, WM_USER + 1, 7, 0);
  EXPECT_TRUE(received(WM_USER + 1).empty()) << "queued, not sent";
  system->processEvents();
  EXPECT_EQ(received(WM_USER + 1).size(), 1u);
  bound<PlaskId::SetTimer>()(a, 7, 50, nullptr);
  bound<PlaskId::SetTimer>()(a, 8, 120, nullptr);
  driver->advance(500);
  std::vector<WPARAM> ticks;
  for (const Recorded& r : received(WM_TIMER)) ticks.push_back(r.wParam);
  EXPECT_EQ((std::array{std::count(ticks.begin(), ticks.end(), 7u),
                        std::count(ticks.begin(), ticks.end(), 8u)}),
            (std::array<std::ptrdiff_t, 2>{10, 4}));
  EXPECT_EQ(std::vector<WPARAM>(ticks.begin(), ticks.begin() + 4),
            (std::vector<WPARAM>{7, 7, 8, 7}))
      << "8 at 120 ms, between the ticks at 100 and 150";
  recorded().clear();
  bound<PlaskId::KillTimer>()(a, 7);
  bound<PlaskId::SetTimer>()(a, 8, 30, nullptr);  // replaces the interval
  driver->advance(100);
  EXPECT_EQ(received(WM_TIMER).size(), 3u);
  bound<PlaskId::DestroyWindow>()(a);
  EXPECT_FALSE(system->nextTimerDue().has_value()) << "a window's timers end with it";
}

TEST_F(WindowTree, InvalidatedWindowsRepaintParentsFirstWithTheirUpdateRectangle) {
  const HWND a = child(top, 1, {10, 10, 110, 110});
  const HWND b = child(a, 2, {20, 20, 60, 60});
  const HWND hidden = child(top, 3, {0, 0, 50, 50}, 0);
  system->paint();
  recorded().clear();
  const RECT part{25, 25, 35, 30};
  bound<PlaskId::InvalidateRect>()(b, &part, 0);
  bound<PlaskId::InvalidateRect>()(hidden, nullptr, 0);
  system->paint();
  std::vector<HWND> painted;
  for (const Recorded& r : received(WM_PAINT)) painted.push_back(r.window);
  EXPECT_EQ(painted, (std::vector<HWND>{a, b})) << "a's area under b is repainted before b";
  ASSERT_EQ(backend->lastPresented().size(), 1u);
  const RECT shown = backend->lastPresented()[0];
  EXPECT_EQ((std::array{shown.left, shown.top, shown.right, shown.bottom}),
            (std::array{55, 55, 65, 60}))
      << "only the invalidated part, in the frame";
  recorded().clear();
  const long presented = backend->presentedRects();
  system->paint();
  EXPECT_TRUE(received(WM_PAINT).empty());
  EXPECT_EQ(backend->presentedRects(), presented) << "nothing invalidated, nothing presented";
}
