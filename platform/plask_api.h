// The host's Win32-style window layer as the plug-in sees it: one slot per name of the import list,
// bound by name through PLASK_dllMain. PlaskSignature<id> gives the C signature of the functions
// the system calls; the other entries keep the generic type and are only bound.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/plask_function_list.h"
#include "platform/win32_controls.h"
#include "platform/win32_types.h"

enum class PlaskId : int {
#define PLASK_ENUM_ENTRY(name) name,
  PLASK_FUNCTION_LIST(PLASK_ENUM_ENTRY)
#undef PLASK_ENUM_ENTRY
      Count
};
static_assert(static_cast<int>(PlaskId::Count) == kPlaskFunctionCount);

// A slot holds any function; it is cast to its signature at the call.
using PlaskGenericFn = void (*)();

// Resolves a window-layer name to the host's function, or null. Passed to PLASK_dllMain.
using PlaskGetter = void* (*)(const char* name);

// One dialog template of a module: a record pushed on the module's list of resources.
struct PlaskDialogResource {
  int resourceId;
  const char* title;
  int windowFlags;  // 1 child, 4 flipped coordinates, 8 no automatic sizing
  void (*createFunc)(HWND parent, int flags);
  int width;
  int height;
  PlaskDialogResource* next;
};

// Makes a window for a custom control class of a dialog template, or returns null when the class
// is not the creator's.
using PlaskControlCreator = HWND (*)(HWND parent, int id, const char* className, int style, int x,
                                     int y, int w, int h);

template <PlaskId>
struct PlaskSignature {
  using Type = PlaskGenericFn;
};

#define PLASK_SIGNATURE(name, ...)       \
  template <>                            \
  struct PlaskSignature<PlaskId::name> { \
    using Type = __VA_ARGS__;            \
  };

