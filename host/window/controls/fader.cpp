#include <algorithm>
#include <cmath>

#include "host/window/controls/draw.h"
#include "host/window/controls/host_controls.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

constexpr UINT kWheelEndDelayMs = 400;

}  // namespace

LRESULT Fader::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case TBM_GETPOS:
      return position_;
    case TBM_SETTIC:
      tick_ = static_cast<int>(lParam);
      invalidate();
      return 1;
    case TBM_SETPOS:
      position_ = std::clamp(static_cast<int>(lParam), minimum_, maximum_);
      invalidate();
      return 0;
    case TBM_SETRANGE:
      minimum_ = lowWord(static_cast<std::uintptr_t>(lParam));
      maximum_ = std::max(minimum_, highWord(static_cast<std::uintptr_t>(lParam)));
      position_ = std::clamp(position_, minimum_, maximum_);
      invalidate();
      return 0;
    case WM_KESTEL_SETPROPERTY:
      setProperty(wParam, lParam);
      return 0;
    case WM_LBUTTONDOWN:
      if (!acceptsInput()) return 0;
      takeFocus();
      system().setCapture(&self());
      dragging_ = true;
      dragStartX_ = signedLowWord(lParam);
      dragStartPosition_ = position_;
      return 0;
    case WM_MOUSEMOVE: {
      if (!dragging_ || !captured()) return 0;
      const double perPixel = (maximum_ - minimum_) / std::max(1.0, width() - 2 * px(2));
      const double fine = system().keyHeld(VK_SHIFT) ? 0.1 : 1.0;
      moveTo(dragStartPosition_ + static_cast<int>(std::lround(
                                      (signedLowWord(lParam) - dragStartX_) * perPixel * fine)));
      return 0;
    }
    case WM_LBUTTONUP:
      if (!dragging_) return 0;
      dragging_ = false;
      if (captured()) system().releaseCapture();
      endGesture();
      return 0;
    case WM_CAPTURECHANGED:
      if (dragging_) {
        dragging_ = false;
        endGesture();
      }
      return 0;
    case WM_LBUTTONDBLCLK:
      if (!acceptsInput() || tick_ < 0) return 0;
      moveTo(tick_);
      endGesture();
      return 0;
    case WM_MOUSEWHEEL: {
      if (!acceptsInput()) return 0;
      const int notches = signedHighWord(wParam) / 120;
      const int stepSize =
          system().keyHeld(VK_SHIFT) ? 1 : std::max(1, (maximum_ - minimum_) / 100);
      moveTo(position_ + notches * stepSize);
      system().setTimer(self().handle(), kWheelEndTimer, kWheelEndDelayMs, nullptr);
      return 0;
    }
    case WM_TIMER:
      if (wParam != kWheelEndTimer) break;
      system().killTimer(self().handle(), kWheelEndTimer);
      endGesture();
      return 0;
    case WM_KEYDOWN:
      return keyDown(wParam);
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_MOUSELEAVE:
      invalidate();
      return 0;
    default:
      break;
  }
  return Control::handle(message, wParam, lParam);
}

void Fader::setProperty(WPARAM which, LPARAM value) {
  const auto text = reinterpret_cast<const char*>(value);
  if (which == kKestelPropertyLock) locked_ = value != 0;
  if (which == kKestelPropertyName) name_ = text != nullptr ? text : "";
  if (which == kKestelPropertyValue) value_ = text != nullptr ? text : "";
  invalidate();
}

LRESULT Fader::keyDown(WPARAM key) {
  if (!acceptsInput()) return 0;
  const int range = maximum_ - minimum_;
  const int small = system().keyHeld(VK_SHIFT) ? 1 : std::max(1, range / 100);
  int target = position_;
  switch (key) {
    case VK_LEFT:
    case VK_DOWN:
      target -= small;
      break;
    case VK_RIGHT:
    case VK_UP:
      target += small;
      break;
    case VK_PRIOR:
    case VK_NEXT:
      target += (key == VK_NEXT ? 1 : -1) * std::max(1, range / 10);
      break;
    case VK_HOME:
      target = minimum_;
      break;
    case VK_END:
      target = maximum_;
      break;
    default:
      return 0;
  }
  moveTo(target);
  endGesture();
  return 0;
}

void Fader::moveTo(int position) {
  const int clamped = std::clamp(position, minimum_, maximum_);
  if (clamped == position_) return;
  position_ = clamped;
  invalidate();
  if (self().parent == nullptr) return;
  system().send(self().parent, WM_HSCROLL, makeWParam(SB_THUMBTRACK, position_),
                reinterpret_cast<LPARAM>(self().handle()));
}

void Fader::endGesture() {
  if (self().parent == nullptr) return;
  system().send(self().parent, WM_HSCROLL, makeWParam(SB_ENDSCROLL, 0),
                reinterpret_cast<LPARAM>(self().handle()));
}

double Fader::positionX(int position) const {
  const double inset = px(2);
  const double span = std::max(1, maximum_ - minimum_);
  return inset + (width() - 2 * inset) * (position - minimum_) / span;
}

void Fader::paint(cairo_t* cr) {
  const RECT r = self().clientRect();
  const bool live = acceptsInput();
  const std::uint32_t border = !live       ? theme::kBorderDisabled
                               : focused() ? theme::kAccent
                               : hot()     ? theme::kBorderHot
                                           : theme::kBorder;
  draw::box(cr, r, px(theme::kCornerPx), live ? theme::kField : theme::kFieldDisabled, border,
            focused() && live ? px(1.5) : 1.0);
  const double x = positionX(position_);
  const double inset = px(2);
  draw::roundedRect(cr, inset, inset, x - inset, height() - 2 * inset, px(2));
  draw::setColor(cr, locked_ ? 0x60B06A2E : live ? 0x505B8DE8 : 0x40A0A8B8);
  cairo_fill(cr);
  cairo_rectangle(cr, std::round(x) - px(1), inset, px(2), height() - 2 * inset);
  draw::setColor(cr, locked_ ? theme::kLocked
                     : live  ? theme::kTrackFill
                             : theme::kTrackFillDisabled);
  cairo_fill(cr);
  if (tick_ >= minimum_ && tick_ <= maximum_) {
    const double tx = std::round(positionX(tick_)) + 0.5;
    draw::setColor(cr, theme::kTick);
    cairo_set_line_width(cr, 1);
    for (const double y : {1.0, height() - px(3) - 1}) {
      cairo_move_to(cr, tx, y);
      cairo_line_to(cr, tx, y + px(3));
    }
    cairo_stroke(cr);
  }
  const UiFont& font = uiFont(scale256());
  const RECT textBox = draw::inset(r, static_cast<int>(px(5)), 0);
  draw::setColor(cr, live ? theme::kText : theme::kTextDisabled);
  drawTextInBox(cr, font, nameText_.get(font, name_), textBox, -1);
  drawTextInBox(cr, font, valueText_.get(font, value_), textBox, 1);
}

}  // namespace winsys
