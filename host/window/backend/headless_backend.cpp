#include "host/window/backend/headless_backend.h"

#include "platform/win32_controls.h"

namespace winsys {

int defaultMessageBoxAnswer(int style) {
  static constexpr int kButtons[][3] = {
      {IDOK, IDOK, IDOK},      {IDOK, IDCANCEL, IDCANCEL}, {IDABORT, IDRETRY, IDIGNORE},
      {IDYES, IDNO, IDCANCEL}, {IDYES, IDNO, IDNO},        {IDRETRY, IDCANCEL, IDCANCEL}};
  const int type = style & MB_TYPEMASK;
  if (type > MB_RETRYCANCEL) return IDOK;
  const int defaultIndex = (style & MB_DEFBUTTON3) != 0 ? 2 : (style & MB_DEFBUTTON2) != 0 ? 1 : 0;
  return kButtons[type][defaultIndex];
}

void* HeadlessBackend::openSurface(HWND owner, const char* title, int /*width*/, int /*height*/) {
  setSurfaceTitle(owner, title);
  return owner;
}

void HeadlessBackend::present(void* /*surface*/, graphics::CairoBitmap& /*backBuffer*/,
                              const std::vector<RECT>& rects) {
  presentedRects_ += static_cast<long>(rects.size());
  lastPresented_ = rects;
}

std::optional<InputEvent> HeadlessBackend::waitEvent(int /*timeoutMs*/) {
  if (events_.empty() && idleHook_) {
    const std::function<void()> hook = idleHook_;  // the hook may replace itself
    hook();
  }
  if (events_.empty()) return std::nullopt;
  InputEvent event = std::move(events_.front());
  events_.pop_front();
  return event;
}

bool HeadlessBackend::setClockMs(std::uint64_t ms) {
  if (ms > clockMs_) clockMs_ = ms;
  return true;
}

int HeadlessBackend::messageBox(void* /*surface*/, const char* text, const char* caption,
                                int style) {
  MessageBoxRecord box{caption != nullptr ? caption : "", text != nullptr ? text : "", style,
                       defaultMessageBoxAnswer(style)};
  if (!answers_.empty()) {
    box.answer = answers_.front();
    answers_.pop_front();
  }
  boxes_.push_back(box);
  if (log_) log_(box);
  return box.answer;
}

}  // namespace winsys
