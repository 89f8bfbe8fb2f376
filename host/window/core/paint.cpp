// Invalidation and the paint pass: every window that meets the dirty area gets WM_PAINT, parents
// before their children, into its top-level window's back buffer; then the area is presented.
#include <cairo.h>

#include "host/graphics/bitmap.h"
#include "host/graphics/png_io.h"
#include "host/window/core/window_system.h"

namespace winsys {

void WindowSystem::invalidate(Window* window, const RECT* rect) {
  if (!isLive(window) || !isShown(window)) return;
  const RECT area =
      rect != nullptr ? intersection(*rect, window->clientRect()) : window->clientRect();
  const POINT origin = originInTopLevel(window);
  topLevelOf(window)->surface->toPaint.add(
      intersection(offsetBy(area, origin.x, origin.y), visibleRectInTopLevel(window)));
}

void WindowSystem::paint() {
  for (HWND handle : topLevelWindows()) {
    Window* top = find(handle);
    if (top == nullptr) continue;
    if (!top->surface->toPaint.empty()) paintSurface(top);
    if (!top->surface->toPresent.empty()) present(top);
  }
}

void WindowSystem::paintSurface(Window* topLevel) {
  Surface& surface = *topLevel->surface;
  DirtyRegion region;
  for (const RECT& r : surface.toPaint.take()) region.add(r);
  if (!topLevel->visible) return;
  paintTree(topLevel, {0, 0}, topLevel->clientRect(), region);
  if (!isLive(topLevel)) return;
  for (const RECT& r : region.rects()) surface.toPresent.add(r);
  present(topLevel);
}

void WindowSystem::paintTree(Window* window, POINT origin, const RECT& clip,
                             const DirtyRegion& region) {
  if (!window->visible) return;
  const RECT area = intersection(offsetBy(window->clientRect(), origin.x, origin.y), clip);
  if (isEmpty(area)) return;
  std::vector<RECT> update;
  for (const RECT& r : region.rects()) {
    const RECT part = intersection(r, area);
    if (!isEmpty(part)) update.push_back(offsetBy(part, -origin.x, -origin.y));
  }
  if (update.empty()) return;
  painting_.push_back({window, std::move(update)});
  send(window, WM_PAINT, 0, 0);
  std::erase_if(painting_, [window](const UpdateRegion& r) { return r.window == window; });
  if (!isLive(window)) return;
  const std::vector<Window*> children = window->children;
  for (Window* child : children) {
    if (!isLive(child) || child->parent != window) continue;
    paintTree(child, {origin.x + child->rect.left, origin.y + child->rect.top}, area, region);
  }
}

std::vector<RECT> WindowSystem::takeUpdateRegion(Window* window) {
  for (auto it = painting_.begin(); it != painting_.end(); ++it) {
    if (it->window != window) continue;
    std::vector<RECT> rects = std::move(it->rects);
    painting_.erase(it);
    return rects;
  }
  return {};
}

void WindowSystem::markPresented(Window* window, const RECT& clientRect) {
  if (!isLive(window) || !isShown(window)) return;
  const POINT origin = originInTopLevel(window);
  topLevelOf(window)->surface->toPresent.add(
      intersection(offsetBy(clientRect, origin.x, origin.y), visibleRectInTopLevel(window)));
}

void WindowSystem::present(Window* topLevel) {
  Surface& surface = *topLevel->surface;
  const std::vector<RECT> rects = surface.toPresent.take();
  if (!rects.empty() && surface.backBuffer != nullptr) {
    backend_->present(surface.native, *surface.backBuffer, rects);
  }
}

std::unique_ptr<graphics::CairoBitmap> WindowSystem::render(Window* window) {
  if (!isLive(window) || !isShown(window)) return nullptr;
  Window* top = topLevelOf(window);
  invalidate(window, nullptr);
  paintSurface(top);
  if (!isLive(window)) return nullptr;
  auto picture = graphics::CairoBitmap::create(DAUB_BITMAP_MEMORY, window->clientWidth(),
                                               window->clientHeight());
  if (picture == nullptr) return nullptr;
  const POINT origin = originInTopLevel(window);
  const RECT visible = offsetBy(visibleRectInTopLevel(window), -origin.x, -origin.y);
  cairo_t* cr = cairo_create(picture->surface());
  cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(cr, top->surface->backBuffer->surface(), -origin.x, -origin.y);
  cairo_rectangle(cr, visible.left, visible.top, width(visible), height(visible));
  cairo_fill(cr);
  cairo_destroy(cr);
  return picture;
}

bool WindowSystem::renderToPng(HWND handle, const std::string& path, std::string* error) {
  const std::unique_ptr<graphics::CairoBitmap> picture = render(find(handle));
  if (picture == nullptr) {
    if (error != nullptr) *error = "the window is not shown";
    return false;
  }
  return graphics::writePng(picture.get(), path, error);
}

}  // namespace winsys
