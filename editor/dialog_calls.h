// The window-layer calls the editor dialog makes on its items, each under a name that says what it
// does. [UI thread]
#pragma once

#include "plugin/window_layer.h"

inline HWND dialogItem(HWND dialog, int id) {
  return plaskCall<PlaskId::GetDlgItem>(dialog, id);
}

inline LRESULT sendToItem(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam) {
  return plaskCall<PlaskId::SendMessage>(dialogItem(dialog, id), message, wParam, lParam);
}

template <typename Pointer>
LPARAM pointerParam(Pointer* pointer) {
  return reinterpret_cast<LPARAM>(pointer);
}

inline void showItem(HWND dialog, int id, bool shown) {
  plaskCall<PlaskId::ShowWindow>(dialogItem(dialog, id), shown ? int{SW_SHOW} : int{SW_HIDE});
}

inline void enableItem(HWND dialog, int id, bool enabled) {
  plaskCall<PlaskId::EnableWindow>(dialogItem(dialog, id), BOOL{enabled ? 1 : 0});
}

inline void setItemText(HWND dialog, int id, const char* text) {
  plaskCall<PlaskId::SetDlgItemText>(dialog, id, text);
}

inline void checkItem(HWND dialog, int id, bool checked) {
  plaskCall<PlaskId::CheckDlgButton>(dialog, id, UINT(checked ? BST_CHECKED : BST_UNCHECKED));
}

inline void setFaderPosition(HWND dialog, int id, int position) {
  sendToItem(dialog, id, TBM_SETPOS, 1, position);
}

inline void setFaderTick(HWND dialog, int id, int position) {
  sendToItem(dialog, id, TBM_SETTIC, 0, position);
}

inline void setFaderText(HWND dialog, int id, WPARAM which, const char* text) {
  sendToItem(dialog, id, WM_KESTEL_SETPROPERTY, which, pointerParam(text));
}

inline void selectComboItem(HWND dialog, int id, int index) {
  sendToItem(dialog, id, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

inline void addComboItem(HWND dialog, int id, const char* text) {
  sendToItem(dialog, id, CB_ADDSTRING, 0, pointerParam(text));
}

// The item's window rectangle in the dialog's client coordinates.
inline RECT itemRect(HWND dialog, int id) {
  RECT r{};
  plaskCall<PlaskId::GetWindowRect>(dialogItem(dialog, id), &r);
  POINT corners[2] = {{r.left, r.top}, {r.right, r.bottom}};
  for (POINT& corner : corners) plaskCall<PlaskId::ScreenToClient>(dialog, &corner);
  return {corners[0].x, corners[0].y, corners[1].x, corners[1].y};
}

inline void placeItem(HWND dialog, int id, int x, int y, int width, int height) {
  plaskCall<PlaskId::SetWindowPos>(dialogItem(dialog, id), HWND{nullptr}, x, y, width, height,
                                   UINT{SWP_NOZORDER | SWP_NOACTIVATE});
}

inline void moveItem(HWND dialog, int id, int x, int y) {
  plaskCall<PlaskId::SetWindowPos>(dialogItem(dialog, id), HWND{nullptr}, x, y, 0, 0,
                                   UINT{SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE});
}

inline void resizeItem(HWND dialog, int id, int width, int height) {
  plaskCall<PlaskId::SetWindowPos>(dialogItem(dialog, id), HWND{nullptr}, 0, 0, width, height,
                                   UINT{SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE});
}
