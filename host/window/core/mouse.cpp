// Mouse routing: the capture or the window under the mouse gets each message in its client
// coordinates; hover is tracked for WM_MOUSELEAVE; a right click nobody captured becomes
// WM_CONTEXTMENU.
#include "host/window/core/dispatch_scope.h"
#include "host/window/core/window_system.h"
#include "platform/win32_controls.h"

namespace winsys {

namespace {

UINT buttonMessage(const InputEvent& event) {
  const bool down = event.kind == EventKind::MouseDown;
  const bool second = down && event.clicks >= 2 && event.clicks % 2 == 0;
  switch (event.button) {
    case MouseButton::Left:
      return !down ? WM_LBUTTONUP : second ? WM_LBUTTONDBLCLK : WM_LBUTTONDOWN;
    case MouseButton::Right:
      return !down ? WM_RBUTTONUP : second ? WM_RBUTTONDBLCLK : WM_RBUTTONDOWN;
    case MouseButton::Middle:
      return down ? WM_MBUTTONDOWN : WM_MBUTTONUP;
  }
  return WM_MOUSEMOVE;
}

unsigned buttonBit(MouseButton button) {
  switch (button) {
    case MouseButton::Left:
      return MK_LBUTTON;
    case MouseButton::Right:
      return MK_RBUTTON;
    case MouseButton::Middle:
      return MK_MBUTTON;
  }
  return 0;
}

}  // namespace

Window* WindowSystem::surfaceOwner(void* native) const {
  for (Window* top : topLevels_) {
    if (top->surface->native == native) return top;
  }
  return nullptr;
}

void WindowSystem::dispatch(const InputEvent& event) {
  const DispatchScope scope(*this);
  const unsigned previousModifiers = eventModifiers_;
  eventModifiers_ = event.modifiers;
  switch (event.kind) {
    case EventKind::AdvanceClock:
      advanceClock(event.milliseconds);
      break;
    case EventKind::KeyDown:
    case EventKind::KeyUp:
      handleKey(event);
      break;
    case EventKind::Text:
      handleText(event);
      break;
    default:
      if (Window* top = surfaceOwner(event.surface)) handleMouse(top, event);
      break;
  }
  eventModifiers_ = previousModifiers;
}

void WindowSystem::handleMouse(Window* top, const InputEvent& event) {
  keyboardTop_ = top;
  cursorScreen_ = {top->rect.left + event.x, top->rect.top + event.y};
  switch (event.kind) {
    case EventKind::Close:
      send(top, WM_CLOSE, 0, 0);
      break;
    case EventKind::Expose:  // the back buffer still holds the picture: show it again
      markPresented(top, top->clientRect());
      break;
    case EventKind::MouseMove:
      handleMouseMove(top, event);
      break;
    case EventKind::MouseDown:
    case EventKind::MouseUp:
      handleButton(top, event);
      break;
    case EventKind::Wheel:
      handleWheel(top, event);
      break;
    default:
      break;
  }
}

WPARAM WindowSystem::mouseKeyFlags() const {
  WPARAM flags = mouseButtons_;
  if (keyHeld(VK_SHIFT)) flags |= MK_SHIFT;
  if (keyHeld(VK_CONTROL)) flags |= MK_CONTROL;
  return flags;
}

LPARAM WindowSystem::clientPoint(Window* target) const {
  const POINT p = screenToClient(target, cursorScreen_);
  return makeLParam(p.x, p.y);
}

void WindowSystem::handleMouseMove(Window* top, const InputEvent& event) {
  Window* under = hitTest(top, {event.x, event.y});
  Window* target = capture_ != nullptr ? capture_ : under;
  updateHover(target);
  if (capture_ == nullptr) {
    send(under, WM_SETCURSOR, reinterpret_cast<WPARAM>(under->handle()),
         makeLParam(1, WM_MOUSEMOVE));
  }
  send(target, WM_MOUSEMOVE, mouseKeyFlags(), clientPoint(target));
}

void WindowSystem::handleButton(Window* top, const InputEvent& event) {
  const bool down = event.kind == EventKind::MouseDown;
  if (down) {
    mouseButtons_ |= buttonBit(event.button);
  } else {
    mouseButtons_ &= ~buttonBit(event.button);
  }
  Window* target = capture_ != nullptr ? capture_ : hitTest(top, {event.x, event.y});
  updateHover(target);
  if (down && event.button == MouseButton::Right) {
    rightButtonTarget_ = target;
    rightGestureCaptured_ = false;
  }
  send(target, buttonMessage(event), mouseKeyFlags(), clientPoint(target));
  const bool rightClick = !down && event.button == MouseButton::Right;
  if (rightClick && target == rightButtonTarget_ && !rightGestureCaptured_ && isLive(target)) {
    send(target, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(target->handle()),
         makeLParam(cursorScreen_.x, cursorScreen_.y));
  }
  if (rightClick) rightButtonTarget_ = nullptr;
}

void WindowSystem::handleWheel(Window* top, const InputEvent& event) {
  Window* target = capture_ != nullptr ? capture_ : hitTest(top, {event.x, event.y});
  send(target, WM_MOUSEWHEEL, makeWParam(static_cast<int>(mouseKeyFlags()), event.wheelDelta),
       makeLParam(cursorScreen_.x, cursorScreen_.y));
}

void WindowSystem::updateHover(Window* window) {
  if (hover_ == window) return;
  Window* left = hover_;
  hover_ = window;
  if (isLive(left)) send(left, WM_MOUSELEAVE, 0, 0);
}

Window* WindowSystem::setCapture(Window* window) {
  Window* old = capture_;
  capture_ = isLive(window) ? window : nullptr;
  if ((mouseButtons_ & MK_RBUTTON) != 0 && capture_ != nullptr) rightGestureCaptured_ = true;
  if (isLive(old) && old != capture_) {
    send(old, WM_CAPTURECHANGED, 0, capture_ != nullptr ? reinterpret_cast<LPARAM>(window) : 0);
  }
  return old;
}

void WindowSystem::releaseCapture() {
  Window* old = capture_;
  capture_ = nullptr;
  if (isLive(old)) send(old, WM_CAPTURECHANGED, 0, 0);
}

void WindowSystem::setCursor(CursorShape shape) {
  if (shape == cursor_) return;
  cursor_ = shape;
  backend_->setCursor(shape);
}

}  // namespace winsys
