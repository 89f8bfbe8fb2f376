// A window layer of fakes that writes every call into a log, so tests can read what a view asked
// of the host in order.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "plugin/window_layer.h"

namespace fake_window {

inline std::vector<std::string> calls;
inline HWND capture = nullptr;
inline LONG_PTR parentUserData = 0;
inline DLGPROC createdProcedure = nullptr;
inline RECT clientRect{0, 0, 120, 90};

inline HWND const kParent = reinterpret_cast<HWND>(0x100);
inline HWND const kView = reinterpret_cast<HWND>(0x200);
inline HWND const kEditorItem = reinterpret_cast<HWND>(0x300);
inline HDC const kScreenDc = reinterpret_cast<HDC>(0x400);
inline HCURSOR const kArrow = reinterpret_cast<HCURSOR>(0x500);
inline HDC const kBitmapDc = reinterpret_cast<HDC>(0x600);
constexpr LRESULT kDefaultAnswer = 77;

template <typename... Args>
void log(const char* format, Args... args) {
  char line[160];
  std::snprintf(line, sizeof line, format, args...);
  calls.emplace_back(line);
}

inline HWND createDialog(PlaskDialogResource*, int resourceId, HWND parent, DLGPROC procedure,
                         LPARAM param) {
  createdProcedure = procedure;
  log("CreateDialog %d %s %ld", resourceId, parent == kParent ? "parent" : "other",
      static_cast<long>(param));
  return kView;
}
inline LONG_PTR setWindowLong(HWND, int index, LONG_PTR value) {
  log("SetWindowLong %d %ld", index, static_cast<long>(value));
  return 0;
}
inline BOOL setWindowPos(HWND, HWND, int x, int y, int w, int h, UINT flags) {
  log("SetWindowPos %d %d %d %d 0x%x", x, y, w, h, flags);
  return 1;
}
inline BOOL showWindow(HWND, int how) {
  log("ShowWindow %d", how);
  return 1;
}
inline HWND getParent(HWND window) {
  return window == kView ? kParent : nullptr;
}
inline LONG_PTR getWindowLong(HWND window, int index) {
  return window == kParent && index == GWL_USERDATA ? parentUserData : 0;
}
inline LRESULT defWindowProc(HWND, UINT message, WPARAM, LPARAM) {
  log("DefWindowProc 0x%x", message);
  return kDefaultAnswer;
}
inline HCURSOR loadCursor(std::intptr_t id) {
  log("LoadCursor %ld", static_cast<long>(id));
  return kArrow;
}
inline HCURSOR setCursor(HCURSOR cursor) {
  log("SetCursor %s", cursor == kArrow ? "arrow" : "other");
  return nullptr;
}
inline HWND setCapture(HWND window) {
  log("SetCapture");
  capture = window;
  return nullptr;
}
inline HWND getCapture() {
  return capture;
}
inline void releaseCapture() {
  log("ReleaseCapture");
  capture = nullptr;
}
inline BOOL getClientRect(HWND, RECT* rect) {
  *rect = clientRect;
  return 1;
}
inline HDC beginPaint(HWND, PAINTSTRUCT* paint) {
  log("BeginPaint");
  paint->hdc = kScreenDc;
  return kScreenDc;
}
inline BOOL endPaint(HWND, PAINTSTRUCT*) {
  log("EndPaint");
  return 1;
}
inline void bitBlt(HDC dc, int x, int y, int w, int h, HDC source, int sx, int sy, int mode) {
  log("BitBlt %s %d %d %d %d %s %d %d %d", dc == kScreenDc ? "screen" : "other", x, y, w, h,
      source == kBitmapDc ? "bitmap" : "other", sx, sy, mode);
}
inline LRESULT sendMessage(HWND window, UINT message, WPARAM wParam, LPARAM) {
  log("SendMessage %s 0x%x %lu", window == kParent ? "parent" : "other", message,
      static_cast<unsigned long>(wParam));
  return 0;
}
inline HWND getDlgItem(HWND, int id) {
  log("GetDlgItem %d", id);
  return kEditorItem;
}
inline BOOL invalidateRect(HWND window, const RECT* rect, BOOL erase) {
  log("InvalidateRect %s %s %d", window == kEditorItem ? "view" : "other",
      rect == nullptr ? "all" : "part", erase);
  return 1;
}

template <PlaskId Id, typename Fn>
void bind(Fn fn) {
  plaskSlots[static_cast<int>(Id)] = reinterpret_cast<PlaskGenericFn>(fn);
}

// Binds every fake and clears the log.
inline void install() {
  calls.clear();
  capture = nullptr;
  parentUserData = 0;
  createdProcedure = nullptr;
  bind<PlaskId::PLASK_CreateDialog>(&createDialog);
  bind<PlaskId::SetWindowLong>(&setWindowLong);
  bind<PlaskId::SetWindowPos>(&setWindowPos);
  bind<PlaskId::ShowWindow>(&showWindow);
  bind<PlaskId::GetParent>(&getParent);
  bind<PlaskId::GetWindowLong>(&getWindowLong);
  bind<PlaskId::DefWindowProc>(&defWindowProc);
  bind<PlaskId::PLASK_LoadCursor>(&loadCursor);
  bind<PlaskId::PLASK_SetCursor>(&setCursor);
  bind<PlaskId::SetCapture>(&setCapture);
  bind<PlaskId::GetCapture>(&getCapture);
  bind<PlaskId::ReleaseCapture>(&releaseCapture);
  bind<PlaskId::GetClientRect>(&getClientRect);
  bind<PlaskId::BeginPaint>(&beginPaint);
  bind<PlaskId::EndPaint>(&endPaint);
  bind<PlaskId::BitBlt>(&bitBlt);
  bind<PlaskId::SendMessage>(&sendMessage);
  bind<PlaskId::GetDlgItem>(&getDlgItem);
  bind<PlaskId::InvalidateRect>(&invalidateRect);
}

inline void uninstall() {
  for (PlaskGenericFn& slot : plaskSlots) slot = nullptr;
}

}  // namespace fake_window
