// The window system: a retained tree of windows with Win32 semantics, its messages, timers,
// focus, capture and painting, over one back-end. All state lives in this object, so a test makes
// a fresh one; the window-layer functions a plug-in binds by name reach the one made current.
// [UI thread] for every member.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/window/backend/backend.h"
#include "host/window/core/window.h"
#include "platform/host_functions.h"

namespace winsys {

class GdiTable;
class MenuTable;
struct DialogBuilder;
class MenuTracker;

struct CreateParams {
  const char* className = "";
  const char* text = "";
  LONG_PTR style = 0;
  LONG_PTR exStyle = 0;
  RECT rect{};
  HWND parent = nullptr;
  int id = 0;
  WNDPROC proc = nullptr;  // null: the default procedure
  WindowKind kind = WindowKind::Plain;
};

using AcceleratorSource = std::vector<AcceleratorRegister*> (*)();

class WindowSystem {
 public:
  explicit WindowSystem(std::unique_ptr<Backend> backend);
  ~WindowSystem();
  WindowSystem(const WindowSystem&) = delete;
  WindowSystem& operator=(const WindowSystem&) = delete;

  // The system the window-layer functions act on; null answers every one of them with failure.
  static WindowSystem* current();
  static void setCurrent(WindowSystem* system);

  Backend& backend() { return *backend_; }
  std::uint64_t nowMs() const { return backend_->nowMs(); }

  // ---- The tree ----------------------------------------------------------------------------
  // Sends WM_CREATE; null when the parent is not a live window or WM_CREATE answered -1. A window
  // without parent is top-level and gets a surface of the back-end.
  HWND create(const CreateParams& params);
  // A host frame: a top-level window whose client area holds a plug-in's editor, following the
  // size of its child when `fitToChild`. `proc` (default: DefWindowProc) gets WM_CLOSE first.
  HWND createFrame(const char* title, int width, int height, int scale256, bool fitToChild,
                   WNDPROC proc = nullptr);
  // Destroys the window's children (each before its parent), then the window, each with
  // WM_DESTROY then WM_NCDESTROY. False for a handle that is not a live window.
  bool destroy(HWND window);
  // The live window behind a handle, or null (destroyed, foreign or null handles).
  Window* find(HWND window) const;
  bool isLive(const Window* window) const;
  std::size_t windowCount() const { return live_.size(); }
  std::vector<HWND> topLevelWindows() const;

  Window* topLevelOf(Window* window) const;
  // The window's client origin in its top-level window's client coordinates.
  POINT originInTopLevel(const Window* window) const;
  POINT clientToScreen(const Window* window, POINT p) const;
  POINT screenToClient(const Window* window, POINT p) const;
  // Visible when it and every ancestor are.
  bool isShown(const Window* window) const;
  // The window's area in its top-level's coordinates, cut by its ancestors'.
  RECT visibleRectInTopLevel(const Window* window) const;
  int scale256Of(const Window* window) const;
  // The scale new top-level windows get: the override when set, else the back-end's.
  int defaultScale256() const;
  void setScaleOverride256(int scale256) { scaleOverride256_ = scale256; }

  void move(Window* window, const RECT& rect, bool repaint);
  void setZOrder(Window* window, HWND insertAfter);
  void show(Window* window, bool visible);
  void enable(Window* window, bool enabled);
  void setParent(Window* window, Window* parent);
  void setText(Window* window, const std::string& text);
  // Direct children with this id, else null.
  Window* childById(Window* parent, int id) const;
  // The deepest visible and enabled window under a top-level point, not counting windows that
  // let the mouse through.
  Window* hitTest(Window* topLevel, POINT pointInTopLevel) const;

