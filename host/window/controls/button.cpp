#include "host/window/controls/button.h"

#include <algorithm>
#include <cmath>

#include "host/window/controls/draw.h"
#include "host/window/controls/theme.h"

namespace winsys {

Button::Button(Window& window) : Control(window) {
  window.ignoresMouse = isGroupBox();
}

bool Button::isCheckBox() const {
  const int t = type();
  return t == BS_CHECKBOX || t == BS_AUTOCHECKBOX || t == BS_3STATE || t == BS_AUTO3STATE;
}

bool Button::isRadio() const {
  return type() == BS_RADIOBUTTON || type() == BS_AUTORADIOBUTTON;
}

LRESULT Button::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  if (isGroupBox() && message != BM_GETCHECK && message != BM_SETCHECK) {
    return Control::handle(message, wParam, lParam);
  }
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      return mouseDown();
    case WM_MOUSEMOVE:
      if (captured())
        press(contains(self().clientRect(), {signedLowWord(lParam), signedHighWord(lParam)}));
      return 0;
    case WM_LBUTTONUP:
      return mouseUp(lParam);
    case WM_CAPTURECHANGED:
      press(false);
      return 0;
    case WM_MOUSELEAVE:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      if (message == WM_KILLFOCUS) spaceDown_ = false;
      if (message == WM_KILLFOCUS) press(false);
      invalidate();
      return 0;
    case WM_KEYDOWN:
      if (wParam == VK_SPACE && !spaceDown_) {
        spaceDown_ = true;
        press(true);
      }
      if (wParam == VK_RETURN && type() <= BS_DEFPUSHBUTTON) click();
      return 0;
    case WM_KEYUP:
      if (wParam == VK_SPACE && spaceDown_) {
        spaceDown_ = false;
        press(false);
        click();
      }
      return 0;
    case WM_GETDLGCODE:
      return wParam == VK_RETURN && type() <= BS_DEFPUSHBUTTON ? DLGC_WANTALLKEYS : 0;
    case BM_GETCHECK:
      return check_;
    case BM_SETCHECK:
      setCheck(static_cast<int>(wParam));
      return 0;
    case BM_GETSTATE:
      return check_ | (pressed_ ? BST_PUSHED : 0);
    case BM_SETSTATE:
      press(wParam != 0);
      return 0;
    case BM_CLICK:
      click();
      return 0;
    default:
      return Control::handle(message, wParam, lParam);
  }
}

LRESULT Button::mouseDown() {
  takeFocus();
  system().setCapture(&self());
  press(true);
  return 0;
}

LRESULT Button::mouseUp(LPARAM lParam) {
  const bool inside =
      pressed_ && captured() &&
      contains(self().clientRect(), {signedLowWord(lParam), signedHighWord(lParam)});
  if (captured()) system().releaseCapture();
  press(false);
  if (inside) click();
  return 0;
}

void Button::press(bool pressed) {
  if (pressed_ == pressed) return;
  pressed_ = pressed;
  invalidate();
}

void Button::click() {
  if (!enabled()) return;
  switch (type()) {
    case BS_AUTOCHECKBOX:
      setCheck(check_ == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED);
      break;
    case BS_AUTO3STATE:
      setCheck((check_ + 1) % 3);
      break;
    case BS_AUTORADIOBUTTON:
      setCheck(BST_CHECKED);
      uncheckGroupSiblings();
      break;
    default:
      break;
  }
  notify(BN_CLICKED);
}

void Button::setCheck(int check) {
  const int wanted = std::clamp(check, 0, 2);
  if (wanted == check_) return;
  check_ = wanted;
  invalidate();
}

// The group runs from the last sibling with WS_GROUP at or before this button to the next one.
void Button::uncheckGroupSiblings() {
  Window* parent = self().parent;
  if (parent == nullptr) return;
  const std::vector<Window*>& siblings = parent->children;
  const auto me = std::find(siblings.begin(), siblings.end(), &self());
  auto first = me;
  while (first != siblings.begin() && ((*first)->style & WS_GROUP) == 0) --first;
  for (auto it = first; it != siblings.end(); ++it) {
    if (it != first && ((*it)->style & WS_GROUP) != 0) break;
    auto* other = dynamic_cast<Button*>((*it)->control.get());
    if (other != nullptr && other != this && other->isRadio()) other->setCheck(BST_UNCHECKED);
  }
}

