#include "host/window/core/window_system.h"

#include <algorithm>

#include "host/graphics/bitmap.h"
#include "host/window/controls/control.h"
#include "host/window/core/dispatch_scope.h"
#include "host/window/dialogs/dialog_builder.h"
#include "host/window/gdi/gdi_table.h"
#include "host/window/menus/menu_table.h"
#include "platform/win32_controls.h"

namespace winsys {

namespace {

WindowSystem* currentSystem = nullptr;

}  // namespace

Surface::Surface() = default;
Surface::~Surface() = default;
Window::Window() = default;
Window::~Window() = default;

WindowSystem::WindowSystem(std::unique_ptr<Backend> backend)
    : backend_(std::move(backend)),
      gdi_(std::make_unique<GdiTable>()),
      menus_(std::make_unique<MenuTable>()),
      dialogBuilder_(std::make_unique<DialogBuilder>()) {}

WindowSystem::~WindowSystem() {
  for (HWND top : topLevelWindows()) destroy(top);
  freeDestroyed();
  if (currentSystem == this) currentSystem = nullptr;
}

WindowSystem* WindowSystem::current() {
  return currentSystem;
}

void WindowSystem::setCurrent(WindowSystem* system) {
  currentSystem = system;
}

Window* WindowSystem::find(HWND window) const {
  auto* candidate = reinterpret_cast<Window*>(window);
  return live_.contains(candidate) ? candidate : nullptr;
}

bool WindowSystem::isLive(const Window* window) const {
  return window != nullptr && live_.contains(window);
}

std::vector<HWND> WindowSystem::topLevelWindows() const {
  std::vector<HWND> handles;
  for (Window* top : topLevels_) handles.push_back(top->handle());
  return handles;
}

int WindowSystem::defaultScale256() const {
  return scaleOverride256_ > 0 ? scaleOverride256_ : backend_->displayScale256();
}

int WindowSystem::scale256Of(const Window* window) const {
  if (window == nullptr) return defaultScale256();
  while (window->parent != nullptr) window = window->parent;
  return window->surface != nullptr ? window->surface->scale256 : defaultScale256();
}

// ---- Loops -----------------------------------------------------------------------------------

bool WindowSystem::pumpOnce(int timeoutMs) {
  std::optional<InputEvent> event = backend_->waitEvent(timeoutMs);
  if (event) dispatch(*event);
  fireDueTimers();
  deliverPosted();
  paint();
  return event.has_value();
}

void WindowSystem::processEvents() {
  deliverPosted();
  while (pumpOnce(0)) {
  }
  paint();
}

bool WindowSystem::advanceClock(std::uint32_t ms) {
  const std::uint64_t target = backend_->nowMs() + ms;
  while (true) {
    const std::optional<std::uint64_t> due = nextTimerDue();
    if (!due || *due > target) break;
    if (!backend_->setClockMs(*due)) return false;
    fireDueTimers();
    deliverPosted();
    paint();
  }
  if (!backend_->setClockMs(target)) return false;
  processEvents();
  return true;
}

namespace {

int millisecondsUntil(std::uint64_t now, std::optional<std::uint64_t> due) {
  if (!due) return -1;
  return *due <= now ? 0 : static_cast<int>(std::min<std::uint64_t>(*due - now, 1000000));
}

}  // namespace

void WindowSystem::runUntilClosed(HWND window, const std::function<void()>& periodic,
                                  int periodMs) {
  quit_ = false;
  if (!backend_->canWait()) {  // a virtual clock does not move by itself: see advanceClock
    processEvents();
    return;
  }
  std::uint64_t nextPeriodic = backend_->nowMs() + std::max(periodMs, 1);
  while (find(window) != nullptr && !quit_) {
    std::optional<std::uint64_t> due = nextTimerDue();
    if (periodic && (!due || nextPeriodic < *due)) due = nextPeriodic;
    pumpOnce(millisecondsUntil(backend_->nowMs(), due));
    if (periodic && backend_->nowMs() >= nextPeriodic) {
      periodic();
      nextPeriodic = backend_->nowMs() + std::max(periodMs, 1);
    }
  }
}

bool WindowSystem::runModal(const std::function<bool()>& done) {
  paint();
  while (!done() && !quit_) {
    const bool got = pumpOnce(millisecondsUntil(backend_->nowMs(), nextTimerDue()));
    if (!got && !backend_->canWait()) return done();
  }
  return true;
}

// ---- Messages ----------------------------------------------------------------------------------

LRESULT WindowSystem::send(Window* window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!isLive(window)) return 0;
  const DispatchScope scope(*this);
  const WNDPROC proc = window->proc != nullptr ? window->proc : defaultWindowProc;
  return proc(window->handle(), message, wParam, lParam);
}

LRESULT WindowSystem::send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return send(find(window), message, wParam, lParam);
}

bool WindowSystem::post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (window != nullptr && find(window) == nullptr) return false;
  posted_.push_back({window, message, wParam, lParam});
  return true;
}

void WindowSystem::deliverPosted() {
  const DispatchScope scope(*this);
  while (!posted_.empty()) {
    const PostedMessage message = posted_.front();
    posted_.pop_front();
    send(find(message.window), message.message, message.wParam, message.lParam);
  }
}

void WindowSystem::dropPosted(HWND window) {
  std::erase_if(posted_, [window](const PostedMessage& m) { return m.window == window; });
}

void WindowSystem::notifyParent(Window* control, int code) {
  if (!isLive(control) || control->parent == nullptr) return;
  send(control->parent, WM_COMMAND, makeWParam(control->id, code),
       reinterpret_cast<LPARAM>(control->handle()));
}

void WindowSystem::freeDestroyed() {
  if (dispatchDepth_ != 0) return;
  const std::vector<std::unique_ptr<Window>> dead = std::move(destroyed_);
  destroyed_.clear();
}

}  // namespace winsys
