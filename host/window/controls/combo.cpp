#include "host/window/controls/combo.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstring>

#include "host/window/controls/draw.h"
#include "host/window/controls/popup_list.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

constexpr int kMaxVisibleRows = 12;

}  // namespace

Combo::Combo(Window& window) : Control(window) {}

Combo::~Combo() = default;

LRESULT Combo::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message >= CB_GETEDITSEL && message <= CB_FINDSTRINGEXACT) {
    return listMessage(message, wParam, lParam);
  }
  switch (message) {
    case WM_KEYDOWN:
      return keyDown(wParam);
    case WM_CHAR:
      return character(wParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_MOUSEMOVE:
    case WM_RBUTTONDOWN:
      return mouse(message, lParam);
    case WM_MOUSEWHEEL:
      if (dropped()) list()->scrollBy(signedHighWord(wParam) > 0 ? -3 : 3);
      return 0;
    case WM_CAPTURECHANGED:
      if (dropped() && system().capture() != &self()) close(false);
      return 0;
    case WM_KILLFOCUS:
      close(false);
      invalidate();
      notify(CBN_KILLFOCUS);
      return 0;
    case WM_SETFOCUS:
      invalidate();
      notify(CBN_SETFOCUS);
      return 0;
    case WM_MOUSELEAVE:
      invalidate();
      return 0;
    case WM_GETDLGCODE:
      return dropped() ? DLGC_WANTALLKEYS : DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_ENABLE:
      if (wParam == 0) close(false);
      return 0;
    case WM_DESTROY:
      if (dropped() && system().isLive(popup_)) system().destroy(popup_->handle());
      popup_ = nullptr;
      return 0;
    default:
      return Control::handle(message, wParam, lParam);
  }
}

LRESULT Combo::listMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto count = static_cast<int>(items_.size());
  const int index = static_cast<int>(wParam);
  const bool valid = index >= 0 && index < count;
  const auto text = reinterpret_cast<const char*>(lParam);
  switch (message) {
    case CB_ADDSTRING:
      return insert(-1, text);
    case CB_INSERTSTRING:
      return insert(index, text);
    case CB_DELETESTRING:
      if (!valid) return CB_ERR;
      items_.erase(items_.begin() + index);
      if (selection_ == index) select(-1);
      if (selection_ > index) --selection_;
      return count - 1;
    case CB_RESETCONTENT:
      close(false);
      items_.clear();
      select(-1);
      return 0;
    case CB_GETCOUNT:
      return count;
    case CB_GETCURSEL:
      return selection_;
    case CB_SETCURSEL:
      select(valid ? index : -1);
      return valid ? index : CB_ERR;
    case CB_GETLBTEXT:
      if (!valid || text == nullptr) return CB_ERR;
      std::memcpy(reinterpret_cast<char*>(lParam), items_[index].text.c_str(),
                  items_[index].text.size() + 1);
      return static_cast<LRESULT>(items_[index].text.size());
    case CB_GETLBTEXTLEN:
      return valid ? static_cast<LRESULT>(items_[index].text.size()) : CB_ERR;
    case CB_FINDSTRING:
    case CB_FINDSTRINGEXACT:
      return find(index, text, message == CB_FINDSTRINGEXACT);
    case CB_SELECTSTRING: {
      const int found = find(index, text, false);
      if (found >= 0) select(found);
      return found;
    }
    case CB_GETITEMDATA:
      return valid ? items_[index].data : CB_ERR;
    case CB_SETITEMDATA:
      if (!valid) return CB_ERR;
      items_[index].data = lParam;
      return 0;
    case CB_SHOWDROPDOWN:
      if (wParam != 0)
        open();
      else
        close(false);
      return 1;
    case CB_GETDROPPEDSTATE:
      return dropped() ? 1 : 0;
    default:
      return CB_ERR;
  }
}

LRESULT Combo::insert(int index, const char* text) {
  const auto count = static_cast<int>(items_.size());
  const int at = index < 0 || index > count ? count : index;
  items_.insert(items_.begin() + at, Item{text != nullptr ? text : "", 0});
  if (selection_ >= at) ++selection_;
  return at;
}

// Case-insensitive, from the item after `after`, wrapping round; -1 searches from the start.
int Combo::find(int after, const char* text, bool exact) const {
  if (text == nullptr) return CB_ERR;
  const auto count = static_cast<int>(items_.size());
  const std::size_t length = std::strlen(text);
  for (int k = 1; k <= count; ++k) {
    const int i = ((after < 0 ? -1 : after) + k) % count;
    const std::string& candidate = items_[i].text;
    const bool match = exact ? strcasecmp(candidate.c_str(), text) == 0
                             : strncasecmp(candidate.c_str(), text, length) == 0;
    if (match) return i;
  }
  return CB_ERR;
}

void Combo::select(int index) {
  selection_ = index;
  self().text = index >= 0 ? items_[index].text : std::string();
  invalidate();
}

void Combo::chooseByUser(int index) {
  if (index < 0 || index >= static_cast<int>(items_.size()) || index == selection_) return;
  select(index);
  notify(CBN_SELCHANGE);
}

PopupList* Combo::list() const {
  return system().isLive(popup_) ? popupListOf(popup_) : nullptr;
}