// clang-format off
// Windows and messages.
PLASK_SIGNATURE(BeginPaint, HDC (*)(HWND, PAINTSTRUCT*))
PLASK_SIGNATURE(ClientToScreen, BOOL (*)(HWND, POINT*))
PLASK_SIGNATURE(DefWindowProc, LRESULT (*)(HWND, UINT, WPARAM, LPARAM))
PLASK_SIGNATURE(DestroyWindow, BOOL (*)(HWND))
PLASK_SIGNATURE(EnableWindow, BOOL (*)(HWND, BOOL))
PLASK_SIGNATURE(EndPaint, BOOL (*)(HWND, PAINTSTRUCT*))
PLASK_SIGNATURE(GetCapture, HWND (*)())
PLASK_SIGNATURE(GetClientRect, BOOL (*)(HWND, RECT*))
PLASK_SIGNATURE(GetDlgItem, HWND (*)(HWND, int))
PLASK_SIGNATURE(GetDlgItemInt, UINT (*)(HWND, int, BOOL*, BOOL))
PLASK_SIGNATURE(GetDlgItemText, BOOL (*)(HWND, int, char*, int))
PLASK_SIGNATURE(GetFocus, HWND (*)())
PLASK_SIGNATURE(GetParent, HWND (*)(HWND))
PLASK_SIGNATURE(GetWindowLong, LONG_PTR (*)(HWND, int))
PLASK_SIGNATURE(GetWindowRect, BOOL (*)(HWND, RECT*))
PLASK_SIGNATURE(InvalidateRect, BOOL (*)(HWND, const RECT*, BOOL))
PLASK_SIGNATURE(IsChild, BOOL (*)(HWND, HWND))
PLASK_SIGNATURE(IsDlgButtonChecked, UINT (*)(HWND, int))
PLASK_SIGNATURE(CheckDlgButton, BOOL (*)(HWND, int, UINT))
PLASK_SIGNATURE(IsWindow, BOOL (*)(HWND))
PLASK_SIGNATURE(KillTimer, BOOL (*)(HWND, UINT_PTR))
PLASK_SIGNATURE(MessageBox, int (*)(HWND, const char*, const char*, int))
PLASK_SIGNATURE(PostMessage, BOOL (*)(HWND, UINT, WPARAM, LPARAM))
PLASK_SIGNATURE(ReleaseCapture, void (*)())
PLASK_SIGNATURE(ScreenToClient, BOOL (*)(HWND, POINT*))
PLASK_SIGNATURE(SendMessage, LRESULT (*)(HWND, UINT, WPARAM, LPARAM))
PLASK_SIGNATURE(SetCapture, HWND (*)(HWND))
PLASK_SIGNATURE(SetDlgItemInt, BOOL (*)(HWND, int, UINT, BOOL))
PLASK_SIGNATURE(SetDlgItemText, BOOL (*)(HWND, int, const char*))
PLASK_SIGNATURE(SetFocus, HWND (*)(HWND))
PLASK_SIGNATURE(SetTimer, UINT_PTR (*)(HWND, UINT_PTR, UINT, TIMERPROC))
PLASK_SIGNATURE(SetWindowLong, LONG_PTR (*)(HWND, int, LONG_PTR))
PLASK_SIGNATURE(SetWindowPos, BOOL (*)(HWND, HWND, int, int, int, int, UINT))
PLASK_SIGNATURE(ShowWindow, BOOL (*)(HWND, int))
PLASK_SIGNATURE(GetAsyncKeyState, short (*)(int))
PLASK_SIGNATURE(EndDialog, BOOL (*)(HWND, int))
PLASK_SIGNATURE(EnumChildWindows, BOOL (*)(HWND, BOOL (*)(HWND, LPARAM), LPARAM))
PLASK_SIGNATURE(FindWindowEx, HWND (*)(HWND, HWND, const char*, const char*))
PLASK_SIGNATURE(GetClassName, int (*)(HWND, char*, int))
PLASK_SIGNATURE(GetCursorPos, BOOL (*)(POINT*))
PLASK_SIGNATURE(GetForegroundWindow, HWND (*)())
PLASK_SIGNATURE(GetMessagePos, DWORD (*)())
PLASK_SIGNATURE(GetProp, void* (*)(HWND, const char*))
PLASK_SIGNATURE(GetWindow, HWND (*)(HWND, int))
PLASK_SIGNATURE(GetWindowContentViewRect, void (*)(HWND, RECT*))
PLASK_SIGNATURE(GetWindowTextLength, int (*)(HWND))
PLASK_SIGNATURE(IsWindowEnabled, BOOL (*)(HWND))
PLASK_SIGNATURE(IsWindowVisible, BOOL (*)(HWND))
PLASK_SIGNATURE(RemoveProp, void* (*)(HWND, const char*))
PLASK_SIGNATURE(SetForegroundWindow, void (*)(HWND))
PLASK_SIGNATURE(SetParent, HWND (*)(HWND, HWND))
PLASK_SIGNATURE(SetProp, BOOL (*)(HWND, const char*, void*))
PLASK_SIGNATURE(UpdateWindow, void (*)(HWND))
PLASK_SIGNATURE(WindowFromPoint, HWND (*)(POINT))
PLASK_SIGNATURE(GetSystemMetrics, int (*)(int))
// Drawing contexts.
PLASK_SIGNATURE(BitBlt, void (*)(HDC, int, int, int, int, HDC, int, int, int))
PLASK_SIGNATURE(CreateFontIndirect, HFONT (*)(const LOGFONT*))
PLASK_SIGNATURE(DeleteObject, void (*)(HGDIOBJ))
PLASK_SIGNATURE(GetSysColor, int (*)(int))
PLASK_SIGNATURE(CreatePen, HPEN (*)(int, int, int))
PLASK_SIGNATURE(CreatePenAlpha, HPEN (*)(int, int, int, float))
PLASK_SIGNATURE(CreateSolidBrush, HBRUSH (*)(int))
PLASK_SIGNATURE(CreateSolidBrushAlpha, HBRUSH (*)(int, float))
PLASK_SIGNATURE(Ellipse, void (*)(HDC, int, int, int, int))
PLASK_SIGNATURE(GetDC, HDC (*)(HWND))
PLASK_SIGNATURE(GetStockObject, HGDIOBJ (*)(int))
PLASK_SIGNATURE(GetTextColor, int (*)(HDC))
PLASK_SIGNATURE(GetWindowDC, HDC (*)(HWND))
PLASK_SIGNATURE(LineTo, void (*)(HDC, int, int))
PLASK_SIGNATURE(MoveToEx, void (*)(HDC, int, int, POINT*))
PLASK_SIGNATURE(Rectangle, void (*)(HDC, int, int, int, int))
PLASK_SIGNATURE(ReleaseDC, void (*)(HWND, HDC))
PLASK_SIGNATURE(RoundRect, void (*)(HDC, int, int, int, int, int, int))
PLASK_SIGNATURE(SelectObject, HGDIOBJ (*)(HDC, HGDIOBJ))
PLASK_SIGNATURE(SetBkColor, int (*)(HDC, int))
PLASK_SIGNATURE(SetBkMode, int (*)(HDC, int))
PLASK_SIGNATURE(SetPixel, void (*)(HDC, int, int, int))
PLASK_SIGNATURE(SetTextColor, int (*)(HDC, int))
PLASK_SIGNATURE(StretchBlt, void (*)(HDC, int, int, int, int, HDC, int, int, int, int, int))
// Menus.
PLASK_SIGNATURE(CheckMenuItem, BOOL (*)(HMENU, int, int))
PLASK_SIGNATURE(CreatePopupMenu, HMENU (*)())
PLASK_SIGNATURE(DestroyMenu, void (*)(HMENU))
PLASK_SIGNATURE(TrackPopupMenu, int (*)(HMENU, int, int, int, int, HWND, const RECT*))
PLASK_SIGNATURE(CreatePopupMenuEx, HMENU (*)(const char*))
PLASK_SIGNATURE(DeleteMenu, BOOL (*)(HMENU, int, int))
PLASK_SIGNATURE(EnableMenuItem, BOOL (*)(HMENU, int, int))
PLASK_SIGNATURE(GetMenuItemCount, int (*)(HMENU))
PLASK_SIGNATURE(GetMenuItemID, int (*)(HMENU, int))
PLASK_SIGNATURE(GetSubMenu, HMENU (*)(HMENU, int))
PLASK_SIGNATURE(AddMenuItem, void (*)(HMENU, const char*, int))
PLASK_SIGNATURE(PLASK_InsertMenu, void (*)(HMENU, int, unsigned int, UINT_PTR, const char*))
PLASK_SIGNATURE(PLASK_Menu_AddMenuItem, int (*)(HMENU, const char*, int, unsigned int))
// Files, utilities.
PLASK_SIGNATURE(GetModuleFileName, DWORD (*)(HINSTANCE, char*, DWORD))
PLASK_SIGNATURE(lstrcpyn, char* (*)(char*, const char*, int))
PLASK_SIGNATURE(MulDiv, int (*)(int, int, int))
PLASK_SIGNATURE(GetTickCount, DWORD (*)())
PLASK_SIGNATURE(Sleep, void (*)(DWORD))
PLASK_SIGNATURE(WinIntersectRect, BOOL (*)(RECT*, const RECT*, const RECT*))
PLASK_SIGNATURE(WinOffsetRect, void (*)(RECT*, int, int))
PLASK_SIGNATURE(WinSetRect, void (*)(RECT*, int, int, int, int))
PLASK_SIGNATURE(WinUnionRect, void (*)(RECT*, const RECT*, const RECT*))
// Profile files: (section, key, ..., file). Win32 semantics: a null key lists or deletes a whole
// section, a null value deletes a key; structs are stored as hex with a trailing checksum byte.
PLASK_SIGNATURE(GetPrivateProfileInt, UINT (*)(const char*, const char*, int, const char*))
PLASK_SIGNATURE(GetPrivateProfileString,
                DWORD (*)(const char*, const char*, const char*, char*, DWORD, const char*))
