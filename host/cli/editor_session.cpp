#include "host/cli/editor_session.h"

#include "host/cli/plugin_setup.h"
#include "host/runtime/host_error.h"
#include "host/window/core/window.h"

namespace {

// Before the editor is open the frame has the size the plug-in asks for, or a usual one.
constexpr int kFallbackWidth = 640;
constexpr int kFallbackHeight = 480;

std::string describe(PluginInstance& instance) {
  const std::string name = instance.effectName();
  return name.empty() ? instance.module().path() : name + " (" + instance.module().path() + ")";
}

struct FrameSize {
  int width;
  int height;
};

FrameSize requestedSize(PluginInstance& instance) {
  ERect* rect = nullptr;
  instance.dispatch("effEditGetRect", effEditGetRect, 0, 0, &rect);
  if (rect == nullptr || rect->right <= rect->left || rect->bottom <= rect->top) {
    return {kFallbackWidth, kFallbackHeight};
  }
  return {rect->right - rect->left, rect->bottom - rect->top};
}

}  // namespace

EditorSession::EditorSession(winsys::WindowSystem& system, PluginInstance& instance, int scale256)
    : system_(system), instance_(instance) {
  if ((instance.effect().flags & effFlagsHasEditor) == 0) {
    throw HostError(describe(instance) + " has no editor (effFlagsHasEditor is clear)");
  }
  const FrameSize size = requestedSize(instance);
  name_ = instance.effectName();
  frame_ = system.createFrame(name_.c_str(), size.width * scale256 / 256,
                              size.height * scale256 / 256, scale256, true, &frameProcedure);
  winsys::Window* frame = system.find(frame_);
  frame->userData = reinterpret_cast<LONG_PTR>(this);
  // Shown once the editor has given it its size: no flash of the size asked before opening.
  system.show(frame, false);
  const VstIntPtr opened = instance.dispatch("effEditOpen", effEditOpen, 0, 0, frame_);
  editorOpen_ = opened != 0;
  if (!editorOpen_) {
    close();
    throw HostError(describe(instance) + " did not open its editor (effEditOpen answered 0)");
  }
  if (editor() == nullptr) {
    close();
    throw HostError(describe(instance) +
                    " made no window in the host's frame (effEditOpen answered " +
                    std::to_string(opened) + "); its editor needs another kind of host window");
  }
  system.show(system.find(frame_), true);
  system.paint();
}

EditorSession::~EditorSession() {
  close();
}

HWND EditorSession::editor() const {
  const winsys::Window* frame = system_.find(frame_);
  if (frame == nullptr || frame->children.empty()) return nullptr;
  return frame->children.front()->handle();
}

void EditorSession::idle() {
  if (editorOpen_) instance_.dispatch("effEditIdle", effEditIdle);
  instance_.idle();
  if (idleHook_) idleHook_();
}

void EditorSession::setTitleStatus(const std::string& status) {
  winsys::Window* frame = system_.find(frame_);
  if (frame == nullptr) return;
  const std::string title = status.empty() ? name_ : name_ + " \u2014 " + status;
  if (frame->text != title) system_.setText(frame, title);
}

void EditorSession::setParameter(const std::string& nameOrIndex, float normalised) {
  const int parameter = resolveParameter(instance_, nameOrIndex);
  if (parameterRoute_) {
    parameterRoute_(parameter, normalised);
  } else {
    instance_.setParameter(parameter, normalised);
  }
}

void EditorSession::close() {
  if (editorOpen_) {
    editorOpen_ = false;
    instance_.dispatch("effEditClose", effEditClose);
  }
  if (winsys::Window* frame = system_.find(frame_)) {
    frame->userData = 0;
    system_.destroy(frame_);
  }
}

// [UI thread] Closing the frame's window closes the editor first, as a host's plug-in window does.
LRESULT EditorSession::frameProcedure(HWND frame, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CLOSE) {
    const winsys::Window* window = winsys::WindowSystem::current()->find(frame);
    // The frame's user data holds its session, set by the constructor.
    const LONG_PTR data = window->userData;
    if (auto* session =
            reinterpret_cast<EditorSession*>(data)) {  // NOLINT(performance-no-int-to-ptr)
      session->close();
      return 0;
    }
  }
  return winsys::defaultWindowProc(frame, message, wParam, lParam);
}
