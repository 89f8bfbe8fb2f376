#include "host/window/menus/menu_tracker.h"

#include <cmath>

#include "host/window/controls/popup_list.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

constexpr int kMaxMenuRows = 40;

std::vector<PopupItem> rowsOf(const Menu& menu) {
  std::vector<PopupItem> rows;
  for (const MenuItem& item : menu.items) {
    rows.push_back({menuLabel(item.text), (item.flags & (MF_GRAYED | MF_DISABLED)) == 0,
                    (item.flags & MF_CHECKED) != 0, (item.flags & MF_SEPARATOR) != 0,
                    item.submenu != nullptr});
  }
  return rows;
}

}  // namespace

MenuTracker::MenuTracker(WindowSystem& system, HMENU menu, Window* top, POINT at, UINT flags)
    : system_(system), top_(top), flags_(flags) {
  if (!openLevel(menu, {at.x, at.y, at.x, at.y})) {
    done_ = true;
    return;
  }
  Window* first = levels_.front().popup;
  if ((flags & TPM_RIGHTALIGN) != 0 || (flags & TPM_CENTERALIGN) != 0) {
    const int shift =
        (flags & TPM_RIGHTALIGN) != 0 ? first->clientWidth() : first->clientWidth() / 2;
    RECT moved = offsetBy(first->rect, -std::min<int>(shift, first->rect.left), 0);
    system_.move(first, moved, true);
  }
  system_.setCapture(first);
  system_.setKeyInterceptor(
      [this](UINT message, WPARAM wParam, LPARAM) { return onKey(message, wParam); });
  system_.setOpenMenu(this);
}

MenuTracker::~MenuTracker() {
  system_.setKeyInterceptor(nullptr);
  if (system_.openMenu() == this) system_.setOpenMenu(nullptr);
  const bool held = !levels_.empty() && system_.capture() == levels_.front().popup;
  closeLevelsAfter(0);
  if (held) system_.releaseCapture();
}

bool MenuTracker::openLevel(HMENU menu, const RECT& anchor) {
  const Menu* items = system_.menus().find(menu);
  if (items == nullptr || items->items.empty() || !system_.isLive(top_)) return false;
  const int rowPx =
      static_cast<int>(std::lround(theme::kMenuItemPx * system_.scale256Of(top_) / 256.0));
  Window* popup =
      openPopupList(system_, top_, anchor, rowsOf(*items), rowPx, true, 0, kMaxMenuRows);
  if (popup == nullptr) return false;
  popupListOf(popup)->setInputHandler(
      [this](UINT message, WPARAM, LPARAM lParam) { onMouse(message, lParam); });
  levels_.push_back({menu, popup});
  return true;
}

void MenuTracker::closeLevelsAfter(std::size_t keep) {
  while (levels_.size() > keep) {
    Window* popup = levels_.back().popup;
    levels_.pop_back();
    if (system_.isLive(popup)) {
      popupListOf(popup)->setInputHandler(nullptr);
      if (system_.capture() == popup) system_.releaseCapture();
      system_.destroy(popup->handle());
    }
  }
}

PopupList* MenuTracker::list(std::size_t level) const {
  return popupListOf(levels_[level].popup);
}

const MenuItem* MenuTracker::entry(std::size_t level, int row) const {
  const Menu* menu = system_.menus().find(levels_[level].menu);
  if (menu == nullptr || row < 0 || row >= static_cast<int>(menu->items.size())) return nullptr;
  return &menu->items[static_cast<std::size_t>(row)];
}

void MenuTracker::onMouse(UINT message, LPARAM lParam) {
  if (done_ || levels_.empty()) return;
  if (message == WM_CAPTURECHANGED) {
    if (system_.capture() != levels_.front().popup) finish(0);
    return;
  }
  const POINT screen = system_.clientToScreen(levels_.front().popup,
                                              {signedLowWord(lParam), signedHighWord(lParam)});
  // The deepest level under the mouse gets it.
  for (std::size_t level = levels_.size(); level-- > 0;) {
    Window* popup = levels_[level].popup;
    const POINT local = system_.screenToClient(popup, screen);
    if (!contains(popup->clientRect(), local)) continue;
    const int row = list(level)->itemAt(local);
    if (message == WM_MOUSEMOVE) {
      list(level)->setHighlight(row);
      const MenuItem* item = entry(level, row);
      if (item != nullptr && item->submenu != nullptr && list(level)->choosable(row)) {
        activate(level, row);
      } else {
        closeLevelsAfter(level + 1);
      }
    }
    const bool up =
        message == WM_LBUTTONUP || (message == WM_RBUTTONUP && (flags_ & TPM_RIGHTBUTTON) != 0);
    if (up && list(level)->choosable(row)) activate(level, row);
    return;
  }
  const bool press = message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN ||
                     message == WM_LBUTTONDBLCLK || message == WM_RBUTTONDBLCLK;
  if (press) finish(0);  // a click outside dismisses the menu
}

