// The window layer's message numbers, styles, notifications and flags beyond the basic ones of
// win32_types.h: the classic Win32 values, and the messages of the host's control classes.
#pragma once

#include "platform/win32_types.h"

struct SIZE {
  int cx;
  int cy;
};

struct HPEN__;
struct HBRUSH__;
using HPEN = HPEN__*;
using HBRUSH = HBRUSH__*;

// Window messages.
constexpr UINT WM_MOVE = 0x0003;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_ENABLE = 0x000A;
constexpr UINT WM_SETTEXT = 0x000C;
constexpr UINT WM_GETTEXT = 0x000D;
constexpr UINT WM_GETTEXTLENGTH = 0x000E;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_SHOWWINDOW = 0x0018;
constexpr UINT WM_SETFONT = 0x0030;
constexpr UINT WM_GETFONT = 0x0031;
constexpr UINT WM_NCDESTROY = 0x0082;
constexpr UINT WM_GETDLGCODE = 0x0087;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_RBUTTONDBLCLK = 0x0206;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_MBUTTONDOWN = 0x0207;
constexpr UINT WM_MBUTTONUP = 0x0208;
constexpr UINT WM_CAPTURECHANGED = 0x0215;
constexpr UINT WM_MOUSELEAVE = 0x02A3;

// Modifier bits of mouse messages' wParam.
constexpr UINT MK_LBUTTON = 0x1;
constexpr UINT MK_RBUTTON = 0x2;
constexpr UINT MK_SHIFT = 0x4;
constexpr UINT MK_CONTROL = 0x8;
constexpr UINT MK_MBUTTON = 0x10;

// Window styles.
constexpr UINT WS_TABSTOP = 0x00010000;
constexpr UINT WS_GROUP = 0x00020000;
constexpr UINT WS_VSCROLL = 0x00200000;
constexpr UINT WS_DISABLED = 0x08000000;
constexpr UINT WS_VISIBLE = 0x10000000;
constexpr UINT WS_CHILD = 0x40000000;
constexpr UINT WS_POPUP = 0x80000000;

constexpr int GWL_WNDPROC = -4;
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int DWL_MSGRESULT = 0;

// GetWindow relations, ShowWindow commands, SetWindowPos flags and insertion places.
constexpr int GW_HWNDFIRST = 0;
constexpr int GW_HWNDLAST = 1;
constexpr int GW_HWNDNEXT = 2;
constexpr int GW_HWNDPREV = 3;
constexpr int GW_CHILD = 5;
constexpr int SW_SHOWNA = 8;
constexpr int SW_RESTORE = 9;
constexpr UINT SWP_NOREDRAW = 0x8;
constexpr UINT SWP_SHOWWINDOW = 0x40;
constexpr UINT SWP_HIDEWINDOW = 0x80;
inline const HWND HWND_TOP = nullptr;
inline const HWND HWND_BOTTOM = reinterpret_cast<HWND>(1);

// Dialog codes and commands.
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;
constexpr int IDYES = 6;
constexpr int IDNO = 7;
constexpr LRESULT DLGC_WANTARROWS = 0x1;
constexpr LRESULT DLGC_WANTTAB = 0x2;
constexpr LRESULT DLGC_WANTALLKEYS = 0x4;
constexpr LRESULT DLGC_WANTCHARS = 0x80;

// Buttons.
constexpr int BS_PUSHBUTTON = 0x0;
constexpr int BS_DEFPUSHBUTTON = 0x1;
constexpr int BS_CHECKBOX = 0x2;
constexpr int BS_AUTOCHECKBOX = 0x3;
constexpr int BS_RADIOBUTTON = 0x4;
constexpr int BS_3STATE = 0x5;
constexpr int BS_AUTO3STATE = 0x6;
constexpr int BS_GROUPBOX = 0x7;
constexpr int BS_AUTORADIOBUTTON = 0x9;
constexpr int BS_OWNERDRAW = 0xB;
constexpr int BS_TYPEMASK = 0xF;
constexpr int BS_LEFTTEXT = 0x20;
constexpr UINT BM_GETCHECK = 0x00F0;
constexpr UINT BM_SETCHECK = 0x00F1;
constexpr UINT BM_GETSTATE = 0x00F2;
constexpr UINT BM_SETSTATE = 0x00F3;
constexpr UINT BM_CLICK = 0x00F5;
constexpr UINT BM_GETIMAGE = 0x00F6;
constexpr UINT BM_SETIMAGE = 0x00F7;
constexpr int BN_CLICKED = 0;
constexpr int BN_DBLCLK = 5;
constexpr int BN_SETFOCUS = 6;
constexpr int BN_KILLFOCUS = 7;
constexpr int BST_UNCHECKED = 0;
constexpr int BST_CHECKED = 1;
constexpr int BST_INDETERMINATE = 2;
constexpr int BST_PUSHED = 4;

// Static labels.
constexpr int SS_LEFT = 0x0;
constexpr int SS_CENTER = 0x1;
constexpr int SS_RIGHT = 0x2;
constexpr int SS_NOTIFY = 0x100;

