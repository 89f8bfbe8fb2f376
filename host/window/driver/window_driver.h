// Drives windows of a headless window system as a user would: mouse, wheel and keys at a window's
// client coordinates, the clock, combo and menu choices, pictures. For tests and for scripts that
// run a plug-in's editor without a display. [UI thread]
#pragma once

#include <cstdint>
#include <string>

#include "host/window/backend/headless_backend.h"
#include "host/window/core/window_system.h"

namespace winsys {

// The control with this id: a direct child of `dialog`, else the first descendant; or null.
HWND findControl(const WindowSystem& system, HWND dialog, int id);
// The window's client area in `reference`'s client coordinates.
RECT windowRectIn(const WindowSystem& system, HWND window, HWND reference);

class WindowDriver {
 public:
  WindowDriver(WindowSystem& system, HeadlessBackend& backend)
      : system_(system), backend_(backend) {}

  HWND control(HWND dialog, int id) const { return findControl(system_, dialog, id); }
  RECT rectIn(HWND window, HWND reference) const {
    return windowRectIn(system_, window, reference);
  }
  POINT centreOf(HWND window) const;

  void move(HWND window, POINT p, unsigned modifiers = 0);
  void press(HWND window, POINT p, MouseButton button = MouseButton::Left, unsigned modifiers = 0,
             int clicks = 1);
  void release(HWND window, POINT p, MouseButton button = MouseButton::Left,
               unsigned modifiers = 0);
  void click(HWND window, POINT p, unsigned modifiers = 0, MouseButton button = MouseButton::Left);
  void click(HWND window, unsigned modifiers = 0) { click(window, centreOf(window), modifiers); }
  void doubleClick(HWND window, POINT p);
  // Press, `steps` moves on the way, release.
  void drag(HWND window, POINT from, POINT to, unsigned modifiers = 0, int steps = 4);
  void wheel(HWND window, POINT p, int notches, unsigned modifiers = 0);
  void key(int virtualKey, unsigned modifiers = 0);
  void type(const std::string& utf8);
  void advance(std::uint32_t milliseconds) { system_.advanceClock(milliseconds); }

  // Opens a drop-down combo with a click and clicks the row `index`; false when it has no such row.
  bool chooseComboItem(HWND combo, int index);
  // The next pop-up menu is answered by a click on the row showing `label`, or dismissed with
  // Escape when the label is empty or not there.
  void answerNextMenu(std::string label);
  bool writePng(HWND window, const std::string& path, std::string* error = nullptr) {
    return system_.renderToPng(window, path, error);
  }

 private:
  void queueAt(HWND window, POINT p, InputEvent event);
  // The pointer goes to `p` first unless it is there already: a button pressed or released where
  // the mouse rests moves nothing, so a click is no drag.
  void pointTo(HWND window, POINT p, unsigned modifiers);
  void run() { system_.processEvents(); }

  WindowSystem& system_;
  HeadlessBackend& backend_;
  void* pointerSurface_ = nullptr;
  POINT pointer_{-1, -1};  // in the pointer surface's client pixels
};

}  // namespace winsys
