// "Button": push buttons, check boxes (two and three states, plain and automatic), radio buttons
// (automatic ones exclusive within their WS_GROUP group) and group boxes.
#pragma once

#include "host/window/controls/control.h"
#include "host/window/controls/ui_font.h"

namespace winsys {

class Button final : public Control {
 public:
  explicit Button(Window& window);
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;

  int type() const { return static_cast<int>(self().style & BS_TYPEMASK); }
  bool isCheckBox() const;
  bool isRadio() const;
  bool isGroupBox() const { return type() == BS_GROUPBOX; }

 private:
  void press(bool pressed);
  void click();
  void setCheck(int check);
  void uncheckGroupSiblings();
  LRESULT mouseDown();
  LRESULT mouseUp(LPARAM lParam);
  void paintPush(cairo_t* cr);
  void paintCheckable(cairo_t* cr);
  void paintGroupBox(cairo_t* cr);

  int check_ = BST_UNCHECKED;
  bool pressed_ = false;
  bool spaceDown_ = false;
  CachedText text_;
};

}  // namespace winsys
