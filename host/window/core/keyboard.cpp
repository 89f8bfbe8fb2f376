// Keyboard routing: each key message goes first to the registered accelerator records, then to
// the dialog keys (Tab, Shift+Tab, Return, Escape), then to the window with the focus.
#include "host/window/core/window_system.h"
#include "platform/win32_controls.h"

namespace winsys {

namespace {

constexpr int kKeyWords = 8;

bool isKeyIndex(int virtualKey) {
  return virtualKey >= 0 && virtualKey < kKeyWords * 32;
}

// The character Win32's TranslateMessage makes of keys that have no text of their own.
int controlCharacter(int virtualKey) {
  switch (virtualKey) {
    case VK_BACK:
    case VK_TAB:
    case VK_RETURN:
    case VK_ESCAPE:
      return virtualKey;
    default:
      return 0;
  }
}

// Code points of UTF-8 text; malformed bytes are taken as Latin-1.
std::vector<std::uint32_t> codePoints(const std::string& text) {
  std::vector<std::uint32_t> points;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const int length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 0;
    if (length <= 1 || i + length > text.size()) {
      points.push_back(lead);
      ++i;
      continue;
    }
    std::uint32_t point = lead & (0x7F >> length);
    for (int k = 1; k < length; ++k) point = (point << 6) | (text[i + k] & 0x3F);
    points.push_back(point);
    i += length;
  }
  return points;
}

}  // namespace

bool WindowSystem::keyHeld(int virtualKey) const {
  if (isKeyIndex(virtualKey) && (heldKeys_[virtualKey / 32] >> (virtualKey % 32) & 1u) != 0) {
    return true;
  }
  switch (virtualKey) {
    case VK_SHIFT:
      if ((eventModifiers_ & kModShift) != 0) return true;
      break;
    case VK_CONTROL:
      if ((eventModifiers_ & kModControl) != 0) return true;
      break;
    case VK_MENU:
      if ((eventModifiers_ & kModAlt) != 0) return true;
      break;
    case VK_LBUTTON:
      if ((mouseButtons_ & MK_LBUTTON) != 0) return true;
      break;
    case VK_RBUTTON:
      if ((mouseButtons_ & MK_RBUTTON) != 0) return true;
      break;
    case VK_MBUTTON:
      if ((mouseButtons_ & MK_MBUTTON) != 0) return true;
      break;
    default:
      break;
  }
  return backend_->keyHeld(virtualKey);
}

void WindowSystem::handleKey(const InputEvent& event) {
  const int key = event.virtualKey;
  const bool down = event.kind == EventKind::KeyDown;
  if (Window* top = surfaceOwner(event.surface)) keyboardTop_ = top;
  if (isKeyIndex(key)) {
    const std::uint32_t bit = 1u << (key % 32);
    heldKeys_[key / 32] = down ? (heldKeys_[key / 32] | bit) : (heldKeys_[key / 32] & ~bit);
  }
  const LPARAM repeatAndState = down ? 1 : static_cast<LPARAM>(0xC0000001u);
  const bool hooked =
      routeKeyMessage(down ? WM_KEYDOWN : WM_KEYUP, static_cast<WPARAM>(key), repeatAndState);
  // As in Win32, a key an accelerator took is not translated into a character.
  const int character = controlCharacter(key);
  if (down && !hooked && character != 0 && !keyHeld(VK_CONTROL)) {
    routeKeyMessage(WM_CHAR, static_cast<WPARAM>(character), repeatAndState);
  }
}

void WindowSystem::handleText(const InputEvent& event) {
  if (Window* top = surfaceOwner(event.surface)) keyboardTop_ = top;
  for (const std::uint32_t point : codePoints(event.text)) routeKeyMessage(WM_CHAR, point, 1);
}

bool WindowSystem::routeKeyMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (keyInterceptor_ && keyInterceptor_(message, wParam, lParam)) return false;
  if (offerToAccelerators(message, wParam, lParam)) return true;
  if (handleDialogKey(message, wParam)) return false;
  if (focus_ != nullptr) send(focus_, message, wParam, lParam);
  return false;
}

