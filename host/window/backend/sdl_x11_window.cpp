// Kept apart: the X11 headers SDL_syswm.h brings define names (CursorShape, None, ...) that
// clash with the window system's.
#include "host/window/backend/sdl_backend.h"
// After the window system's own headers: X11 defines macros over some of its names.
#include <SDL.h>
#include <SDL_syswm.h>

#include <cstring>

namespace winsys {

#if defined(SDL_VIDEO_DRIVER_X11)
namespace {

XErrorHandler previousX11ErrorHandler = nullptr;

// SDL wakes its event wait with a message to one of its windows; when that window has just been
// destroyed, the server answers BadWindow, which Xlib's default handler turns into exit(1) as the
// program closes. Nothing is lost by ignoring it.
int onX11Error(Display* display, XErrorEvent* error) {
  if (error->error_code == BadWindow) return 0;
  return previousX11ErrorHandler != nullptr ? previousX11ErrorHandler(display, error) : 0;
}

}  // namespace
#endif

// Once, before SDL opens its display: SDL's own handler falls back to this one, and SDL puts it
// back before closing its connections, when the error of a late wake-up message is read.
void SdlBackend::tolerateVanishedX11Windows() {
#if defined(SDL_VIDEO_DRIVER_X11)
  static const bool installed = [] {
    previousX11ErrorHandler = XSetErrorHandler(onX11Error);
    return true;
  }();
  (void)installed;
#endif
}

unsigned long SdlBackend::x11WindowId(void* surface) const {
  SDL_SysWMinfo info;
  SDL_VERSION(&info.version);
  auto* window = static_cast<SDL_Window*>(surface);
  if (window == nullptr || SDL_GetWindowWMInfo(window, &info) != SDL_TRUE) return 0;
#if defined(SDL_VIDEO_DRIVER_X11)
  if (info.subsystem == SDL_SYSWM_X11) return info.info.x11.window;
#endif
  return 0;
}

// SDL converts a title to the locale's encoding first and, under the C locale, leaves the UTF-8
// name window managers show unchanged when the title is not ASCII: it is set here as well.
void SdlBackend::setX11Title(void* surface, const char* title) const {
  SDL_SysWMinfo info;
  SDL_VERSION(&info.version);
  auto* window = static_cast<SDL_Window*>(surface);
  if (window == nullptr || SDL_GetWindowWMInfo(window, &info) != SDL_TRUE) return;
#if defined(SDL_VIDEO_DRIVER_X11)
  if (info.subsystem != SDL_SYSWM_X11) return;
  Display* display = info.info.x11.display;
  XChangeProperty(display, info.info.x11.window, XInternAtom(display, "_NET_WM_NAME", False),
                  XInternAtom(display, "UTF8_STRING", False), 8, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(title),
                  static_cast<int>(std::strlen(title)));
  XFlush(display);
#endif
}

}  // namespace winsys
