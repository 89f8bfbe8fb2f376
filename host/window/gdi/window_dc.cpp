#include "host/window/gdi/window_dc.h"

#include "host/window/core/window_system.h"
#include "host/window/gdi/gdi_table.h"
#include "platform/win32_controls.h"

namespace winsys {

namespace {

HDC contextFor(WindowSystem& system, Window* window, const std::vector<RECT>& clientRects) {
  Window* top = system.topLevelOf(window);
  const POINT origin = system.originInTopLevel(window);
  std::vector<RECT> clip;
  for (const RECT& r : clientRects) clip.push_back(offsetBy(r, origin.x, origin.y));
  return system.gdi().createWindowDC(window, top->surface->backBuffer.get(), origin,
                                     std::move(clip));
}

}  // namespace

HDC beginPaint(WindowSystem& system, Window* window, PAINTSTRUCT* paint) {
  const std::vector<RECT> rects = system.takeUpdateRegion(window);
  const HDC dc = contextFor(system, window, rects);
  RECT bounds{};
  for (const RECT& r : rects) bounds = unionOf(bounds, r);
  if (paint != nullptr) *paint = {dc, 0, bounds};
  if (!rects.empty()) system.send(window, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
  return dc;
}

bool endPaint(WindowSystem& system, const PAINTSTRUCT* paint) {
  return paint != nullptr && system.gdi().releaseDC(paint->hdc);
}

HDC getWindowDC(WindowSystem& system, Window* window) {
  std::vector<RECT> visible;
  if (system.isShown(window)) {
    const POINT origin = system.originInTopLevel(window);
    visible.push_back(offsetBy(system.visibleRectInTopLevel(window), -origin.x, -origin.y));
  }
  return contextFor(system, window, visible);
}

void releaseWindowDC(WindowSystem& system, Window* window, HDC dc) {
  if (system.gdi().releaseDC(dc) && system.isLive(window)) {
    system.markPresented(window, window->clientRect());
  }
}

}  // namespace winsys
