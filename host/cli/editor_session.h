// A plug-in's editor in a host frame: the frame sized by effEditGetRect, the editor opened in it
// with effEditOpen and following its size, idle calls while it is open, effEditClose before the
// frame goes. Any plug-in with an editor. [UI thread]
#pragma once

#include <string>

#include "host/runtime/plugin_instance.h"
#include "host/window/core/window_system.h"

class EditorSession {
 public:
  static constexpr int kIdlePeriodMs = 50;

  // Throws HostError when the plug-in has no editor (effFlagsHasEditor clear) or does not open
  // one (effEditOpen answers 0 or makes no window).
  EditorSession(winsys::WindowSystem& system, PluginInstance& instance, int scale256);
  ~EditorSession();
  EditorSession(const EditorSession&) = delete;
  EditorSession& operator=(const EditorSession&) = delete;

  HWND frame() const { return frame_; }
  // The plug-in's own window, the frame's child; null once closed.
  HWND editor() const;
  bool isOpen() const { return system_.find(frame_) != nullptr; }

  // effEditIdle, and effIdle when the plug-in asked for idle calls.
  void idle();
  // effEditClose, then the frame; also what closing the frame's window does.
  void close();

 private:
  static LRESULT frameProcedure(HWND frame, UINT message, WPARAM wParam, LPARAM lParam);

  winsys::WindowSystem& system_;
  PluginInstance& instance_;
  HWND frame_ = nullptr;
  bool editorOpen_ = false;
};
