// The host's Win32-style window layer as the plug-in sees it: one slot per name of the import list,
// bound by name through PLASK_dllMain. PlaskSignature<id> gives the C signature of the functions
// the system calls; the other entries keep the generic type and are only bound.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/plask_function_list.h"
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
// Drawing contexts.
PLASK_SIGNATURE(BitBlt, void (*)(HDC, int, int, int, int, HDC, int, int, int))
PLASK_SIGNATURE(CreateFontIndirect, HFONT (*)(const LOGFONT*))
PLASK_SIGNATURE(DeleteObject, void (*)(HGDIOBJ))
PLASK_SIGNATURE(GetSysColor, int (*)(int))
// Menus.
PLASK_SIGNATURE(CheckMenuItem, BOOL (*)(HMENU, int, int))
PLASK_SIGNATURE(CreatePopupMenu, HMENU (*)())
PLASK_SIGNATURE(DestroyMenu, void (*)(HMENU))
PLASK_SIGNATURE(TrackPopupMenu, int (*)(HMENU, int, int, int, int, HWND, const RECT*))
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