PLASK_SIGNATURE(GetPrivateProfileSection, DWORD (*)(const char*, char*, DWORD, const char*))
PLASK_SIGNATURE(GetPrivateProfileStruct,
                BOOL (*)(const char*, const char*, void*, UINT, const char*))
PLASK_SIGNATURE(WritePrivateProfileString,
                BOOL (*)(const char*, const char*, const char*, const char*))
PLASK_SIGNATURE(WritePrivateProfileSection, BOOL (*)(const char*, const char*, const char*))
PLASK_SIGNATURE(WritePrivateProfileStruct,
                BOOL (*)(const char*, const char*, const void*, UINT, const char*))
// The layer's own functions.
PLASK_SIGNATURE(PLASK_CreateDialog, HWND (*)(PlaskDialogResource*, int, HWND, DLGPROC, LPARAM))
PLASK_SIGNATURE(PLASK_GenerateDialogFromList, void (*)(const void*, int))
PLASK_SIGNATURE(PLASK_LoadCursor, HCURSOR (*)(std::intptr_t))
PLASK_SIGNATURE(PLASK_MakeEditField, HWND (*)(const char*, int, int, int, int, int, int))
PLASK_SIGNATURE(PLASK_MakeSetCurParms, void (*)(float, float, int, int, HWND, bool, bool))
PLASK_SIGNATURE(PLASK_RegisterCustomControlCreator, void (*)(PlaskControlCreator))
PLASK_SIGNATURE(PLASK_SetCursor, HCURSOR (*)(HCURSOR))
PLASK_SIGNATURE(PLASK_UnregisterCustomControlCreator, void (*)(PlaskControlCreator))
// (isDefault, text, id, x, y, w, h, style); (alignment -1 left 0 centred 1 right, text, id, ...)
PLASK_SIGNATURE(PLASK_MakeButton, HWND (*)(int, const char*, int, int, int, int, int, int))
PLASK_SIGNATURE(PLASK_MakeLabel, HWND (*)(int, const char*, int, int, int, int, int, int))
PLASK_SIGNATURE(PLASK_MakeCombo, HWND (*)(int, int, int, int, int, int))
PLASK_SIGNATURE(PLASK_MakeGroupBox, HWND (*)(const char*, int, int, int, int, int, int))
PLASK_SIGNATURE(PLASK_MakeCheckBox, HWND (*)(const char*, int, int, int, int, int, int))
// (text, id, class name, style, x, y, w, h, extended style)
PLASK_SIGNATURE(PLASK_MakeControl,
                HWND (*)(const char*, int, const char*, int, int, int, int, int, int))
