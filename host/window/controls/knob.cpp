#include <algorithm>
#include <cmath>

#include "host/window/controls/draw.h"
#include "host/window/controls/host_controls.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

constexpr double kTravelRad = 0.75 * 2 * M_PI;  // end stops at -135 and +135 degrees
// 200 pixels of drag turn the pointer through its travel.
constexpr double kRadPerStep = kTravelRad / (200.0 * Knob::kStepPerPixel);

}  // namespace

LRESULT Knob::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_LBUTTONDOWN:
      if (!acceptsInput()) return 0;
      takeFocus();
      system().setCapture(&self());
      lastY_ = signedHighWord(lParam);
      return 0;
    case WM_MOUSEMOVE: {
      if (!captured()) return 0;
      const int y = signedHighWord(lParam);
      const int perPixel = system().keyHeld(VK_SHIFT) ? kStepPerPixel / 4 : kStepPerPixel;
      if (y != lastY_) step(std::clamp((lastY_ - y) * perPixel, -0x7FFF, 0x7FFF), false);
      lastY_ = y;
      return 0;
    }
    case WM_LBUTTONUP:
      if (!captured()) return 0;
      system().releaseCapture();
      step(0, true);
      return 0;
    case WM_LBUTTONDBLCLK:
      if (!acceptsInput()) return 0;
      angleRad_ = 0;
      step(0, true);
      return 0;
    case WM_MOUSEWHEEL:
      if (!acceptsInput()) return 0;
      step(signedHighWord(wParam) / 120 * 4 * kStepPerPixel, true);
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
    case WM_KESTEL_KNOBSTYLE:
      style_ = wParam;
      invalidate();
      return 0;
    case WM_KESTEL_SETPROPERTY:
      if (wParam == kKestelPropertyLock) {
        locked_ = lParam != 0;
        if (locked_ && captured()) system().releaseCapture();
        invalidate();
      }
      return 0;
    default:
      return Control::handle(message, wParam, lParam);
  }
}

LRESULT Knob::keyDown(WPARAM key) {
  if (!acceptsInput()) return 0;
  const int perKey = system().keyHeld(VK_SHIFT) ? kStepPerPixel : 4 * kStepPerPixel;
  if (key == VK_UP || key == VK_RIGHT) step(perKey, true);
  if (key == VK_DOWN || key == VK_LEFT) step(-perKey, true);
  return 0;
}

void Knob::step(int amount, bool end) {
  angleRad_ += amount * kRadPerStep;
  if ((style_ & kKnobStyleEndless) != 0) {
    angleRad_ = std::remainder(angleRad_, 2 * M_PI);
  } else {
    angleRad_ = std::clamp(angleRad_, -kTravelRad / 2, kTravelRad / 2);
  }
  invalidate();
  if (self().parent == nullptr) return;
  const LPARAM value = (kKnobCentre + amount) | (end ? kKnobGestureEnd : 0);
  system().send(self().parent, WM_COMMAND, makeWParam(self().id, 0), value);
}

void Knob::paint(cairo_t* cr) {
  const double size = std::min(width(), height());
  const double cx = width() / 2.0, cy = height() / 2.0, radius = size / 2 - px(1.5);
  const bool live = acceptsInput();
  // The travel as an arc, the body, then the pointer.
  cairo_set_line_width(cr, px(2));
  cairo_arc(cr, cx, cy, radius, -M_PI / 2 - kTravelRad / 2, -M_PI / 2 + kTravelRad / 2);
  draw::setColor(cr, theme::kTrack);
  cairo_stroke(cr);
  cairo_arc(cr, cx, cy, radius - px(2.5), 0, 2 * M_PI);
  draw::setColor(cr, live ? (hot() ? theme::kButtonHot : theme::kButton) : theme::kFieldDisabled);
  cairo_fill_preserve(cr);
  draw::setColor(cr, focused() && live ? theme::kAccent : theme::kBorder);
  cairo_set_line_width(cr, focused() && live ? px(1.5) : 1.0);
  cairo_stroke(cr);
  const std::uint32_t ink = locked_ ? theme::kLocked : live ? theme::kAccent : theme::kTextDisabled;
  if ((style_ & kKnobStyleCentreMark) != 0) {
    cairo_arc(cr, cx, cy - radius, px(1.2), 0, 2 * M_PI);
    draw::setColor(cr, theme::kTick);
    cairo_fill(cr);
  }
  const double inner = radius * 0.25, outer = radius - px(4);
  cairo_move_to(cr, cx + std::sin(angleRad_) * inner, cy - std::cos(angleRad_) * inner);
  cairo_line_to(cr, cx + std::sin(angleRad_) * outer, cy - std::cos(angleRad_) * outer);
  draw::setColor(cr, ink);
  cairo_set_line_width(cr, px(2));
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_stroke(cr);
}

}  // namespace winsys
