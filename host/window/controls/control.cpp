#include "host/window/controls/control.h"

#include "host/window/gdi/dc_painter.h"
#include "host/window/gdi/window_dc.h"

namespace winsys {

LRESULT Control::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_PAINT) return defaultWindowProc(self_.handle(), message, wParam, lParam);
  PAINTSTRUCT paintStruct{};
  const HDC dc = beginPaint(system(), &self_, &paintStruct);
  DeviceContext* context = system().gdi().find(dc);
  if (context != nullptr && !isEmpty(paintStruct.rcPaint)) {
    const DcPainter painter(*context);
    paint(painter.cr());
  }
  endPaint(system(), &paintStruct);
  return 0;
}

LRESULT controlWindowProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* window = reinterpret_cast<Window*>(handle);
  if (window->control == nullptr) return defaultWindowProc(handle, message, wParam, lParam);
  return window->control->handle(message, wParam, lParam);
}

}  // namespace winsys