PLASK_SIGNATURE(PLASK_IsButton, bool (*)(HWND))
PLASK_SIGNATURE(PLASK_IsStaticText, bool (*)(HWND))
PLASK_SIGNATURE(PLASK_IsGroupBox, bool (*)(HWND))
PLASK_SIGNATURE(PLASK_GetCursor, HCURSOR (*)())
PLASK_SIGNATURE(PLASK_FillRect, void (*)(HDC, const RECT*, HBRUSH))
PLASK_SIGNATURE(PLASK_DrawText, int (*)(HDC, const char*, int, RECT*, int))
PLASK_SIGNATURE(PLASK_DrawFocusRect, void (*)(HDC, const RECT*))
PLASK_SIGNATURE(PLASK_Polygon, void (*)(HDC, const POINT*, int))
PLASK_SIGNATURE(PLASK_FillDialogBackground, void (*)(HDC, const RECT*, int))
PLASK_SIGNATURE(PLASK_MessageQueue_Flush, void (*)())
PLASK_SIGNATURE(PLASK_MessageQueue_Clear, void (*)(HWND))
PLASK_SIGNATURE(PLASK_SetClassName, void (*)(HWND, const char*))
PLASK_SIGNATURE(PLASK_GetScaling256, int (*)())
// clang-format on

#undef PLASK_SIGNATURE

template <PlaskId Id>
using PlaskFn = typename PlaskSignature<Id>::Type;

// In import order; distinct, since each is also a PlaskId.
constexpr const char* kPlaskNames[kPlaskFunctionCount] = {
#define PLASK_NAME_ENTRY(name) #name,
    PLASK_FUNCTION_LIST(PLASK_NAME_ENTRY)
#undef PLASK_NAME_ENTRY
};
static_assert(std::string_view(kPlaskNames[0]) == "BeginPaint" &&
              std::string_view(kPlaskNames[static_cast<int>(PlaskId::GetAsyncKeyState)]) ==
                  "GetAsyncKeyState" &&
              std::string_view(kPlaskNames[kPlaskFunctionCount - 1]) == "PLASK_initargs");

constexpr int countPlaskPrefixed() {
  int count = 0;
  for (const char* name : kPlaskNames) count += std::string_view(name).starts_with("PLASK_");
  return count;
}
static_assert(kPlaskFunctionCount == 335 && countPlaskPrefixed() == 94);
