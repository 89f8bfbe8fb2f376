// The one interface between the window system and a display: surfaces for top-level windows,
// presenting what was painted, events in, the clock and the cursor. Headless and SDL2 back-ends
// implement it in a file each. [UI thread] for every call.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/window/backend/input_event.h"
#include "platform/win32_types.h"

namespace graphics {
class CairoBitmap;
}

namespace winsys {

enum class CursorShape { Arrow, IBeam, Hand, Cross, SizeWE, SizeNS, SizeAll, Wait };

class Backend {
 public:
  virtual ~Backend() = default;

  // A native window, hidden at first, for a top-level window of the given client size in pixels;
  // the result is what events name as their surface. `owner` identifies the system's window.
  virtual void* openSurface(HWND owner, const char* title, int width, int height) = 0;
  virtual void showSurface(void* surface, bool visible) = 0;
  virtual void resizeSurface(void* surface, int width, int height) = 0;
  virtual void closeSurface(void* surface) = 0;
  virtual void setSurfaceTitle(void* surface, const char* title) = 0;
  // Copies the rectangles of the back buffer (the surface's size) to the screen.
  virtual void present(void* surface, graphics::CairoBitmap& backBuffer,
                       const std::vector<RECT>& rects) = 0;

  // The next event, waiting at most `timeoutMs` (negative: without limit) when the back-end can
  // wait. A back-end that cannot wait (headless) answers at once.
  virtual std::optional<InputEvent> waitEvent(int timeoutMs) = 0;
  // False when waiting can bring nothing new (headless: the queue is empty), so that a modal
  // loop gives up instead of spinning.
  virtual bool canWait() const = 0;
  // The key or mouse button as the device holds it now.
  virtual bool keyHeld(int virtualKey) const = 0;

  // Milliseconds of the back-end's clock: real and monotonic, or virtual.
  virtual std::uint64_t nowMs() const = 0;
  // Moves a virtual clock; false for a real one.
  virtual bool setClockMs(std::uint64_t /*ms*/) { return false; }

  virtual void setCursor(CursorShape shape) = 0;

  // Shows a message box and answers the button chosen (IDOK, IDYES, ...).
  virtual int messageBox(void* surface, const char* text, const char* caption, int style) = 0;
  // The display's scale in 1/256 (256 = 100 %).
  virtual int displayScale256() const = 0;
};

}  // namespace winsys
