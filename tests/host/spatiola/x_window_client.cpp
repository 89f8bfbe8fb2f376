#include "tests/host/spatiola/x_window_client.h"

#include <X11/Xlib.h>

namespace {

Display* display(void* handle) {
  return static_cast<Display*>(handle);
}

}  // namespace

XWindowClient::XWindowClient() : display_(XOpenDisplay(nullptr)) {}

XWindowClient::~XWindowClient() {
  if (display_ != nullptr) XCloseDisplay(display(display_));
}

unsigned long XWindowClient::find(const std::string& title) const {
  Display* d = display(display_);
  Window root = 0, parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  Window found = 0;
  if (XQueryTree(d, DefaultRootWindow(d), &root, &parent, &children, &count)) {
    for (unsigned i = 0; i < count && found == 0; ++i) {
      XWindowAttributes attributes{};
      XGetWindowAttributes(d, children[i], &attributes);
      char* name = nullptr;
      if (attributes.map_state == IsViewable && XFetchName(d, children[i], &name) &&
          name != nullptr) {
        if (std::string(name).starts_with(title)) found = children[i];
        XFree(name);
      }
    }
    if (children != nullptr) XFree(children);
  }
  return found;
}

std::pair<int, int> XWindowClient::size(unsigned long window) const {
  XWindowAttributes attributes{};
  XGetWindowAttributes(display(display_), window, &attributes);
  return {attributes.width, attributes.height};
}

void XWindowClient::askToClose(unsigned long window) const {
  Display* d = display(display_);
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(d, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(d, "WM_DELETE_WINDOW", False));
  event.xclient.data.l[1] = CurrentTime;
  XSendEvent(d, window, False, NoEventMask, &event);
  XFlush(d);
}
