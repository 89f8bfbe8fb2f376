// A connection to the X server of DISPLAY that finds a top-level window by its title, reads its
// size and asks the window to close (WM_DELETE_WINDOW), as a window manager does. Kept apart from
// Xlib's macros.
#pragma once

#include <string>
#include <utility>

class XWindowClient {
 public:
  XWindowClient();
  ~XWindowClient();
  XWindowClient(const XWindowClient&) = delete;
  XWindowClient& operator=(const XWindowClient&) = delete;

  bool connected() const { return display_ != nullptr; }
  // The first shown child of the root whose title starts with `title`, or 0.
  unsigned long find(const std::string& title) const;
  std::pair<int, int> size(unsigned long window) const;
  void askToClose(unsigned long window) const;

 private:
  void* display_;
};