// Edits.
constexpr int ES_LEFT = 0x0;
constexpr int ES_CENTER = 0x1;
constexpr int ES_RIGHT = 0x2;
constexpr int ES_AUTOHSCROLL = 0x80;
constexpr int ES_READONLY = 0x800;
constexpr int ES_WANTRETURN = 0x1000;
constexpr int ES_NUMBER = 0x2000;
constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_REPLACESEL = 0x00C2;
constexpr UINT EM_LIMITTEXT = 0x00C5;
constexpr int EN_SETFOCUS = 0x100;
constexpr int EN_KILLFOCUS = 0x200;
constexpr int EN_CHANGE = 0x300;
constexpr int EN_UPDATE = 0x400;

// Drop-down list combos.
constexpr int CBS_DROPDOWN = 0x2;
constexpr int CBS_DROPDOWNLIST = 0x3;
constexpr UINT CB_GETEDITSEL = 0x0140;
constexpr UINT CB_ADDSTRING = 0x0143;
constexpr UINT CB_DELETESTRING = 0x0144;
constexpr UINT CB_GETCOUNT = 0x0146;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_GETLBTEXT = 0x0148;
constexpr UINT CB_GETLBTEXTLEN = 0x0149;
constexpr UINT CB_INSERTSTRING = 0x014A;
constexpr UINT CB_RESETCONTENT = 0x014B;
constexpr UINT CB_FINDSTRING = 0x014C;
constexpr UINT CB_SELECTSTRING = 0x014D;
constexpr UINT CB_SETCURSEL = 0x014E;
constexpr UINT CB_SHOWDROPDOWN = 0x014F;
constexpr UINT CB_GETITEMDATA = 0x0150;
constexpr UINT CB_SETITEMDATA = 0x0151;
constexpr UINT CB_GETDROPPEDSTATE = 0x0157;
constexpr UINT CB_FINDSTRINGEXACT = 0x0158;
constexpr int CBN_SELCHANGE = 1;
constexpr int CBN_SETFOCUS = 3;
constexpr int CBN_KILLFOCUS = 4;
constexpr int CBN_DROPDOWN = 7;
constexpr int CBN_CLOSEUP = 8;
constexpr LRESULT CB_ERR = -1;

// Scroll notifications of WM_HSCROLL (low word of wParam).
constexpr int SB_LINEUP = 0;
constexpr int SB_LINEDOWN = 1;
constexpr int SB_THUMBPOSITION = 4;
constexpr int SB_THUMBTRACK = 5;
constexpr int SB_ENDSCROLL = 8;

// The host's control classes. "KESTELhfader" answers the trackbar messages (range in lParam as
// maximum << 16 | minimum); "KESTELknob" and "KESTELhfader" take WM_KESTEL_SETPROPERTY;
// "KESTELhorzvu" takes the two meter messages; "HotTrackButton" takes BM_SETIMAGE with
// kHotTrackImageKind and a PlaskButtonImage.
constexpr UINT TBM_GETPOS = 0x0400;
constexpr UINT TBM_SETTIC = 0x0404;
constexpr UINT TBM_SETPOS = 0x0405;
constexpr UINT TBM_SETRANGE = 0x0406;
constexpr UINT WM_KESTEL_KNOBSTYLE = 0x07EA;    // wParam: kKnobStyle* bits
constexpr UINT WM_KESTEL_VULEVELS = 0x07F3;     // lParam: const double[2], levels in dB
constexpr UINT WM_KESTEL_VUSCALE = 0x1EF4;      // wParam 0, lParam: top of the scale in dB
constexpr UINT WM_KESTEL_SETPROPERTY = 0x2B0F;  // wParam: kKestelProperty*
constexpr WPARAM kKestelPropertyLock =
    0;  // lParam: non-zero locks the control (drawn locked, no input)
constexpr WPARAM kKestelPropertyName = 1;     // lParam: const char*, drawn on the fader's left
constexpr WPARAM kKestelPropertyValue = 2;    // lParam: const char*, drawn on the fader's right
constexpr WPARAM kKnobStyleCentreMark = 0x1;  // a mark at the top shows the centre
constexpr WPARAM kKnobStyleEndless = 0x2;     // the pointer turns round without end stops
constexpr WPARAM kHotTrackImageKind = 0x8001;
// A knob's WM_COMMAND lParam: the step (0x8000 = none) and the end of a gesture.
constexpr LPARAM kKnobCentre = 0x8000;
constexpr LPARAM kKnobGestureEnd = 0x10000;

