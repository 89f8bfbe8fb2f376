// Pop-up menus chosen with the mouse and with keys, and message boxes answered without a display;
// accelerators are checked through the editor's rename field.
#include "host/window/menus/menu_tracker.h"
#include "tests/host/window/window_test_support.h"

using namespace winsys;

namespace {

class MenusAndKeys : public WindowTest {
 public:
  MenusAndKeys() {
    top = frame(400, 300);
    target = child(top, 0, {0, 0, 400, 300}, WS_VISIBLE | WS_TABSTOP);
    system->setFocus(window(target));
    menu = system->menus().create();
    auto& menus = system->menus();
    sub = menus.create();
    menus.insert(sub, -1, 0, 31, "Deep");
    menus.insert(menu, -1, 0, 100, "&Adjust inputs/outputs");
    menus.insert(menu, -1, MF_SEPARATOR, 0, nullptr);
    menus.insert(menu, -1, MF_GRAYED, 101, "Greyed");
    menus.insert(menu, -1, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), "More");
    menus.insert(menu, -1, 0, 102, "Last\tCtrl+L");
  }
  int track(UINT flags = TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON) {
    return trackPopupMenu(*system, menu, flags, 50, 40, target);
  }
  void queueKeys(const std::vector<int>& keys) {
    for (const int key : keys) {
      InputEvent down;
      down.kind = EventKind::KeyDown;
      down.virtualKey = key;
      backend->queue(down);
    }
  }
  HWND top = nullptr, target = nullptr;
  HMENU menu = nullptr, sub = nullptr;
};

}  // namespace

TEST_F(MenusAndKeys, MenusAreChosenByMouseAndByKeys) {
  const struct {
    const char* how;
    const char* clicked;  // the item the pointer chooses, else keys
    std::vector<int> keys;
    int command;
  } cases[] = {
      {"click", "Adjust inputs/outputs", {}, 100},
      {"click on a greyed item does nothing", "Greyed", {}, 0},
      {"keys skip separators and greyed items",
       nullptr,
       {VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN},
       102},
      {"into the submenu", nullptr, {VK_UP, VK_UP, VK_RIGHT, VK_RETURN}, 31},
      {"escape", nullptr, {VK_DOWN, VK_ESCAPE}, 0},
      {"nothing more comes", nullptr, {}, 0},
  };
  for (const auto& c : cases) {
    if (c.clicked != nullptr) driver->answerNextMenu(c.clicked);
    queueKeys(c.keys);
    EXPECT_EQ(track(), c.command) << c.how;
    EXPECT_EQ(system->openMenu(), nullptr);
    EXPECT_EQ(system->capture(), nullptr);
    backend->setIdleHook(nullptr);
  }
  EXPECT_EQ(system->menus().check(menu, 100, MF_CHECKED), static_cast<int>(MF_UNCHECKED));
  EXPECT_EQ(system->menus().item(menu, 100, 0)->flags & MF_CHECKED, MF_CHECKED);
  // Without TPM_RETURNCMD the choice arrives as WM_COMMAND.
  driver->answerNextMenu("Last");
  EXPECT_EQ(track(TPM_RIGHTBUTTON), 1);
  system->processEvents();
  ASSERT_EQ(received(WM_COMMAND).size(), 1u);
  EXPECT_EQ(received(WM_COMMAND)[0].wParam, 102u);
}

// What a plug-in's message box said is checked through the editor that shows one.
TEST_F(MenusAndKeys, MessageBoxesTakeTheQueuedAnswerElseTheirDefaultButton) {
  backend->queueMessageBoxAnswer(IDNO);
  for (const auto& [style, answer] : {std::pair{MB_YESNO, IDNO},
                                      {MB_YESNO, IDYES},
                                      {MB_OKCANCEL | MB_DEFBUTTON2, IDCANCEL},
                                      {MB_OK, IDOK}})
    EXPECT_EQ(backend->messageBox(nullptr, "Text", "Title", style), answer) << style;
}