  // ---- Messages ----------------------------------------------------------------------------
  LRESULT send(Window* window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT send(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  // Queued for the next pump; null windows are accepted (thread messages, dropped).
  bool post(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  // Delivers the posted messages, also those posted meanwhile.
  void deliverPosted();
  void dropPosted(HWND window);
  std::size_t postedCount() const { return posted_.size(); }
  // WM_COMMAND from a control to its parent.
  void notifyParent(Window* control, int code);

  // ---- Timers ------------------------------------------------------------------------------
  // Replaces a timer of the same window and id. A null window gets a fresh id. Intervals below
  // 10 ms are 10 ms.
  UINT_PTR setTimer(HWND window, UINT_PTR id, UINT intervalMs, TIMERPROC proc);
  bool killTimer(HWND window, UINT_PTR id);
  std::optional<std::uint64_t> nextTimerDue() const;
  // Fires every timer due by now, each at most once, in order of due time.
  void fireDueTimers();

  // ---- Input -------------------------------------------------------------------------------
  void dispatch(const InputEvent& event);
  Window* focus() const { return focus_; }
  // Sends WM_KILLFOCUS and WM_SETFOCUS; answers the window that lost the focus.
  Window* setFocus(Window* window);
  Window* capture() const { return capture_; }
  Window* hover() const { return hover_; }
  Window* setCapture(Window* window);
  void releaseCapture();
  POINT cursorScreenPos() const { return cursorScreen_; }
  void setCursor(CursorShape shape);
  CursorShape cursorShape() const { return cursor_; }
  // GetAsyncKeyState: the back-end's device state, keys of the events so far and the modifiers
  // of the event being handled.
  bool keyHeld(int virtualKey) const;
  // Keyboard records offered every key message before the focused window.
  void setAcceleratorSource(AcceleratorSource source) { accelerators_ = source; }
  // A modal loop's claim on every key message before anything else (pop-up menus); true consumes.
  void setKeyInterceptor(std::function<bool(UINT, WPARAM, LPARAM)> interceptor) {
    keyInterceptor_ = std::move(interceptor);
  }
  // Moves the focus to the next (or previous) tab stop of the dialog holding the focus.
  void moveFocusInDialog(bool backwards);

  // ---- Painting ----------------------------------------------------------------------------
  // Adds the rectangle (client coordinates; null: all) to what the window's surface repaints.
  void invalidate(Window* window, const RECT* rect);
  // Repaints what was invalidated, parents before children, and presents it.
  void paint();
  void paintSurface(Window* topLevel);
  // The pixels of the window's area after a full repaint of it, or null when it is not shown.
  std::unique_ptr<graphics::CairoBitmap> render(Window* window);
  bool renderToPng(HWND window, const std::string& path, std::string* error);
  // The window being painted and the rectangles of its update (BeginPaint's region).
  std::vector<RECT> takeUpdateRegion(Window* window);
  void markPresented(Window* window, const RECT& clientRect);

  // ---- Loops -------------------------------------------------------------------------------
  // Handles one event if one comes within `timeoutMs`, then due timers, posted messages and
  // painting. False when the back-end had nothing.
  bool pumpOnce(int timeoutMs);
  // Handles everything the back-end holds now (headless: the queue) and what it causes.
  void processEvents();
  // Moves a virtual clock on by `ms`, firing each timer when it is due; false on a real clock.
  bool advanceClock(std::uint32_t ms);
  // Runs until the window is destroyed or requestQuit(), calling `periodic` about every
  // `periodMs` (when set). On a virtual clock it only handles what is queued.
  void runUntilClosed(HWND window, const std::function<void()>& periodic, int periodMs);
  // Runs a nested loop until `done` holds; false when the back-end ran dry first (headless).
  bool runModal(const std::function<bool()>& done);
  void requestQuit() { quit_ = true; }

  // ---- Parts -------------------------------------------------------------------------------
  GdiTable& gdi() { return *gdi_; }
  MenuTable& menus() { return *menus_; }
  DialogBuilder& dialogBuilder() { return *dialogBuilder_; }
  // The menu TrackPopupMenu shows now, or null.
  MenuTracker* openMenu() const { return openMenu_; }
  void setOpenMenu(MenuTracker* menu) { openMenu_ = menu; }

 private:
  friend class DispatchScope;
  void unlink(Window* window);
  void destroyTree(Window* window);
  void forget(Window* window);
  void freeDestroyed();
  void handleMouse(Window* topLevel, const InputEvent& event);
  void handleMouseMove(Window* topLevel, const InputEvent& event);
  void handleButton(Window* topLevel, const InputEvent& event);
  void handleWheel(Window* topLevel, const InputEvent& event);
  void handleKey(const InputEvent& event);
  void handleText(const InputEvent& event);
  // True when an accelerator record took the message.
  bool routeKeyMessage(UINT message, WPARAM wParam, LPARAM lParam);
  bool offerToAccelerators(UINT message, WPARAM wParam, LPARAM lParam);
  bool handleDialogKey(UINT message, WPARAM wParam);
  void updateHover(Window* window);
  WPARAM mouseKeyFlags() const;
  LPARAM clientPoint(Window* target) const;
  Window* surfaceOwner(void* native) const;
  void resizeSurface(Window* topLevel);
  void fitFrameToChild(Window* child);
  void paintTree(Window* window, POINT origin, const RECT& clip, const DirtyRegion& region);
  void present(Window* topLevel);
  void closeSurface(Window* topLevel);

  struct PostedMessage {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
  };
  struct Timer {
    HWND window;
    UINT_PTR id;
    UINT intervalMs;
    TIMERPROC proc;
    std::uint64_t dueMs;
  };
  struct UpdateRegion {
    Window* window;
    std::vector<RECT> rects;  // client coordinates
  };

  std::unique_ptr<Backend> backend_;
  std::unordered_set<const Window*> live_;
  std::vector<Window*> topLevels_;
  std::vector<std::unique_ptr<Window>> destroyed_;
  int dispatchDepth_ = 0;
  std::deque<PostedMessage> posted_;
  std::vector<Timer> timers_;
  UINT_PTR nextThreadTimerId_ = 0x7F000000;
  Window* focus_ = nullptr;
  Window* capture_ = nullptr;
  Window* hover_ = nullptr;
  Window* keyboardTop_ = nullptr;
  Window* rightButtonTarget_ = nullptr;
  bool rightGestureCaptured_ = false;
  POINT cursorScreen_{};
  std::uint32_t heldKeys_[8] = {};
  unsigned eventModifiers_ = 0;
  unsigned mouseButtons_ = 0;  // MK_LBUTTON, MK_RBUTTON, MK_MBUTTON
  CursorShape cursor_ = CursorShape::Arrow;
  AcceleratorSource accelerators_ = nullptr;
  std::function<bool(UINT, WPARAM, LPARAM)> keyInterceptor_;
  std::vector<UpdateRegion> painting_;
  int scaleOverride256_ = 0;
  bool quit_ = false;
  std::unique_ptr<GdiTable> gdi_;
  std::unique_ptr<MenuTable> menus_;
  std::unique_ptr<DialogBuilder> dialogBuilder_;
  MenuTracker* openMenu_ = nullptr;
};

// The default window procedure (DefWindowProc) of the system the window belongs to.
LRESULT defaultWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace winsys