void Combo::open() {
  if (dropped() || !enabled()) return;
  notify(CBN_DROPDOWN);
  Window* top = system().topLevelOf(&self());
  const POINT origin = system().originInTopLevel(&self());
  const RECT anchor = offsetBy(self().clientRect(), origin.x, origin.y);
  std::vector<PopupItem> rows;
  for (const Item& item : items_) rows.push_back({item.text});
  popup_ = openPopupList(system(), top, anchor, std::move(rows),
                         static_cast<int>(px(theme::kListItemPx)), false, width(), kMaxVisibleRows);
  if (PopupList* popup = list()) popup->setHighlight(selection_);
  system().setCapture(&self());
  invalidate();
}

void Combo::close(bool choose) {
  if (!dropped()) return;
  const int chosen = list() != nullptr ? list()->highlight() : -1;
  Window* popup = popup_;
  popup_ = nullptr;
  pressedOpen_ = false;
  if (system().isLive(popup)) system().destroy(popup->handle());
  if (system().capture() == &self()) system().releaseCapture();
  invalidate();
  if (choose) chooseByUser(chosen);
  notify(CBN_CLOSEUP);
}

int Combo::popupRow(LPARAM lParam) const {
  if (!dropped()) return -1;
  const POINT screen =
      system().clientToScreen(&self(), {signedLowWord(lParam), signedHighWord(lParam)});
  return list()->itemAt(system().screenToClient(popup_, screen));
}

LRESULT Combo::mouse(UINT message, LPARAM lParam) {
  const POINT p{signedLowWord(lParam), signedHighWord(lParam)};
  const bool onField = contains(self().clientRect(), p);
  const int row = popupRow(lParam);
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      takeFocus();
      if (!dropped()) {
        open();
        pressedOpen_ = true;
        movedSincePress_ = false;
      } else if (row >= 0) {
        list()->setHighlight(row);
      } else {
        close(false);
      }
      return 0;
    case WM_MOUSEMOVE:
      if (dropped() && row >= 0) list()->setHighlight(row);
      if (dropped() && !onField) movedSincePress_ = true;
      return 0;
    case WM_LBUTTONUP:
      if (dropped() && row >= 0 && (!pressedOpen_ || movedSincePress_)) {
        list()->setHighlight(row);
        close(true);
      }
      pressedOpen_ = false;
      return 0;
    case WM_RBUTTONDOWN:
      if (dropped() && row < 0) close(false);
      return 0;
    default:
      return 0;
  }
}

LRESULT Combo::keyDown(WPARAM key) {
  const bool alt = system().keyHeld(VK_MENU);
  if (!dropped()) {
    if (key == VK_F4 || (alt && key == VK_DOWN) || key == VK_SPACE) {
      open();
      return 0;
    }
    const int last = static_cast<int>(items_.size()) - 1;
    const int steps[] = {VK_UP,          -1, VK_DOWN, 1, VK_PRIOR, -kMaxVisibleRows, VK_NEXT,
                         kMaxVisibleRows};
    for (int i = 0; i < 8; i += 2) {
      if (static_cast<int>(key) == steps[i])
        chooseByUser(std::clamp(selection_ + steps[i + 1], 0, last));
    }
    if (key == VK_HOME) chooseByUser(0);
    if (key == VK_END) chooseByUser(last);
    return 0;
  }
  switch (key) {
    case VK_UP:
    case VK_DOWN:
      if (alt) {
        close(true);
      } else {
        list()->moveHighlight(key == VK_UP ? -1 : 1);
      }
      return 0;
    case VK_PRIOR:
    case VK_NEXT:
      list()->moveHighlight(key == VK_PRIOR ? -kMaxVisibleRows : kMaxVisibleRows);
      return 0;
    case VK_HOME:
      list()->setHighlight(0);
      return 0;
    case VK_END:
      list()->setHighlight(list()->count() - 1);
      return 0;
    case VK_RETURN:
    case VK_TAB:
    case VK_F4:
      close(true);
      return 0;
    case VK_ESCAPE:
      close(false);
      return 0;
    default:
      return 0;
  }
}

// A letter picks the next item that starts with it.
LRESULT Combo::character(WPARAM codePoint) {
  if (codePoint < 0x20 || codePoint >= 0x80 || items_.empty()) return 0;
  const char prefix[2] = {static_cast<char>(codePoint), '\0'};
  const int from = dropped() ? list()->highlight() : selection_;
  const int found = find(from, prefix, false);
  if (found < 0) return 0;
  if (dropped()) {
    list()->setHighlight(found);
  } else {
    chooseByUser(found);
  }
  return 0;
}

void Combo::paint(cairo_t* cr) {
  const RECT r = self().clientRect();
  const bool lit = enabled() && (hot() || dropped());
  const std::uint32_t border = !enabled()               ? theme::kBorderDisabled
                               : focused() || dropped() ? theme::kAccent
                               : lit                    ? theme::kBorderHot
                                                        : theme::kBorder;
  draw::box(cr, r, px(theme::kCornerPx),
            enabled() ? (lit ? theme::kButtonHot : theme::kButton) : theme::kFieldDisabled, border,
            focused() ? px(1.5) : 1.0);
  const double arrowWidth = px(20);
  const UiFont& font = uiFont(scale256());
  draw::setColor(cr, enabled() ? theme::kText : theme::kTextDisabled);
  const RECT textBox{static_cast<int>(px(theme::kTextPadPx + 2)), 0,
                     r.right - static_cast<int>(arrowWidth), r.bottom};
  drawTextInBox(cr, font, shown_.get(font, self().text), textBox, -1);
  draw::chevronDown(cr, r.right - arrowWidth / 2 - px(1), height() / 2.0, px(8),
                    enabled() ? 0xFF505050 : theme::kTextDisabled, px(1.5));
}

}  // namespace winsys
