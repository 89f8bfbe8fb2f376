// A window layer of fakes that writes every call into a log, so tests can read what a view asked
// of the host in order.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "platform/daub.h"
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

// Logs one call and gives the fake's answer.
template <typename Answer, typename... Args>
Answer answer(Answer value, const char* format, Args... args) {
  char line[160];
  std::snprintf(line, sizeof line, format, args...);
  calls.emplace_back(line);
  return value;
}
inline const char* is(bool match, const char* name) {
  return match ? name : "other";
}

// The fakes; each answers what the views expect of a live window.
struct Fakes {
  static HWND createDialog(PlaskDialogResource*, int id, HWND parent, DLGPROC proc, LPARAM param) {
    createdProcedure = proc;
    return answer(kView, "CreateDialog %d %s %ld", id, is(parent == kParent, "parent"),
                  long(param));
  }
  static LONG_PTR setWindowLong(HWND, int index, LONG_PTR value) {
    return answer<LONG_PTR>(0, "SetWindowLong %d %ld", index, long(value));
  }
  static BOOL setWindowPos(HWND, HWND, int x, int y, int w, int h, UINT flags) {
    return answer<BOOL>(1, "SetWindowPos %d %d %d %d 0x%x", x, y, w, h, flags);
  }
  static BOOL showWindow(HWND, int how) { return answer<BOOL>(1, "ShowWindow %d", how); }
  static HWND getParent(HWND window) { return window == kView ? kParent : nullptr; }
  static LONG_PTR getWindowLong(HWND window, int index) {
    return window == kParent && index == GWL_USERDATA ? parentUserData : 0;
  }
  static LRESULT defWindowProc(HWND, UINT message, WPARAM, LPARAM) {
    return answer(kDefaultAnswer, "DefWindowProc 0x%x", message);
  }
  static HCURSOR loadCursor(std::intptr_t id) { return answer(kArrow, "LoadCursor %ld", long(id)); }
  static HCURSOR setCursor(HCURSOR cursor) {
    return answer<HCURSOR>(nullptr, "SetCursor %s", is(cursor == kArrow, "arrow"));
  }
  static HWND setCapture(HWND window) {
    capture = window;
    return answer<HWND>(nullptr, "SetCapture");
  }
  static HWND getCapture() { return capture; }
  static void releaseCapture() { capture = answer<HWND>(nullptr, "ReleaseCapture"); }
  static BOOL getClientRect(HWND, RECT* rect) {
    *rect = clientRect;
    return 1;
  }
  static HDC beginPaint(HWND, PAINTSTRUCT* paint) {
    return paint->hdc = answer(kScreenDc, "BeginPaint");
  }
  static BOOL endPaint(HWND, PAINTSTRUCT*) { return answer<BOOL>(1, "EndPaint"); }
  static void bitBlt(HDC dc, int x, int y, int w, int h, HDC source, int sx, int sy, int mode) {
    answer(0, "BitBlt %s %d %d %d %d %s %d %d %d", is(dc == kScreenDc, "screen"), x, y, w, h,
           is(source == kBitmapDc, "bitmap"), sx, sy, mode);
  }
  static LRESULT sendMessage(HWND window, UINT message, WPARAM wParam, LPARAM) {
    return answer<LRESULT>(0, "SendMessage %s 0x%x %lu", is(window == kParent, "parent"), message,
                           static_cast<unsigned long>(wParam));
  }
  static HWND getDlgItem(HWND, int id) { return answer(kEditorItem, "GetDlgItem %d", id); }
  static BOOL invalidateRect(HWND window, const RECT* rect, BOOL erase) {
    return answer<BOOL>(1, "InvalidateRect %s %s %d", is(window == kEditorItem, "view"),
                        rect ? "part" : "all", erase);
  }
  // The info label of the editor (kParent): "kill 10", "text 1287 50%R", "timer 10 2000".
  static const char* where(HWND window) { return window == kParent ? "" : "elsewhere "; }
  static BOOL killTimer(HWND window, UINT_PTR id) {
    return answer<BOOL>(1, "%skill %lu", where(window), static_cast<unsigned long>(id));
  }
  static BOOL setDlgItemText(HWND window, int item, const char* text) {
    return answer<BOOL>(1, "%stext %d %s", where(window), item, text);
  }
  static UINT_PTR setTimer(HWND window, UINT_PTR id, UINT elapseMs, TIMERPROC) {
    return answer(id, "%stimer %lu %u", where(window), static_cast<unsigned long>(id), elapseMs);
  }
};

