// Drawing contexts of windows: BeginPaint's, clipped to the update region of the paint pass, and
// GetDC's, clipped to the window's visible area and presented when released.
#pragma once

#include "platform/win32_types.h"

namespace winsys {

class WindowSystem;
struct Window;

// Sends WM_ERASEBKGND with the context when there is something to paint.
HDC beginPaint(WindowSystem& system, Window* window, PAINTSTRUCT* paint);
bool endPaint(WindowSystem& system, const PAINTSTRUCT* paint);
HDC getWindowDC(WindowSystem& system, Window* window);
void releaseWindowDC(WindowSystem& system, Window* window, HDC dc);

}  // namespace winsys
