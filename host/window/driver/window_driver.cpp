#include "host/window/driver/window_driver.h"

#include "host/window/controls/combo.h"
#include "host/window/controls/popup_list.h"
#include "host/window/menus/menu_tracker.h"

namespace winsys {

namespace {

Window* findById(Window* parent, int id) {
  for (Window* child : parent->children) {
    if (child->id == id) return child;
  }
  for (Window* child : parent->children) {
    if (Window* found = findById(child, id)) return found;
  }
  return nullptr;
}

InputEvent event(EventKind kind, unsigned modifiers = 0) {
  InputEvent made;
  made.kind = kind;
  made.modifiers = modifiers;
  return made;
}

InputEvent buttonEvent(EventKind kind, MouseButton button, unsigned modifiers, int clicks = 1) {
  InputEvent made = event(kind, modifiers);
  made.button = button;
  made.clicks = clicks;
  return made;
}

InputEvent keyEvent(EventKind kind, int virtualKey, unsigned modifiers) {
  InputEvent made = event(kind, modifiers);
  made.virtualKey = virtualKey;
  return made;
}

}  // namespace

HWND findControl(const WindowSystem& system, HWND dialog, int id) {
  Window* parent = system.find(dialog);
  Window* found = parent != nullptr ? findById(parent, id) : nullptr;
  return found != nullptr ? found->handle() : nullptr;
}

RECT windowRectIn(const WindowSystem& system, HWND window, HWND reference) {
  Window* w = system.find(window);
  Window* r = system.find(reference);
  if (w == nullptr || r == nullptr) return {};
  const POINT origin = system.screenToClient(r, system.clientToScreen(w, {0, 0}));
  return sized(origin.x, origin.y, w->clientWidth(), w->clientHeight());
}

POINT WindowDriver::centreOf(HWND window) const {
  Window* w = system_.find(window);
  return w != nullptr ? POINT{w->clientWidth() / 2, w->clientHeight() / 2} : POINT{};
}

void WindowDriver::queueAt(HWND window, POINT p, InputEvent event) {
  Window* w = system_.find(window);
  if (w == nullptr) return;
  Window* top = system_.topLevelOf(w);
  const POINT origin = system_.originInTopLevel(w);
  event.surface = top->surface->native;
  event.x = origin.x + p.x;
  event.y = origin.y + p.y;
  pointerSurface_ = event.surface;
  pointer_ = {event.x, event.y};
  backend_.queue(std::move(event));
}

void WindowDriver::pointTo(HWND window, POINT p, unsigned modifiers) {
  Window* w = system_.find(window);
  if (w == nullptr) return;
  const POINT origin = system_.originInTopLevel(w);
  const bool there = system_.topLevelOf(w)->surface->native == pointerSurface_ &&
                     pointer_.x == origin.x + p.x && pointer_.y == origin.y + p.y;
  if (!there) queueAt(window, p, event(EventKind::MouseMove, modifiers));
}

void WindowDriver::move(HWND window, POINT p, unsigned modifiers) {
  queueAt(window, p, event(EventKind::MouseMove, modifiers));
  run();
}

void WindowDriver::press(HWND window, POINT p, MouseButton button, unsigned modifiers, int clicks) {
  pointTo(window, p, modifiers);
  queueAt(window, p, buttonEvent(EventKind::MouseDown, button, modifiers, clicks));
  run();
}

void WindowDriver::release(HWND window, POINT p, MouseButton button, unsigned modifiers) {
  pointTo(window, p, modifiers);
  queueAt(window, p, buttonEvent(EventKind::MouseUp, button, modifiers));
  run();
}

void WindowDriver::click(HWND window, POINT p, unsigned modifiers, MouseButton button) {
  press(window, p, button, modifiers);
  release(window, p, button, modifiers);
}

void WindowDriver::doubleClick(HWND window, POINT p) {
  click(window, p);
  press(window, p, MouseButton::Left, 0, 2);
  release(window, p);
}

void WindowDriver::drag(HWND window, POINT from, POINT to, unsigned modifiers, int steps) {
  press(window, from, MouseButton::Left, modifiers);
  for (int i = 1; i <= steps; ++i) {
    move(window, {from.x + (to.x - from.x) * i / steps, from.y + (to.y - from.y) * i / steps},
         modifiers);
  }
  release(window, to, MouseButton::Left, modifiers);
}

void WindowDriver::wheel(HWND window, POINT p, int notches, unsigned modifiers) {
  pointTo(window, p, modifiers);
  InputEvent turn = event(EventKind::Wheel, modifiers);
  turn.wheelDelta = notches * 120;
  queueAt(window, p, std::move(turn));
  run();
}

void WindowDriver::key(int virtualKey, unsigned modifiers) {
  backend_.queue(keyEvent(EventKind::KeyDown, virtualKey, modifiers));
  backend_.queue(keyEvent(EventKind::KeyUp, virtualKey, modifiers));
  run();
}

void WindowDriver::type(const std::string& utf8) {
  InputEvent text = event(EventKind::Text);
  text.text = utf8;
  backend_.queue(std::move(text));
  run();
}

bool WindowDriver::chooseComboItem(HWND combo, int index) {
  Window* w = system_.find(combo);
  auto* box = w != nullptr ? dynamic_cast<Combo*>(w->control.get()) : nullptr;
  if (box == nullptr) return false;
  if (!box->dropped()) click(combo);
  PopupList* list = popupListOf(box->popupWindow());
  if (list == nullptr || index < 0 || index >= list->count()) return false;
  const RECT row = list->rowRect(index);
  click(box->popupWindow()->handle(), {(row.left + row.right) / 2, (row.top + row.bottom) / 2});
  return true;
}

void WindowDriver::answerNextMenu(std::string label) {
  backend_.setIdleHook([this, label = std::move(label)] {
    MenuTracker* menu = system_.openMenu();
    if (menu == nullptr) return;
    backend_.setIdleHook(nullptr);
    const std::optional<RECT> row = menu->rowRect(label);
    if (!row || label.empty()) {
      backend_.queue(keyEvent(EventKind::KeyDown, VK_ESCAPE, 0));
      return;
    }
    Window* top = system_.capture() != nullptr ? system_.topLevelOf(system_.capture()) : nullptr;
    if (top == nullptr) return;
    for (const EventKind kind : {EventKind::MouseMove, EventKind::MouseDown, EventKind::MouseUp}) {
      InputEvent step = event(kind);
      step.surface = top->surface->native;
      step.x = (row->left + row->right) / 2;
      step.y = (row->top + row->bottom) / 2;
      backend_.queue(std::move(step));
    }
  });
}

}  // namespace winsys
