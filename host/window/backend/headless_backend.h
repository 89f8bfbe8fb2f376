// The back-end without a display: a virtual clock the caller moves, events the caller queues,
// surfaces that are only counted, message boxes answered and logged. Every window test uses it.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/window/backend/backend.h"

namespace winsys {

struct MessageBoxRecord {
  std::string caption;
  std::string text;
  int style = 0;
  int answer = 0;
};

class HeadlessBackend final : public Backend {
 public:
  explicit HeadlessBackend(int scale256 = 256) : scale256_(scale256) {}

  void* openSurface(HWND owner, const char* title, int width, int height) override;
  void showSurface(void* /*surface*/, bool /*visible*/) override {}
  void resizeSurface(void* /*surface*/, int /*width*/, int /*height*/) override {}
  void closeSurface(void* /*surface*/) override {}
  void setSurfaceTitle(void* surface, const char* title) override {
    titles_[surface] = title != nullptr ? title : "";
  }
  void present(void* surface, graphics::CairoBitmap& backBuffer,
               const std::vector<RECT>& rects) override;

  std::optional<InputEvent> waitEvent(int timeoutMs) override;
  bool canWait() const override { return false; }
  bool keyHeld(int /*virtualKey*/) const override { return false; }

  std::uint64_t nowMs() const override { return clockMs_; }
  bool setClockMs(std::uint64_t ms) override;

  void setCursor(CursorShape shape) override { cursor_ = shape; }
  int messageBox(void* surface, const char* text, const char* caption, int style) override;
  int displayScale256() const override { return scale256_; }

  // ---- for the caller -------------------------------------------------------------------------
  void queue(InputEvent event) { events_.push_back(std::move(event)); }
  bool hasQueuedEvents() const { return !events_.empty(); }
  // Called when a loop finds the queue empty, before it gives up: a script can queue the next
  // events there, for instance to choose an item of a menu that is open.
  void setIdleHook(std::function<void()> hook) { idleHook_ = std::move(hook); }
  // The answers the next message boxes give, in order; after them each box answers its default
  // button. Every box is recorded and, when a log is set, reported to it.
  void queueMessageBoxAnswer(int answer) { answers_.push_back(answer); }
  void setMessageBoxLog(std::function<void(const MessageBoxRecord&)> log) { log_ = std::move(log); }
  const std::vector<MessageBoxRecord>& messageBoxes() const { return boxes_; }
  CursorShape cursor() const { return cursor_; }
  // The title a surface's window would show; empty for an unknown surface.
  std::string surfaceTitle(void* surface) const {
    const auto found = titles_.find(surface);
    return found != titles_.end() ? found->second : std::string();
  }
  // Rectangles presented so far, over all surfaces, and those of the last present.
  long presentedRects() const { return presentedRects_; }
  const std::vector<RECT>& lastPresented() const { return lastPresented_; }

 private:
  std::uint64_t clockMs_ = 0;
  std::map<void*, std::string> titles_;
  int scale256_;
  std::deque<InputEvent> events_;
  std::function<void()> idleHook_;
  std::deque<int> answers_;
  std::function<void(const MessageBoxRecord&)> log_;
  std::vector<MessageBoxRecord> boxes_;
  CursorShape cursor_ = CursorShape::Arrow;
  long presentedRects_ = 0;
  std::vector<RECT> lastPresented_;
};

// The button a message box of `style` answers when nobody chooses: its default button.
int defaultMessageBoxAnswer(int style);

}  // namespace winsys
