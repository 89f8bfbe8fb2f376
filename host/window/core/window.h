// One window of the tree: what Win32 keeps per window (class, id, styles, rectangle, text, state,
// user data, properties, procedure) and, for a top-level window, its surface.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/window/core/dirty_region.h"
#include "host/window/core/rects.h"
#include "platform/win32_types.h"

namespace graphics {
class CairoBitmap;
}

namespace winsys {

class Control;
class WindowSystem;

// What a top-level window shows on the back-end: a back buffer of its size, the parts waiting to
// be repainted and those painted but not yet presented.
struct Surface {
  Surface();
  ~Surface();
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  std::unique_ptr<graphics::CairoBitmap> backBuffer;
  DirtyRegion toPaint;
  DirtyRegion toPresent;
  int scale256 = 256;
  void* native = nullptr;   // the back-end's window
  bool fitToChild = false;  // a host frame follows the size of its one child
};

enum class WindowKind { Plain, Dialog, Control, Popup };

struct Window {
  Window();
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  HWND handle() { return reinterpret_cast<HWND>(this); }
  int clientWidth() const { return width(rect); }
  int clientHeight() const { return height(rect); }
  RECT clientRect() const { return {0, 0, clientWidth(), clientHeight()}; }
  bool isTopLevel() const { return parent == nullptr; }

  WindowSystem* system = nullptr;
  Window* parent = nullptr;
  std::vector<Window*> children;  // bottom of the z-order first
  WindowKind kind = WindowKind::Plain;
  std::string className;
  std::string text;
  int id = 0;
  LONG_PTR style = 0;
  LONG_PTR exStyle = 0;
  RECT rect{};  // in the parent's client coordinates; a top-level's in screen coordinates
  bool visible = false;
  bool enabled = true;
  LONG_PTR userData = 0;
  LONG_PTR dialogResult = 0;  // DWL_MSGRESULT
  std::vector<std::pair<std::string, void*>> properties;
  WNDPROC proc = nullptr;
  DLGPROC dialogProc = nullptr;
  std::unique_ptr<Control> control;
  HFONT font = nullptr;
  bool destroying = false;
  bool ignoresMouse = false;  // labels and group boxes let clicks through to what lies beneath
  std::unique_ptr<Surface> surface;  // top-level windows only
};

}  // namespace winsys
