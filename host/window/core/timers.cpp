// Timers on the back-end's clock: WM_TIMER (or the timer's procedure) when due, at most once per
// due time, like Win32's coalesced timers.
#include <algorithm>

#include "host/window/core/window_system.h"

namespace winsys {

namespace {

constexpr UINT kMinimumIntervalMs = 10;

}  // namespace

UINT_PTR WindowSystem::setTimer(HWND window, UINT_PTR id, UINT intervalMs, TIMERPROC proc) {
  if (window != nullptr && find(window) == nullptr) return 0;
  if (window == nullptr) id = ++nextThreadTimerId_;
  const UINT interval = std::max(intervalMs, kMinimumIntervalMs);
  const std::uint64_t due = backend_->nowMs() + interval;
  for (Timer& timer : timers_) {
    if (timer.window == window && timer.id == id) {
      timer = {window, id, interval, proc, due};
      return window == nullptr ? id : 1;
    }
  }
  timers_.push_back({window, id, interval, proc, due});
  return window == nullptr ? id : (id != 0 ? id : 1);
}

bool WindowSystem::killTimer(HWND window, UINT_PTR id) {
  return std::erase_if(timers_, [&](const Timer& t) { return t.window == window && t.id == id; }) >
         0;
}

std::optional<std::uint64_t> WindowSystem::nextTimerDue() const {
  std::optional<std::uint64_t> next;
  for (const Timer& timer : timers_) {
    if (!next || timer.dueMs < *next) next = timer.dueMs;
  }
  return next;
}

void WindowSystem::fireDueTimers() {
  const std::uint64_t now = backend_->nowMs();
  std::vector<Timer> due;
  for (Timer& timer : timers_) {
    if (timer.dueMs > now) continue;
    due.push_back(timer);
    // Behind by more than an interval (a busy loop): the next tick is one interval from now.
    timer.dueMs = timer.dueMs + timer.intervalMs <= now ? now + timer.intervalMs
                                                        : timer.dueMs + timer.intervalMs;
  }
  std::stable_sort(due.begin(), due.end(),
                   [](const Timer& a, const Timer& b) { return a.dueMs < b.dueMs; });
  for (const Timer& timer : due) {
    // A timer killed or replaced by an earlier one of this round does not fire.
    const bool stillSet = std::any_of(timers_.begin(), timers_.end(), [&](const Timer& t) {
      return t.window == timer.window && t.id == timer.id && t.proc == timer.proc;
    });
    if (!stillSet) continue;
    if (timer.proc != nullptr) {
      timer.proc(timer.window, WM_TIMER, timer.id, static_cast<DWORD>(now));
    } else {
      send(timer.window, WM_TIMER, timer.id, 0);
    }
  }
}

}  // namespace winsys
