// A plug-in's editor in a host frame: the frame sized by effEditGetRect, the editor opened in it
// with effEditOpen and following its size, idle calls while it is open, effEditClose before the
// frame goes. Any plug-in with an editor. [UI thread]
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/cli/edit_script.h"
#include "host/runtime/plugin_instance.h"
#include "host/window/core/window_system.h"

class EditorSession : public EditScriptHost {
 public:
  // Throws HostError when the plug-in has no editor (effFlagsHasEditor clear) or does not open
  // one (effEditOpen answers 0 or makes no window).
  EditorSession(winsys::WindowSystem& system, PluginInstance& instance, int scale256);
  ~EditorSession() override;
  EditorSession(const EditorSession&) = delete;
  EditorSession& operator=(const EditorSession&) = delete;

  HWND frame() const override { return frame_; }
  // The plug-in's own window, the frame's child; null once closed.
  HWND editor() const override;
  bool isOpen() const { return system_.find(frame_) != nullptr; }

  // effEditIdle, and effIdle when the plug-in asked for idle calls; then the idle hook.
  void idle() override;
  // Runs on every idle call, the script's too: what keeps a companion of the editor in step.
  void setIdleHook(std::function<void()> hook) { idleHook_ = std::move(hook); }
  // Where setParameter sends a change instead of the plug-in (live audio applies it in time).
  void setParameterRoute(std::function<void(std::int32_t, float)> route) {
    parameterRoute_ = std::move(route);
  }
  // The frame's title becomes "NAME — STATUS" (just NAME when empty); unchanged titles are not
  // set again.
  void setTitleStatus(const std::string& status);
  void setParameter(const std::string& nameOrIndex, float normalised) override;
  std::vector<unsigned char> state() override { return instance_.chunk(); }
  // effEditClose, then the frame; also what closing the frame's window does.
  void close();

 private:
  static LRESULT frameProcedure(HWND frame, UINT message, WPARAM wParam, LPARAM lParam);

  winsys::WindowSystem& system_;
  PluginInstance& instance_;
  HWND frame_ = nullptr;
  bool editorOpen_ = false;
  std::string name_;
  std::function<void()> idleHook_;
  std::function<void(std::int32_t, float)> parameterRoute_;
};
