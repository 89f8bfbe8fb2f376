// DefWindowProc: painting, background, text, fonts, and the messages that travel to the parent.
#include <cstring>

#include "host/window/controls/theme.h"
#include "host/window/core/window_system.h"
#include "host/window/gdi/gdi_draw.h"
#include "host/window/gdi/window_dc.h"
#include "platform/win32_controls.h"

namespace winsys {

namespace {

LRESULT copyText(const std::string& text, WPARAM capacity, LPARAM buffer) {
  if (buffer == 0 || capacity == 0) return 0;
  const std::size_t count = std::min<std::size_t>(text.size(), capacity - 1);
  auto* out = reinterpret_cast<char*>(buffer);
  std::memcpy(out, text.data(), count);
  out[count] = '\0';
  return static_cast<LRESULT>(count);
}

LRESULT eraseBackground(WindowSystem& system, Window* window, HDC dc) {
  if (window->kind != WindowKind::Dialog) return 0;
  if (DeviceContext* context = system.gdi().find(dc)) {
    gdi::fillSolid(*context, window->clientRect(), theme::kFace);
  }
  return 1;
}

LRESULT setCursor(WindowSystem& system, Window* window, WPARAM under, LPARAM lParam) {
  if (window->parent != nullptr && system.send(window->parent, WM_SETCURSOR, under, lParam) != 0) {
    return 1;
  }
  if (under == reinterpret_cast<WPARAM>(window->handle())) system.setCursor(CursorShape::Arrow);
  return 0;
}

}  // namespace

LRESULT defaultWindowProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* window = reinterpret_cast<Window*>(handle);
  WindowSystem& system = *window->system;
  switch (message) {
    case WM_PAINT: {
      PAINTSTRUCT paint{};
      beginPaint(system, window, &paint);
      endPaint(system, &paint);
      return 0;
    }
    case WM_ERASEBKGND:
      return eraseBackground(system, window, reinterpret_cast<HDC>(wParam));
    case WM_SETTEXT:
      system.setText(window, lParam != 0 ? reinterpret_cast<const char*>(lParam) : "");
      return 1;
    case WM_GETTEXT:
      return copyText(window->text, wParam, lParam);
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(window->text.size());
    case WM_SETFONT:
      window->font = reinterpret_cast<HFONT>(wParam);
      if (lParam != 0) system.invalidate(window, nullptr);
      return 0;
    case WM_GETFONT:
      return reinterpret_cast<LRESULT>(window->font);
    case WM_CONTEXTMENU:
    case WM_MOUSEWHEEL:
      return window->parent != nullptr ? system.send(window->parent, message, wParam, lParam) : 0;
    case WM_SETCURSOR:
      return setCursor(system, window, wParam, lParam);
    case WM_CLOSE:
      system.destroy(handle);
      return 0;
    default:
      return 0;
  }
}

}  // namespace winsys
