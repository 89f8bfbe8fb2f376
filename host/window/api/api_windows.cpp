// Windows: the tree, geometry, state, properties and painting entry points.
#include <cstring>

#include "host/window/api/api_support.h"
#include "host/window/gdi/window_dc.h"

namespace winsys::api {

namespace {

HWND handleOf(Window* w) {
  return w != nullptr ? w->handle() : nullptr;
}

HDC apiBeginPaint(HWND h, PAINTSTRUCT* paint) {
  Window* w = window(h);
  return w != nullptr ? beginPaint(*system(), w, paint) : nullptr;
}

BOOL apiEndPaint(HWND h, PAINTSTRUCT* paint) {
  return window(h) != nullptr && endPaint(*system(), paint) ? 1 : 0;
}

BOOL apiClientToScreen(HWND h, POINT* p) {
  Window* w = window(h);
  if (w == nullptr || p == nullptr) return 0;
  *p = system()->clientToScreen(w, *p);
  return 1;
}

BOOL apiScreenToClient(HWND h, POINT* p) {
  Window* w = window(h);
  if (w == nullptr || p == nullptr) return 0;
  *p = system()->screenToClient(w, *p);
  return 1;
}

LRESULT apiDefWindowProc(HWND h, UINT message, WPARAM wParam, LPARAM lParam) {
  return window(h) != nullptr ? defaultWindowProc(h, message, wParam, lParam) : 0;
}

BOOL apiDestroyWindow(HWND h) {
  return window(h) != nullptr && system()->destroy(h) ? 1 : 0;
}

// Win32 answers whether the window was disabled before.
BOOL apiEnableWindow(HWND h, BOOL enable) {
  Window* w = window(h);
  if (w == nullptr) return 0;
  const bool wasDisabled = !w->enabled;
  system()->enable(w, enable != 0);
  return wasDisabled ? 1 : 0;
}

BOOL apiIsWindowEnabled(HWND h) {
  Window* w = window(h);
  return w != nullptr && w->enabled ? 1 : 0;
}

BOOL apiIsWindowVisible(HWND h) {
  Window* w = window(h);
  return w != nullptr && system()->isShown(w) ? 1 : 0;
}

BOOL apiIsWindow(HWND h) {
  return window(h) != nullptr ? 1 : 0;
}

BOOL apiIsChild(HWND parent, HWND child) {
  Window* p = window(parent);
  Window* c = window(child);
  if (p == nullptr || c == nullptr) return 0;
  for (Window* w = c->parent; w != nullptr; w = w->parent) {
    if (w == p) return 1;
  }
  return 0;
}

HWND apiGetParent(HWND h) {
  Window* w = window(h);
  return w != nullptr ? handleOf(w->parent) : nullptr;
}

HWND apiSetParent(HWND h, HWND parent) {
  Window* w = window(h);
  Window* p = window(parent);
  if (w == nullptr || p == nullptr) return nullptr;
  const HWND old = handleOf(w->parent);
  system()->setParent(w, p);
  return old;
}

// Siblings run in creation order (a dialog's tab order).
HWND apiGetWindow(HWND h, int relation) {
  Window* w = window(h);
  if (w == nullptr) return nullptr;
  if (relation == GW_CHILD) return w->children.empty() ? nullptr : w->children.front()->handle();
  if (w->parent == nullptr) return nullptr;
  const std::vector<Window*>& siblings = w->parent->children;
  const auto me = std::find(siblings.begin(), siblings.end(), w);
  switch (relation) {
    case GW_HWNDFIRST:
      return siblings.front()->handle();
    case GW_HWNDLAST:
      return siblings.back()->handle();
    case GW_HWNDNEXT:
      return me + 1 != siblings.end() ? (*(me + 1))->handle() : nullptr;
    case GW_HWNDPREV:
      return me != siblings.begin() ? (*(me - 1))->handle() : nullptr;
    default:
      return nullptr;
  }
}

HWND apiGetDlgItem(HWND dialog, int id) {
  Window* w = window(dialog);
  return w != nullptr ? handleOf(system()->childById(w, id)) : nullptr;
}

BOOL apiGetClientRect(HWND h, RECT* r) {
  Window* w = window(h);
  if (w == nullptr || r == nullptr) return 0;
  *r = w->clientRect();
  return 1;
}

// In screen coordinates.
BOOL apiGetWindowRect(HWND h, RECT* r) {
  Window* w = window(h);
  if (w == nullptr || r == nullptr) return 0;
  const POINT origin = system()->clientToScreen(w, {0, 0});
  *r = sized(origin.x, origin.y, w->clientWidth(), w->clientHeight());
  return 1;
}

void apiGetWindowContentViewRect(HWND h, RECT* r) {
  apiGetWindowRect(h, r);
}

BOOL apiSetWindowPos(HWND h, HWND insertAfter, int x, int y, int cx, int cy, UINT flags) {
  Window* w = window(h);
  if (w == nullptr) return 0;
  RECT rect = w->rect;
  if ((flags & SWP_NOMOVE) == 0) rect = offsetBy(rect, x - rect.left, y - rect.top);
  if ((flags & SWP_NOSIZE) == 0)
    rect = sized(rect.left, rect.top, std::max(cx, 0), std::max(cy, 0));
  if (!(rect == w->rect)) system()->move(w, rect, (flags & SWP_NOREDRAW) == 0);
  if ((flags & SWP_NOZORDER) == 0) system()->setZOrder(w, insertAfter);
  if ((flags & SWP_SHOWWINDOW) != 0) system()->show(w, true);
  if ((flags & SWP_HIDEWINDOW) != 0) system()->show(w, false);
  return 1;
}

// Win32 answers whether the window was visible before.
BOOL apiShowWindow(HWND h, int command) {
  Window* w = window(h);
  if (w == nullptr) return 0;
  const bool wasVisible = w->visible;
  system()->show(w, command != SW_HIDE);
  return wasVisible ? 1 : 0;
}

void apiUpdateWindow(HWND h) {
  if (Window* w = window(h)) system()->paintSurface(system()->topLevelOf(w));
}

BOOL apiInvalidateRect(HWND h, const RECT* r, BOOL /*erase*/) {
  Window* w = window(h);
  if (w == nullptr) return 0;
  system()->invalidate(w, r);
  return 1;
}

LONG_PTR apiGetWindowLong(HWND h, int index) {
  Window* w = window(h);
  if (w == nullptr) return 0;
  switch (index) {
    case GWL_ID:
      return w->id;
    case GWL_USERDATA:
      return w->userData;
    case GWL_STYLE:
      return w->style | (w->visible ? WS_VISIBLE : 0) | (w->enabled ? 0 : WS_DISABLED);
    case GWL_EXSTYLE:
      return w->exStyle;
    case GWL_WNDPROC:
      return reinterpret_cast<LONG_PTR>(w->proc);
    case DWL_MSGRESULT:
      return w->dialogResult;
    default:
      return 0;
  }
}

LONG_PTR apiSetWindowLong(HWND h, int index, LONG_PTR value) {
  Window* w = window(h);
  if (w == nullptr) return 0;
  const LONG_PTR old = apiGetWindowLong(h, index);
  switch (index) {
    case GWL_ID:
      w->id = static_cast<int>(value);
      break;
    case GWL_USERDATA:
      w->userData = value;
      break;
    case GWL_STYLE:
      w->style = value & ~static_cast<LONG_PTR>(WS_VISIBLE | WS_DISABLED);
      system()->show(w, (value & WS_VISIBLE) != 0);
      system()->enable(w, (value & WS_DISABLED) == 0);
      system()->invalidate(w, nullptr);
      break;
    case GWL_EXSTYLE:
      w->exStyle = value;
      break;
    case GWL_WNDPROC:
      if (value != 0)
        w->proc = reinterpret_cast<WNDPROC>(value);  // NOLINT(performance-no-int-to-ptr)
      break;
    case DWL_MSGRESULT:
      w->dialogResult = value;
      break;
    default:
      return 0;
  }
  return old;
}

void* apiGetProp(HWND h, const char* name) {
  Window* w = window(h);
  if (w == nullptr || name == nullptr) return nullptr;
  for (const auto& [key, value] : w->properties) {
    if (key == name) return value;
  }
  return nullptr;
}

BOOL apiSetProp(HWND h, const char* name, void* value) {
  Window* w = window(h);
  if (w == nullptr || name == nullptr) return 0;
  for (auto& property : w->properties) {
    if (property.first == name) {
      property.second = value;
      return 1;
    }
  }
  w->properties.emplace_back(name, value);
  return 1;
}

void* apiRemoveProp(HWND h, const char* name) {
  Window* w = window(h);
  if (w == nullptr || name == nullptr) return nullptr;
  for (auto it = w->properties.begin(); it != w->properties.end(); ++it) {
    if (it->first != name) continue;
    void* value = it->second;
    w->properties.erase(it);
    return value;
  }
  return nullptr;
}

int apiGetClassName(HWND h, char* out, int size) {
  Window* w = window(h);
  if (w == nullptr || out == nullptr || size <= 0) return 0;
  const std::size_t count =
      std::min<std::size_t>(w->className.size(), static_cast<std::size_t>(size - 1));
  std::memcpy(out, w->className.data(), count);
  out[count] = '\0';
  return static_cast<int>(count);
}

int apiGetWindowTextLength(HWND h) {
  Window* w = window(h);
  return w != nullptr ? static_cast<int>(system()->send(w, WM_GETTEXTLENGTH, 0, 0)) : 0;
}

bool enumerate(Window* parent, BOOL (*callback)(HWND, LPARAM), LPARAM param) {
  const std::vector<Window*> children = parent->children;
  for (Window* child : children) {
    if (!system()->isLive(child)) continue;
    if (callback(child->handle(), param) == 0) return false;
    if (system()->isLive(child) && !enumerate(child, callback, param)) return false;
  }
  return true;
}

BOOL apiEnumChildWindows(HWND h, BOOL (*callback)(HWND, LPARAM), LPARAM param) {
  Window* w = window(h);
  if (w == nullptr || callback == nullptr) return 0;
  enumerate(w, callback, param);
  return 1;
}

HWND apiFindWindowEx(HWND parent, HWND after, const char* className, const char* title) {
  WindowSystem* current = system();
  if (current == nullptr) return nullptr;
  std::vector<Window*> candidates;
  if (Window* p = window(parent)) {
    candidates = p->children;
  } else {
    for (HWND top : current->topLevelWindows()) candidates.push_back(current->find(top));
  }
  auto it = candidates.begin();
  if (Window* a = window(after)) it = std::find(candidates.begin(), candidates.end(), a) + 1;
  for (; it < candidates.end(); ++it) {
    const bool classMatches = className == nullptr || (*it)->className == className;
    const bool titleMatches = title == nullptr || (*it)->text == title;
    if (classMatches && titleMatches) return (*it)->handle();
  }
  return nullptr;
}

HWND apiWindowFromPoint(POINT screen) {
  WindowSystem* current = system();
  if (current == nullptr) return nullptr;
  const std::vector<HWND> tops = current->topLevelWindows();
  for (auto it = tops.rbegin(); it != tops.rend(); ++it) {
    Window* top = current->find(*it);
    if (!top->visible || !contains(top->rect, screen)) continue;
    return current->hitTest(top, {screen.x - top->rect.left, screen.y - top->rect.top})->handle();
  }
  return nullptr;
}

HWND apiGetForegroundWindow() {
  WindowSystem* current = system();
  if (current == nullptr) return nullptr;
  const std::vector<HWND> tops = current->topLevelWindows();
  return tops.empty() ? nullptr : tops.front();
}

void apiSetForegroundWindow(HWND /*window*/) {}

int apiGetSystemMetrics(int which) {
  WindowSystem* current = system();
  const int scale256 = current != nullptr ? current->defaultScale256() : 256;
  switch (which) {
    case SM_CXSCREEN:
      return 1920;
    case SM_CYSCREEN:
      return 1080;
    case SM_CXVSCROLL:
    case SM_CYHSCROLL:
      return 16 * scale256 / 256;
    default:
      return 0;
  }
}

}  // namespace

std::vector<ApiEntry> windowFunctions() {
  return {entry<PlaskId::BeginPaint>(apiBeginPaint),
          entry<PlaskId::EndPaint>(apiEndPaint),
          entry<PlaskId::ClientToScreen>(apiClientToScreen),
          entry<PlaskId::ScreenToClient>(apiScreenToClient),
          entry<PlaskId::DefWindowProc>(apiDefWindowProc),
          entry<PlaskId::DestroyWindow>(apiDestroyWindow),
          entry<PlaskId::EnableWindow>(apiEnableWindow),
          entry<PlaskId::IsWindowEnabled>(apiIsWindowEnabled),
          entry<PlaskId::IsWindowVisible>(apiIsWindowVisible),
          entry<PlaskId::IsWindow>(apiIsWindow),
          entry<PlaskId::IsChild>(apiIsChild),
          entry<PlaskId::GetParent>(apiGetParent),
          entry<PlaskId::SetParent>(apiSetParent),
          entry<PlaskId::GetWindow>(apiGetWindow),
          entry<PlaskId::GetDlgItem>(apiGetDlgItem),
          entry<PlaskId::GetClientRect>(apiGetClientRect),
          entry<PlaskId::GetWindowRect>(apiGetWindowRect),
          entry<PlaskId::GetWindowContentViewRect>(apiGetWindowContentViewRect),
          entry<PlaskId::SetWindowPos>(apiSetWindowPos),
          entry<PlaskId::ShowWindow>(apiShowWindow),
          entry<PlaskId::UpdateWindow>(apiUpdateWindow),
          entry<PlaskId::InvalidateRect>(apiInvalidateRect),
          entry<PlaskId::GetWindowLong>(apiGetWindowLong),
          entry<PlaskId::SetWindowLong>(apiSetWindowLong),
          entry<PlaskId::GetProp>(apiGetProp),
          entry<PlaskId::SetProp>(apiSetProp),
          entry<PlaskId::RemoveProp>(apiRemoveProp),
          entry<PlaskId::GetClassName>(apiGetClassName),
          entry<PlaskId::GetWindowTextLength>(apiGetWindowTextLength),
          entry<PlaskId::EnumChildWindows>(apiEnumChildWindows),
          entry<PlaskId::FindWindowEx>(apiFindWindowEx),
          entry<PlaskId::WindowFromPoint>(apiWindowFromPoint),
          entry<PlaskId::GetForegroundWindow>(apiGetForegroundWindow),
          entry<PlaskId::SetForegroundWindow>(apiSetForegroundWindow),
          entry<PlaskId::GetSystemMetrics>(apiGetSystemMetrics)};
}

}  // namespace winsys::api
