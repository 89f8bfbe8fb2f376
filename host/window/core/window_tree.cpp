// Creating, destroying, placing and finding windows.
#include <algorithm>

#include "host/graphics/bitmap.h"
#include "host/window/controls/control.h"
#include "host/window/core/dispatch_scope.h"
#include "host/window/core/window_system.h"
#include "host/window/gdi/gdi_table.h"
#include "platform/win32_controls.h"

namespace winsys {

namespace {

// The back buffer is at least one pixel wide and high so that it always exists.
std::unique_ptr<graphics::CairoBitmap> newBackBuffer(const Window& window) {
  return graphics::CairoBitmap::create(DAUB_BITMAP_WITH_DC, std::max(window.clientWidth(), 1),
                                       std::max(window.clientHeight(), 1));
}

}  // namespace

HWND WindowSystem::create(const CreateParams& params) {
  Window* parent = nullptr;
  if (params.parent != nullptr && (parent = find(params.parent)) == nullptr) return nullptr;
  auto owned = std::make_unique<Window>();
  Window* window = owned.release();
  window->system = this;
  window->kind = params.kind;
  window->className = params.className != nullptr ? params.className : "";
  window->text = params.text != nullptr ? params.text : "";
  window->id = params.id;
  window->style = params.style;
  window->exStyle = params.exStyle;
  window->rect = params.rect;
  window->visible = (params.style & WS_VISIBLE) != 0;
  window->enabled = (params.style & WS_DISABLED) == 0;
  window->proc = params.proc != nullptr ? params.proc : defaultWindowProc;
  window->parent = parent;
  live_.insert(window);
  if (parent != nullptr) {
    parent->children.push_back(window);
  } else {
    window->surface = std::make_unique<Surface>();
    window->surface->scale256 = defaultScale256();
    window->surface->backBuffer = newBackBuffer(*window);
    window->surface->native = backend_->openSurface(window->handle(), window->text.c_str(),
                                                    window->clientWidth(), window->clientHeight());
    topLevels_.push_back(window);
    if (window->visible) backend_->showSurface(window->surface->native, true);
  }
  if (send(window, WM_CREATE, 0, 0) == -1) {
    destroy(window->handle());
    return nullptr;
  }
  if (window->visible) invalidate(window, nullptr);
  return window->handle();
}

HWND WindowSystem::createFrame(const char* title, int width, int height, int scale256,
                               bool fitToChild, WNDPROC proc) {
  CreateParams params;
  params.proc = proc;
  params.className = "PLASK_Frame";
  params.text = title;
  params.rect = sized(0, 0, width, height);
  params.kind = WindowKind::Dialog;
  const HWND frame = create(params);
  Window* window = find(frame);
  if (window == nullptr) return nullptr;
  window->surface->scale256 = scale256 > 0 ? scale256 : defaultScale256();
  window->surface->fitToChild = fitToChild;
  show(window, true);
  return frame;
}

bool WindowSystem::destroy(HWND handle) {
  Window* window = find(handle);
  if (window == nullptr) return false;
  if (window->destroying) return true;
  const DispatchScope scope(*this);
  if (window->parent != nullptr && isShown(window)) invalidate(window->parent, &window->rect);
  destroyTree(window);
  return true;
}

void WindowSystem::destroyTree(Window* window) {
  window->destroying = true;
  // A child's procedure may destroy siblings: take them one at a time from the live list.
  while (true) {
    auto next = std::find_if(window->children.begin(), window->children.end(),
                             [](const Window* child) { return !child->destroying; });
    if (next == window->children.end()) break;
    destroyTree(*next);
  }
  send(window, WM_DESTROY, 0, 0);
  send(window, WM_NCDESTROY, 0, 0);
  forget(window);
}

void WindowSystem::forget(Window* window) {
  if (focus_ == window) focus_ = nullptr;
  if (capture_ == window) capture_ = nullptr;
  if (hover_ == window) hover_ = nullptr;
  if (keyboardTop_ == window) keyboardTop_ = nullptr;
  if (rightButtonTarget_ == window) rightButtonTarget_ = nullptr;
  std::erase_if(timers_, [window](const Timer& t) { return t.window == window->handle(); });
  dropPosted(window->handle());
  std::erase_if(painting_, [window](const UpdateRegion& r) { return r.window == window; });
  gdi_->forgetWindow(window);
  if (window->surface != nullptr) closeSurface(window);
  unlink(window);
  live_.erase(window);
  // The control object goes with the window, later: its own code may still be on the stack.
  destroyed_.emplace_back(window);
}

void WindowSystem::closeSurface(Window* topLevel) {
  backend_->closeSurface(topLevel->surface->native);
  std::erase(topLevels_, topLevel);
}

void WindowSystem::unlink(Window* window) {
  if (window->parent != nullptr) std::erase(window->parent->children, window);
  for (Window* child : window->children) child->parent = nullptr;
  window->children.clear();
  window->parent = nullptr;
}

// ---- Geometry ----------------------------------------------------------------------------------

Window* WindowSystem::topLevelOf(Window* window) const {
  while (window != nullptr && window->parent != nullptr) window = window->parent;
  return window;
}

POINT WindowSystem::originInTopLevel(const Window* window) const {
  POINT origin{0, 0};
  for (; window != nullptr && window->parent != nullptr; window = window->parent) {
    origin.x += window->rect.left;
    origin.y += window->rect.top;
  }
  return origin;
}

POINT WindowSystem::clientToScreen(const Window* window, POINT p) const {
  const POINT origin = originInTopLevel(window);
  const Window* top = window;
  while (top->parent != nullptr) top = top->parent;
  return {p.x + origin.x + top->rect.left, p.y + origin.y + top->rect.top};
}

POINT WindowSystem::screenToClient(const Window* window, POINT p) const {
  const POINT zero = clientToScreen(window, {0, 0});
  return {p.x - zero.x, p.y - zero.y};
}

bool WindowSystem::isShown(const Window* window) const {
  for (; window != nullptr; window = window->parent) {
    if (!window->visible) return false;
  }
  return true;
}

RECT WindowSystem::visibleRectInTopLevel(const Window* window) const {
  RECT visible = window->clientRect();
  POINT origin{0, 0};
  for (const Window* w = window; w->parent != nullptr; w = w->parent) {
    origin.x += w->rect.left;
    origin.y += w->rect.top;
    visible = intersection(offsetBy(visible, w->rect.left, w->rect.top), w->parent->clientRect());
  }
  return visible;
}

void WindowSystem::move(Window* window, const RECT& rect, bool repaint) {
  const bool resized =
      width(rect) != window->clientWidth() || height(rect) != window->clientHeight();
  const RECT old = window->rect;
  if (repaint && window->parent != nullptr) invalidate(window->parent, &old);
  window->rect = rect;
  if (window->surface != nullptr && resized) resizeSurface(window);
  if (repaint) invalidate(window, nullptr);
  if (rect.left != old.left || rect.top != old.top) {
    send(window, WM_MOVE, 0, makeLParam(rect.left, rect.top));
  }
  if (resized) {
    send(window, WM_SIZE, 0, makeLParam(window->clientWidth(), window->clientHeight()));
    fitFrameToChild(window);
  }
}

void WindowSystem::resizeSurface(Window* topLevel) {
  Surface& surface = *topLevel->surface;
  gdi_->forgetTarget(surface.backBuffer.get());
  surface.backBuffer = newBackBuffer(*topLevel);
  backend_->resizeSurface(surface.native, topLevel->clientWidth(), topLevel->clientHeight());
  surface.toPaint = {};
  surface.toPresent = {};
  invalidate(topLevel, nullptr);
}

void WindowSystem::fitFrameToChild(Window* child) {
  Window* frame = child->parent;
  if (frame == nullptr || frame->surface == nullptr || !frame->surface->fitToChild) return;
  const RECT wanted =
      sized(frame->rect.left, frame->rect.top, child->rect.right, child->rect.bottom);
  if (!(wanted == frame->rect)) move(frame, wanted, true);
}

void WindowSystem::setZOrder(Window* window, HWND insertAfter) {
  if (window->parent == nullptr) return;
  std::vector<Window*>& siblings = window->parent->children;
  std::erase(siblings, window);
  if (insertAfter == HWND_BOTTOM) {
    siblings.insert(siblings.begin(), window);
  } else if (Window* after = find(insertAfter);
             after != nullptr && after->parent == window->parent) {
    // Win32 places the window behind `insertAfter`; the list runs bottom to top.
    siblings.insert(std::find(siblings.begin(), siblings.end(), after), window);
  } else {
    siblings.push_back(window);
  }
  invalidate(window, nullptr);
}

void WindowSystem::show(Window* window, bool visible) {
  if (window->visible == visible) return;
  if (!visible) invalidate(window, nullptr);
  window->visible = visible;
  if (window->surface != nullptr) backend_->showSurface(window->surface->native, visible);
  if (visible) invalidate(window, nullptr);
  if (!visible && focus_ != nullptr) {
    for (Window* w = focus_; w != nullptr; w = w->parent) {
      if (w == window) {
        setFocus(window->parent);
        break;
      }
    }
  }
  send(window, WM_SHOWWINDOW, visible ? 1 : 0, 0);
}

void WindowSystem::enable(Window* window, bool enabled) {
  if (window->enabled == enabled) return;
  window->enabled = enabled;
  if (!enabled && focus_ == window) setFocus(nullptr);
  if (!enabled && capture_ == window) releaseCapture();
  send(window, WM_ENABLE, enabled ? 1 : 0, 0);
  invalidate(window, nullptr);
}

void WindowSystem::setParent(Window* window, Window* parent) {
  if (window->parent == nullptr || parent == nullptr || parent == window) return;
  for (Window* w = parent; w != nullptr; w = w->parent) {
    if (w == window) return;  // would make a cycle
  }
  invalidate(window->parent, &window->rect);
  std::erase(window->parent->children, window);
  window->parent = parent;
  parent->children.push_back(window);
  invalidate(window, nullptr);
}

void WindowSystem::setText(Window* window, const std::string& text) {
  window->text = text;
  if (window->surface != nullptr && window->surface->native != nullptr) {
    backend_->setSurfaceTitle(window->surface->native, text.c_str());
  }
  invalidate(window, nullptr);
}

Window* WindowSystem::childById(Window* parent, int id) const {
  if (parent == nullptr) return nullptr;
  for (Window* child : parent->children) {
    if (child->id == id) return child;
  }
  return nullptr;
}

Window* WindowSystem::hitTest(Window* topLevel, POINT p) const {
  Window* hit = topLevel;
  POINT local = p;
  for (bool descended = true; descended;) {
    descended = false;
    for (auto it = hit->children.rbegin(); it != hit->children.rend(); ++it) {
      Window* child = *it;
      if (!child->visible || !child->enabled || child->ignoresMouse) continue;
      if (!contains(child->rect, local)) continue;
      local = {local.x - child->rect.left, local.y - child->rect.top};
      hit = child;
      descended = true;
      break;
    }
  }
  return hit;
}

}  // namespace winsys