// GDI.
constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_NULL = 5;
constexpr int WHITE_BRUSH = 0;
constexpr int LTGRAY_BRUSH = 1;
constexpr int GRAY_BRUSH = 2;
constexpr int DKGRAY_BRUSH = 3;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;
constexpr int DEFAULT_GUI_FONT = 17;
constexpr int SRCCOPY = 0xCC0020;
constexpr UINT DT_TOP = 0x0;
constexpr UINT DT_BOTTOM = 0x8;
constexpr UINT DT_WORDBREAK = 0x10;
constexpr UINT DT_END_ELLIPSIS = 0x8000;
// System colours (COLORREF 0x00BBGGRR).
constexpr int COLOR_SCROLLBAR = 0;
constexpr int COLOR_BACKGROUND = 1;
constexpr int COLOR_ACTIVECAPTION = 2;
constexpr int COLOR_WINDOW = 5;
constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_HIGHLIGHTTEXT = 14;
constexpr int COLOR_3DFACE = 15;
constexpr int COLOR_BTNFACE = 15;
constexpr int COLOR_3DSHADOW = 16;
constexpr int COLOR_GRAYTEXT = 17;
constexpr int COLOR_BTNTEXT = 18;
constexpr int COLOR_3DHILIGHT = 20;
constexpr int COLOR_3DDKSHADOW = 21;
constexpr int COLOR_3DLIGHT = 22;
constexpr int COLOR_INFOTEXT = 23;
constexpr int COLOR_INFOBK = 24;
constexpr int kSystemColorCount = 25;

// Menus.
constexpr UINT MF_BYCOMMAND = 0x0;
constexpr UINT MF_STRING = 0x0;
constexpr UINT MF_ENABLED = 0x0;
constexpr UINT MF_UNCHECKED = 0x0;
constexpr UINT MF_GRAYED = 0x1;
constexpr UINT MF_DISABLED = 0x2;
constexpr UINT MF_CHECKED = 0x8;
constexpr UINT MF_POPUP = 0x10;
constexpr UINT MF_SEPARATOR = 0x800;
constexpr UINT MF_BYPOSITION = 0x400;
constexpr UINT TPM_LEFTALIGN = 0x0;
constexpr UINT TPM_RIGHTBUTTON = 0x2;
constexpr UINT TPM_CENTERALIGN = 0x4;
constexpr UINT TPM_RIGHTALIGN = 0x8;
constexpr UINT TPM_NONOTIFY = 0x80;
constexpr UINT TPM_RETURNCMD = 0x100;

// Message boxes.
constexpr int MB_OK = 0x0;
constexpr int MB_OKCANCEL = 0x1;
constexpr int MB_ABORTRETRYIGNORE = 0x2;
constexpr int MB_YESNOCANCEL = 0x3;
constexpr int MB_YESNO = 0x4;
constexpr int MB_RETRYCANCEL = 0x5;
constexpr int MB_TYPEMASK = 0xF;
constexpr int MB_ICONERROR = 0x10;
constexpr int MB_ICONQUESTION = 0x20;
constexpr int MB_ICONWARNING = 0x30;
constexpr int MB_ICONINFORMATION = 0x40;
constexpr int MB_DEFBUTTON2 = 0x100;
constexpr int MB_DEFBUTTON3 = 0x200;

// Virtual keys beyond win32_types.h.
constexpr int VK_LBUTTON = 0x01;
constexpr int VK_RBUTTON = 0x02;
constexpr int VK_MBUTTON = 0x04;
constexpr int VK_BACK = 0x08;
constexpr int VK_SPACE = 0x20;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_DELETE = 0x2E;
constexpr int VK_F4 = 0x73;

// System metrics.
constexpr int SM_CXSCREEN = 0;
constexpr int SM_CYSCREEN = 1;
constexpr int SM_CXVSCROLL = 2;
constexpr int SM_CYHSCROLL = 3;

// Cursors of PLASK_LoadCursor.
constexpr std::intptr_t IDC_IBEAM = 32513;
constexpr std::intptr_t IDC_WAIT = 32514;
constexpr std::intptr_t IDC_CROSS = 32515;
constexpr std::intptr_t IDC_SIZEALL = 32646;
constexpr std::intptr_t IDC_SIZEWE = 32644;
constexpr std::intptr_t IDC_SIZENS = 32645;
constexpr std::intptr_t IDC_HAND = 32649;

constexpr WPARAM makeWParam(int low, int high) {
  return (static_cast<WPARAM>(static_cast<WORD>(high)) << 16) | static_cast<WORD>(low);
}
constexpr LPARAM makeLParam(int low, int high) {
  return static_cast<LPARAM>(static_cast<std::int32_t>(
      (static_cast<std::uint32_t>(static_cast<WORD>(high)) << 16) | static_cast<WORD>(low)));
}
constexpr int lowWord(std::uintptr_t value) {
  return static_cast<WORD>(value & 0xFFFF);
}
constexpr int highWord(std::uintptr_t value) {
  return static_cast<WORD>((value >> 16) & 0xFFFF);
}
// Mouse coordinates of lParam are signed 16-bit.
constexpr int signedLowWord(std::uintptr_t value) {
  return static_cast<std::int16_t>(value & 0xFFFF);
}
constexpr int signedHighWord(std::uintptr_t value) {
  return static_cast<std::int16_t>((value >> 16) & 0xFFFF);
}
// COLORREF 0x00BBGGRR.
constexpr int rgb(int r, int g, int b) {
  return r | (g << 8) | (b << 16);
}
