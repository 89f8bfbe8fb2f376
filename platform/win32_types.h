// Win32-style types and constants of the host's window layer. The layer lends these to plug-ins on
// Linux; the values are the classic Win32 ones, the records are the layer's (32-bit int fields).
#pragma once

#include <cstddef>
#include <cstdint>

struct HWND__;
struct HDC__;
struct HFONT__;
struct HMENU__;
struct HINSTANCE__;
struct HGDIOBJ__;
struct HCURSOR__;

using HWND = HWND__*;
using HDC = HDC__*;
using HFONT = HFONT__*;
using HMENU = HMENU__*;
using HINSTANCE = HINSTANCE__*;
using HGDIOBJ = HGDIOBJ__*;
using HCURSOR = HCURSOR__*;

using BOOL = int;
using UINT = unsigned int;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;

using WNDPROC = LRESULT (*)(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
using DLGPROC = INT_PTR (*)(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
using TIMERPROC = void (*)(HWND hwnd, UINT msg, UINT_PTR id, DWORD time);

struct RECT {
  int left;
  int top;
  int right;
  int bottom;
};

struct POINT {
  int x;
  int y;
};

struct MINMAXINFO {
  POINT ptReserved;
  POINT ptMaxSize;
  POINT ptMaxPosition;
  POINT ptMinTrackSize;
  POINT ptMaxTrackSize;
};

struct LOGFONT {
  int lfHeight;
  int lfWidth;
  int lfEscapement;
  int lfOrientation;
  int lfWeight;
  char lfItalic;
  char lfUnderline;
  char lfStrikeOut;
  char lfCharSet;
  char lfOutPrecision;
  char lfClipPrecision;
  char lfQuality;
  char lfPitchAndFamily;
  char lfFaceName[32];
};

struct PAINTSTRUCT {
  HDC hdc;
  BOOL fErase;
  RECT rcPaint;
};

struct MSG {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
  DWORD time;
  POINT pt;
};

static_assert(sizeof(RECT) == 16);
static_assert(sizeof(MINMAXINFO) == 40);
static_assert(offsetof(MINMAXINFO, ptMinTrackSize) == 24);
static_assert(sizeof(LOGFONT) == 60);
static_assert(offsetof(LOGFONT, lfFaceName) == 28);

// Window messages.
enum : UINT {
  WM_CREATE = 0x0001,
  WM_DESTROY = 0x0002,
  WM_PAINT = 0x000F,
  WM_CLOSE = 0x0010,
  WM_SETCURSOR = 0x0020,
  WM_GETMINMAXINFO = 0x0024,
  WM_CONTEXTMENU = 0x007B,
  WM_KEYDOWN = 0x0100,
  WM_KEYUP = 0x0101,
  WM_CHAR = 0x0102,
  WM_INITDIALOG = 0x0110,
  WM_COMMAND = 0x0111,
  WM_TIMER = 0x0113,
  WM_HSCROLL = 0x0114,
  WM_VSCROLL = 0x0115,
  WM_MOUSEMOVE = 0x0200,
  WM_LBUTTONDOWN = 0x0201,
  WM_LBUTTONUP = 0x0202,
  WM_LBUTTONDBLCLK = 0x0203,
  WM_RBUTTONDOWN = 0x0204,
  WM_RBUTTONUP = 0x0205,
  WM_USER = 0x0400,
};

// Virtual keys read with GetAsyncKeyState (a negative result means held).
enum : int {
  VK_TAB = 0x09,
  VK_RETURN = 0x0D,
  VK_SHIFT = 0x10,
  VK_CONTROL = 0x11,
  VK_MENU = 0x12,
  VK_ESCAPE = 0x1B,
};

// Text drawing flags.
enum : UINT {
  DT_LEFT = 0x0,
  DT_CENTER = 0x1,
  DT_RIGHT = 0x2,
  DT_VCENTER = 0x4,
  DT_SINGLELINE = 0x20,
  DT_NOCLIP = 0x100,
  DT_CALCRECT = 0x400,
};

enum : int {
  GWL_ID = -12,
  GWL_USERDATA = -21,
  SW_HIDE = 0,
  SW_SHOWNORMAL = 1,
  SW_SHOW = 5,
};

enum : UINT {
  SWP_NOSIZE = 0x1,
  SWP_NOMOVE = 0x2,
  SWP_NOZORDER = 0x4,
  SWP_NOACTIVATE = 0x10,
};

constexpr std::intptr_t IDC_ARROW = 32512;
