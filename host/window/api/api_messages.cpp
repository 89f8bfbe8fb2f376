// Messages, timers, focus, capture, keys, cursors and message boxes.
#include "host/window/api/api_support.h"
#include "host/window/key_state.h"

namespace winsys::api {

namespace {

LRESULT apiSendMessage(HWND h, UINT message, WPARAM wParam, LPARAM lParam) {
  Window* w = window(h);
  return w != nullptr ? system()->send(w, message, wParam, lParam) : 0;
}

BOOL apiPostMessage(HWND h, UINT message, WPARAM wParam, LPARAM lParam) {
  WindowSystem* current = system();
  return current != nullptr && current->post(h, message, wParam, lParam) ? 1 : 0;
}

UINT_PTR apiSetTimer(HWND h, UINT_PTR id, UINT intervalMs, TIMERPROC proc) {
  WindowSystem* current = system();
  return current != nullptr ? current->setTimer(h, id, intervalMs, proc) : 0;
}

BOOL apiKillTimer(HWND h, UINT_PTR id) {
  WindowSystem* current = system();
  return current != nullptr && current->killTimer(h, id) ? 1 : 0;
}

HWND apiGetFocus() {
  WindowSystem* current = system();
  return current != nullptr && current->focus() != nullptr ? current->focus()->handle() : nullptr;
}

HWND apiSetFocus(HWND h) {
  WindowSystem* current = system();
  if (current == nullptr || (h != nullptr && window(h) == nullptr)) return nullptr;
  Window* old = current->setFocus(window(h));
  return current->isLive(old) ? old->handle() : nullptr;
}

HWND apiGetCapture() {
  WindowSystem* current = system();
  return current != nullptr && current->capture() != nullptr ? current->capture()->handle()
                                                             : nullptr;
}

HWND apiSetCapture(HWND h) {
  Window* w = window(h);
  if (w == nullptr) return nullptr;
  Window* old = system()->setCapture(w);
  return system()->isLive(old) ? old->handle() : nullptr;
}

void apiReleaseCapture() {
  if (WindowSystem* current = system()) current->releaseCapture();
}

BOOL apiGetCursorPos(POINT* p) {
  WindowSystem* current = system();
  if (current == nullptr || p == nullptr) return 0;
  *p = current->cursorScreenPos();
  return 1;
}

DWORD apiGetMessagePos() {
  WindowSystem* current = system();
  if (current == nullptr) return 0;
  const POINT p = current->cursorScreenPos();
  return static_cast<DWORD>(makeLParam(p.x, p.y));
}

// The back-end's key state when a window system runs, and the host's own table in any case.
short apiGetAsyncKeyState(int virtualKey) {
  WindowSystem* current = system();
  const bool held =
      isHostKeyHeld(virtualKey) || (current != nullptr && current->keyHeld(virtualKey));
  return held ? static_cast<short>(0x8000) : 0;
}

int apiMessageBox(HWND owner, const char* text, const char* caption, int style) {
  WindowSystem* current = system();
  if (current == nullptr) return 0;
  Window* w = current->find(owner);
  Window* top = w != nullptr ? current->topLevelOf(w) : nullptr;
  current->releaseCapture();
  return current->backend().messageBox(top != nullptr ? top->surface->native : nullptr, text,
                                       caption, style);
}

void apiMessageQueueFlush() {
  if (WindowSystem* current = system()) current->deliverPosted();
}

void apiMessageQueueClear(HWND h) {
  if (WindowSystem* current = system()) current->dropPosted(h);
}

CursorShape shapeOf(std::intptr_t id) {
  switch (id) {
    case IDC_IBEAM:
      return CursorShape::IBeam;
    case IDC_HAND:
      return CursorShape::Hand;
    case IDC_CROSS:
      return CursorShape::Cross;
    case IDC_SIZEWE:
      return CursorShape::SizeWE;
    case IDC_SIZENS:
      return CursorShape::SizeNS;
    case IDC_SIZEALL:
      return CursorShape::SizeAll;
    case IDC_WAIT:
      return CursorShape::Wait;
    default:
      return CursorShape::Arrow;
  }
}

// A cursor handle is the IDC_ number it was loaded by.
HCURSOR apiLoadCursor(std::intptr_t id) {
  return reinterpret_cast<HCURSOR>(id);  // NOLINT(performance-no-int-to-ptr)
}

HCURSOR lastCursor = reinterpret_cast<HCURSOR>(IDC_ARROW);

HCURSOR apiSetCursor(HCURSOR cursor) {
  const HCURSOR previous = lastCursor;
  lastCursor = cursor;
  if (WindowSystem* current = system())
    current->setCursor(shapeOf(reinterpret_cast<std::intptr_t>(cursor)));
  return previous;
}

HCURSOR apiGetCursor() {
  return lastCursor;
}

}  // namespace

std::vector<ApiEntry> messageFunctions() {
  return {entry<PlaskId::SendMessage>(apiSendMessage),
          entry<PlaskId::PostMessage>(apiPostMessage),
          entry<PlaskId::SetTimer>(apiSetTimer),
          entry<PlaskId::KillTimer>(apiKillTimer),
          entry<PlaskId::GetFocus>(apiGetFocus),
          entry<PlaskId::SetFocus>(apiSetFocus),
          entry<PlaskId::GetCapture>(apiGetCapture),
          entry<PlaskId::SetCapture>(apiSetCapture),
          entry<PlaskId::ReleaseCapture>(apiReleaseCapture),
          entry<PlaskId::GetCursorPos>(apiGetCursorPos),
          entry<PlaskId::GetMessagePos>(apiGetMessagePos),
          entry<PlaskId::GetAsyncKeyState>(apiGetAsyncKeyState),
          entry<PlaskId::MessageBox>(apiMessageBox),
          entry<PlaskId::PLASK_MessageQueue_Flush>(apiMessageQueueFlush),
          entry<PlaskId::PLASK_MessageQueue_Clear>(apiMessageQueueClear),
          entry<PlaskId::PLASK_LoadCursor>(apiLoadCursor),
          entry<PlaskId::PLASK_SetCursor>(apiSetCursor),
          entry<PlaskId::PLASK_GetCursor>(apiGetCursor)};
}

}  // namespace winsys::api