// A row with a submenu opens it; any other enabled row is the choice.
void MenuTracker::activate(std::size_t level, int row) {
  const MenuItem* item = entry(level, row);
  if (item == nullptr) return;
  if (item->submenu == nullptr) {
    finish(item->command);
    return;
  }
  if (levels_.size() > level + 1 && levels_[level + 1].menu == item->submenu) return;
  closeLevelsAfter(level + 1);
  const POINT origin = system_.originInTopLevel(levels_[level].popup);
  const RECT row_ = offsetBy(list(level)->rowRect(row), origin.x, origin.y);
  openLevel(item->submenu, {row_.right - 2, row_.top - 1, row_.right, row_.top - 1});
}

bool MenuTracker::onKey(UINT message, WPARAM key) {
  if (done_ || levels_.empty()) return true;
  if (message != WM_KEYDOWN) return true;
  const std::size_t deepest = levels_.size() - 1;
  PopupList* rows = list(deepest);
  switch (key) {
    case VK_UP:
    case VK_DOWN:
      rows->moveHighlight(key == VK_UP ? -1 : 1);
      break;
    case VK_RIGHT:
      if (const MenuItem* item = entry(deepest, rows->highlight());
          item != nullptr && item->submenu != nullptr) {
        activate(deepest, rows->highlight());
        if (levels_.size() > deepest + 1) list(deepest + 1)->moveHighlight(1);
      }
      break;
    case VK_LEFT:
      if (deepest > 0) closeLevelsAfter(deepest);
      break;
    case VK_RETURN:
    case VK_SPACE:
      if (rows->choosable(rows->highlight())) {
        activate(deepest, rows->highlight());
        if (!done_ && levels_.size() > deepest + 1) list(deepest + 1)->moveHighlight(1);
      }
      break;
    case VK_ESCAPE:
      if (deepest > 0) {
        closeLevelsAfter(deepest);
      } else {
        finish(0);
      }
      break;
    default:
      break;
  }
  return true;
}

void MenuTracker::finish(UINT_PTR command) {
  done_ = true;
  result_ = command;
}

UINT_PTR MenuTracker::run() {
  // A top-level window closed meanwhile ends the menu too.
  if (!done_) system_.runModal([this] { return done_ || !system_.isLive(top_); });
  return result_;
}

std::optional<RECT> MenuTracker::rowRect(const std::string& label) const {
  if (levels_.empty()) return std::nullopt;
  const std::size_t deepest = levels_.size() - 1;
  PopupList* rows = list(deepest);
  for (int i = 0; i < rows->count(); ++i) {
    if (rows->item(i).text != label) continue;
    const POINT origin = system_.originInTopLevel(levels_[deepest].popup);
    return offsetBy(rows->rowRect(i), origin.x, origin.y);
  }
  return std::nullopt;
}

int trackPopupMenu(WindowSystem& system, HMENU menu, UINT flags, int x, int y, HWND owner) {
  Window* ownerWindow = system.find(owner);
  Window* top = ownerWindow != nullptr ? system.topLevelOf(ownerWindow) : nullptr;
  if (top == nullptr) {
    const std::vector<HWND> tops = system.topLevelWindows();
    top = tops.empty() ? nullptr : system.find(tops.front());
  }
  if (top == nullptr || system.menus().find(menu) == nullptr) return 0;
  UINT_PTR command = 0;
  {
    MenuTracker tracker(system, menu, top, {x - top->rect.left, y - top->rect.top}, flags);
    command = tracker.run();
  }
  if ((flags & TPM_RETURNCMD) != 0) return static_cast<int>(command);
  if (command != 0 && (flags & TPM_NONOTIFY) == 0 && ownerWindow != nullptr) {
    system.post(owner, WM_COMMAND, makeWParam(static_cast<int>(command), 0), 0);
  }
  return command != 0 ? 1 : 0;
}

}  // namespace winsys