void Button::paint(cairo_t* cr) {
  if (isGroupBox()) {
    paintGroupBox(cr);
  } else if (isCheckBox() || isRadio()) {
    paintCheckable(cr);
  } else {
    paintPush(cr);
  }
}

void Button::paintPush(cairo_t* cr) {
  const RECT r = self().clientRect();
  const bool down = pressed_ && enabled();
  const std::uint32_t face = !enabled() ? theme::kFieldDisabled
                             : down     ? theme::kButtonPressed
                             : hot()    ? theme::kButtonHot
                                        : theme::kButton;
  const std::uint32_t border = !enabled() ? theme::kBorderDisabled
                               : hot()    ? theme::kBorderHot
                                          : theme::kBorder;
  draw::box(cr, r, px(theme::kCornerPx), face, border);
  if (focused()) draw::focusRing(cr, draw::inset(r, 1, 1), px(theme::kCornerPx - 1), px(1.5));
  const UiFont& font = uiFont(scale256());
  draw::setColor(cr, enabled() ? theme::kText : theme::kTextDisabled);
  const int shift = down ? 1 : 0;
  drawTextInBox(cr, font, text_.get(font, self().text), offsetBy(r, shift, shift), 0);
}

void Button::paintCheckable(cairo_t* cr) {
  const RECT r = self().clientRect();
  const int side = static_cast<int>(std::lround(px(theme::kCheckBoxPx)));
  const int top = (height() - side) / 2;
  const RECT mark = sized(0, top, side, side);
  const bool on = check_ != BST_UNCHECKED;
  const std::uint32_t border = !enabled() ? theme::kBorderDisabled
                               : on       ? theme::kAccent
                               : hot()    ? theme::kBorderHot
                                          : theme::kBorder;
  const std::uint32_t face = !enabled() ? theme::kFieldDisabled
                             : on       ? theme::kAccent
                             : pressed_ ? theme::kButtonPressed
                                        : theme::kField;
  const std::uint32_t onFace = enabled() ? face : theme::kBorderDisabled;
  if (isRadio()) {
    const double c = side / 2.0;
    cairo_arc(cr, c, top + c, c - 0.5, 0, 2 * M_PI);
    draw::setColor(cr, on ? onFace : face);
    cairo_fill_preserve(cr);
    draw::setColor(cr, border);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
    if (on) {
      cairo_arc(cr, c, top + c, side * 0.2, 0, 2 * M_PI);
      draw::setColor(cr, theme::kAccentText);
      cairo_fill(cr);
    }
  } else {
    draw::box(cr, mark, px(2.5), on ? onFace : face, border);
    if (check_ == BST_CHECKED) draw::checkMark(cr, mark, theme::kAccentText, px(1.8));
    if (check_ == BST_INDETERMINATE)
      draw::fill(cr, draw::inset(mark, side / 4, side / 2 - 1), theme::kAccentText);
  }
  if (focused())
    draw::focusRing(cr, draw::inset(mark, -2, -2), isRadio() ? side : px(3.5), px(1.5));
  const UiFont& font = uiFont(scale256());
  draw::setColor(cr, enabled() ? theme::kText : theme::kTextDisabled);
  const RECT textBox{side + static_cast<int>(px(6)), 0, r.right, r.bottom};
  drawTextInBox(cr, font, text_.get(font, self().text), textBox, -1);
}

void Button::paintGroupBox(cairo_t* cr) {
  const UiFont& font = uiFont(scale256());
  const ShapedText& text = text_.get(font, self().text);
  const double lineY = std::floor(font.heightPx() / 2) + 0.5;
  const double radius = px(4);
  const double gapLeft = px(8), gapRight = gapLeft + (text.empty() ? 0 : text.widthPx() + px(8));
  // The frame with a gap for the title.
  cairo_save(cr);
  cairo_rectangle(cr, 0, 0, width(), height());
  if (!text.empty()) cairo_rectangle(cr, gapRight, 0, gapLeft - gapRight, font.heightPx());
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
  cairo_clip(cr);
  draw::roundedRect(cr, 0.5, lineY, width() - 1, height() - lineY - 0.5, radius);
  draw::setColor(cr, theme::kGroupLine);
  cairo_set_line_width(cr, 1);
  cairo_stroke(cr);
  cairo_restore(cr);
  draw::setColor(cr, enabled() ? 0xFF404040 : theme::kTextDisabled);
  text.draw(cr, font, gapLeft + px(4), font.ascentPx);
}

}  // namespace winsys