bool WindowSystem::offerToAccelerators(UINT message, WPARAM wParam, LPARAM lParam) {
  if (accelerators_ == nullptr) return false;
  for (AcceleratorRegister* record : accelerators_()) {
    if (record == nullptr || record->translate == nullptr) continue;
    MSG msg{focus_ != nullptr ? focus_->handle() : nullptr, message,      wParam, lParam,
            static_cast<DWORD>(backend_->nowMs()),          cursorScreen_};
    if (record->translate(&msg, record) == 1) return true;
  }
  return false;
}

bool WindowSystem::handleDialogKey(UINT message, WPARAM wParam) {
  if (message != WM_KEYDOWN && message != WM_CHAR) return false;
  const bool tab = wParam == VK_TAB;
  const bool enter = wParam == VK_RETURN;
  const bool escape = wParam == VK_ESCAPE;
  if (!tab && !enter && !escape) return false;
  if (keyHeld(VK_CONTROL) || keyHeld(VK_MENU)) return false;
  const LRESULT code = focus_ != nullptr ? send(focus_, WM_GETDLGCODE, wParam, 0) : 0;
  if ((code & DLGC_WANTALLKEYS) != 0 || (tab && (code & DLGC_WANTTAB) != 0)) return false;
  Window* dialog = focus_ != nullptr ? focus_->parent : nullptr;
  while (dialog != nullptr && dialog->kind != WindowKind::Dialog) dialog = dialog->parent;
  if (!tab && dialog == nullptr) return false;
  // The character that follows the key down was dealt with by it.
  if (message == WM_CHAR) return true;
  if (tab) {
    moveFocusInDialog(keyHeld(VK_SHIFT));
  } else {
    send(dialog, WM_COMMAND, makeWParam(enter ? IDOK : IDCANCEL, BN_CLICKED), 0);
  }
  return true;
}

namespace {

void collectTabStops(WindowSystem& system, Window* window, std::vector<Window*>& stops) {
  for (Window* child : window->children) {
    if (!child->visible || !child->enabled) continue;
    if ((child->style & WS_TABSTOP) != 0) stops.push_back(child);
    collectTabStops(system, child, stops);
  }
}

}  // namespace

void WindowSystem::moveFocusInDialog(bool backwards) {
  Window* root = focus_ != nullptr ? topLevelOf(focus_) : keyboardTop_;
  if (!isLive(root)) root = topLevels_.empty() ? nullptr : topLevels_.front();
  if (root == nullptr) return;
  std::vector<Window*> stops;
  collectTabStops(*this, root, stops);
  if (stops.empty()) return;
  const auto count = static_cast<long>(stops.size());
  long index = -1;
  for (long i = 0; i < count && index < 0; ++i) {
    for (Window* w = focus_; w != nullptr; w = w->parent) {
      if (w == stops[i]) index = i;
    }
  }
  long next = 0;
  if (index < 0) {
    next = backwards ? count - 1 : 0;
  } else {
    next = ((backwards ? index - 1 : index + 1) + count) % count;
  }
  setFocus(stops[next]);
  if (stops[next]->className == "Edit") send(stops[next], EM_SETSEL, 0, -1);
}

Window* WindowSystem::setFocus(Window* window) {
  if (window != nullptr && !isLive(window)) return nullptr;
  Window* old = focus_;
  if (old == window) return old;
  focus_ = window;
  if (isLive(old)) {
    send(old, WM_KILLFOCUS, window != nullptr ? reinterpret_cast<WPARAM>(window->handle()) : 0, 0);
  }
  if (focus_ == window && isLive(window)) {
    send(window, WM_SETFOCUS, isLive(old) ? reinterpret_cast<WPARAM>(old->handle()) : 0, 0);
  }
  return old;
}

}  // namespace winsys
