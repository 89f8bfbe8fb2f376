// "ComboBox" with CBS_DROPDOWNLIST: a list of strings with one chosen, shown closed as a field; a
// click, F4, Alt+Down or Space opens the pop-up list, chosen with the mouse or with the arrows and
// Return (Escape cancels). The user's choices send CBN_SELCHANGE; CB_SETCURSEL does not.
#pragma once

#include <string>
#include <vector>

#include "host/window/controls/control.h"
#include "host/window/controls/ui_font.h"

namespace winsys {

class PopupList;

class Combo final : public Control {
 public:
  explicit Combo(Window& window);
  ~Combo() override;
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;

  bool dropped() const { return popup_ != nullptr && system().isLive(popup_); }
  Window* popupWindow() const { return popup_; }
  int selection() const { return selection_; }

 private:
  struct Item {
    std::string text;
    LPARAM data = 0;
  };
  LRESULT listMessage(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT insert(int index, const char* text);
  int find(int after, const char* text, bool exact) const;
  void select(int index);
  void chooseByUser(int index);
  void open();
  void close(bool choose);
  LRESULT keyDown(WPARAM key);
  LRESULT character(WPARAM codePoint);
  LRESULT mouse(UINT message, LPARAM lParam);
  PopupList* list() const;
  int popupRow(LPARAM lParam) const;

  std::vector<Item> items_;
  int selection_ = -1;
  Window* popup_ = nullptr;
  bool pressedOpen_ = false;  // opened by a press that may end on a row
  bool movedSincePress_ = false;
  CachedText shown_;
};

}  // namespace winsys
