// The host's built-in control classes: one object per control window behind one window
// procedure. A control handles its messages and paints itself with Cairo; what it does not
// handle goes to the default procedure.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "host/window/core/window_system.h"
#include "platform/win32_controls.h"

namespace winsys {

class Control {
 public:
  explicit Control(Window& window) : self_(window) {}
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  // Paints on WM_PAINT; anything else goes to the default procedure.
  virtual LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);
  // Draws the whole control in client coordinates.
  virtual void paint(cairo_t* cr) = 0;

 protected:
  Window& self() { return self_; }
  const Window& self() const { return self_; }
  WindowSystem& system() const { return *self_.system; }
  int scale256() const { return self_.system->scale256Of(&self_); }
  double px(double pixelsAt100) const { return pixelsAt100 * scale256() / 256.0; }
  bool enabled() const { return self_.enabled; }
  bool focused() const { return self_.system->focus() == &self_; }
  bool hot() const { return self_.system->hover() == &self_; }
  bool captured() const { return self_.system->capture() == &self_; }
  void invalidate() { self_.system->invalidate(&self_, nullptr); }
  void notify(int code) { self_.system->notifyParent(&self_, code); }
  void takeFocus() { self_.system->setFocus(&self_); }
  int width() const { return self_.clientWidth(); }
  int height() const { return self_.clientHeight(); }

 private:
  Window& self_;
};

// The window procedure of every built-in control.
LRESULT controlWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

struct ControlSpec {
  std::string className;
  std::string text;
  int id = 0;
  LONG_PTR style = 0;
  LONG_PTR exStyle = 0;
  RECT rect{};
  HWND parent = nullptr;
};

// True for the class names the host draws itself ("Static", "Edit", "ComboBox", "Button",
// "KESTELknob", "KESTELhfader", "KESTELhorzvu", "HotTrackButton"; Win32 names in any case).
bool isHostControlClass(const std::string& className);
// Makes a control of one of those classes (shown unless created hidden by the caller); null for
// other classes or a parent that is not live.
HWND createHostControl(WindowSystem& system, const ControlSpec& wanted);

}  // namespace winsys
