// A fresh headless window system per test, a driver, and procedures that record what they get.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "host/window/api/window_api.h"
#include "host/window/backend/headless_backend.h"
#include "host/window/core/window_system.h"
#include "host/window/dialogs/dialog_builder.h"
#include "host/window/driver/window_driver.h"

struct Recorded {
  HWND window;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
};

inline std::vector<Recorded>& recorded() {
  static std::vector<Recorded> messages;
  return messages;
}

inline INT_PTR recordingDialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  recorded().push_back({window, message, wParam, lParam});
  return 0;
}

inline LRESULT recordingWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  recorded().push_back({window, message, wParam, lParam});
  return winsys::defaultWindowProc(window, message, wParam, lParam);
}

// A window function as a plug-in binds it by name.
template <PlaskId Id>
PlaskFn<Id> bound() {
  return reinterpret_cast<PlaskFn<Id>>(winsys::findWindowApiFunction(Id));
}

// A rectangle in template units.
struct Box {
  int x, y, w, h;
};

// Records of this build's width.
inline std::intptr_t recordField(const char* text) {
  return reinterpret_cast<std::intptr_t>(text);
}

inline PlaskControlRecord builtinRecord(const char* className, int alignment, const char* text,
                                        int id, Box b, int style = 0) {
  return {recordField(className), alignment, recordField(text), id, b.x, b.y, b.w, b.h, style};
}

inline PlaskControlRecord customRecord(const char* text, int id, const char* className, int style,
                                       Box b) {
  return {recordField(text), id, recordField(className), style, b.x, b.y, b.w, b.h, 0};
}

class WindowTest : public ::testing::Test {
 public:
  explicit WindowTest(int scale256 = 256) {
    auto headless = std::make_unique<winsys::HeadlessBackend>(scale256);
    backend = headless.get();
    system = std::make_unique<winsys::WindowSystem>(std::move(headless));
    driver = std::make_unique<winsys::WindowDriver>(*system, *backend);
    winsys::WindowSystem::setCurrent(system.get());
    recorded().clear();
  }
  ~WindowTest() override {
    system.reset();
    winsys::WindowSystem::setCurrent(nullptr);
  }

  HWND frame(int width = 400, int height = 300, int scale256 = 256) {
    return system->createFrame("test", width, height, scale256, false);
  }

  HWND child(HWND parent, int id, RECT rect = {0, 0, 20, 20}, LONG_PTR style = WS_VISIBLE,
             WNDPROC proc = recordingWindowProc) {
    return system->create({.style = style, .rect = rect, .parent = parent, .id = id, .proc = proc});
  }

  // The messages of one kind the recording procedures got, in order.
  std::vector<Recorded> received(UINT message) const {
    std::vector<Recorded> found;
    for (const Recorded& r : recorded()) {
      if (r.message == message) found.push_back(r);
    }
    return found;
  }

  winsys::Window* window(HWND handle) const { return system->find(handle); }

  winsys::HeadlessBackend* backend = nullptr;
  std::unique_ptr<winsys::WindowSystem> system;
  std::unique_ptr<winsys::WindowDriver> driver;
};