inline std::vector<PlaskId> boundIds;

template <PlaskId Id, typename Fn>
void bind(Fn fn) {
  plaskSlots[static_cast<int>(Id)] = reinterpret_cast<PlaskGenericFn>(fn);
  boundIds.push_back(Id);
}

// Binds every fake and clears the log.
inline void install() {
  calls.clear();
  capture = nullptr;
  parentUserData = 0;
  createdProcedure = nullptr;
  using P = PlaskId;
  bind<P::PLASK_CreateDialog>(&Fakes::createDialog);
  bind<P::SetWindowLong>(&Fakes::setWindowLong);
  bind<P::SetWindowPos>(&Fakes::setWindowPos);
  bind<P::ShowWindow>(&Fakes::showWindow);
  bind<P::GetParent>(&Fakes::getParent);
  bind<P::GetWindowLong>(&Fakes::getWindowLong);
  bind<P::DefWindowProc>(&Fakes::defWindowProc);
  bind<P::PLASK_LoadCursor>(&Fakes::loadCursor);
  bind<P::PLASK_SetCursor>(&Fakes::setCursor);
  bind<P::SetCapture>(&Fakes::setCapture);
  bind<P::GetCapture>(&Fakes::getCapture);
  bind<P::ReleaseCapture>(&Fakes::releaseCapture);
  bind<P::GetClientRect>(&Fakes::getClientRect);
  bind<P::BeginPaint>(&Fakes::beginPaint);
  bind<P::EndPaint>(&Fakes::endPaint);
  bind<P::BitBlt>(&Fakes::bitBlt);
  bind<P::SendMessage>(&Fakes::sendMessage);
  bind<P::GetDlgItem>(&Fakes::getDlgItem);
  bind<P::InvalidateRect>(&Fakes::invalidateRect);
  bind<P::KillTimer>(&Fakes::killTimer);
  bind<P::SetDlgItemText>(&Fakes::setDlgItemText);
  bind<P::SetTimer>(&Fakes::setTimer);
}

// Unbinds the fakes, leaving other slots as the test bound them.
inline void uninstall() {
  for (PlaskId id : boundIds) plaskSlots[static_cast<int>(id)] = nullptr;
  boundIds.clear();
}

// A host bitmap drawn through kBitmapDc that keeps the scale it was advised and draws text at it.
class FakeBitmap final : public DAUB_IBitmap {
 public:
  FakeBitmap(int w, int h, int scale256 = 0) : width(w), height(h), advisedScale(scale256) {}
  int getWidth() override { return width; }
  int getHeight() override { return height; }
  bool resize(int w, int h) override {
    width = w;
    height = h;
    return true;
  }
  HDC getDC() override { return kBitmapDc; }
  std::intptr_t Extended(int code, void* data) override {
    if (code == DAUB_EXT_SET_ADVISORY_SCALE) advisedScale = *static_cast<int*>(data);
    const bool read = code == DAUB_EXT_GET_ADVISORY_SCALE || code == DAUB_EXT_GET_EFFECTIVE_SCALE;
    return read ? advisedScale : 0;
  }
  int width, height, advisedScale;
};

// The fakes bound for the scope's lifetime.
struct Installed {
  Installed() { install(); }
  ~Installed() { uninstall(); }
  Installed(const Installed&) = delete;
  Installed& operator=(const Installed&) = delete;
};

}  // namespace fake_window
