// What the editor dialog does when the user operates its controls: the procedure hands each
// message here. Every edit of an automatable value is reported to the host. [UI thread]
#pragma once

#include "model/panner_plugin.h"
#include "platform/host_functions.h"
#include "platform/win32_types.h"

// The dialog's own timers besides the 50 ms refresh and the info label.
constexpr UINT_PTR kTrimTypedTimerId = 2;
constexpr UINT_PTR kInputCountTimerId = 3;
constexpr UINT_PTR kSpeakerCountTimerId = 4;
constexpr UINT_PTR kRenameWatchdogTimerId = 100;
constexpr UINT kTypedEditDelayMs = 500;  // after the last key
constexpr std::uint8_t typingBit(UINT_PTR typedTimer) {
  return static_cast<std::uint8_t>(1u << typedTimer);
}
constexpr UINT kRenameWatchdogMs = 100;

// ln(10) / 20: dB to the exponent of a linear factor.
constexpr double kNepersPerDb = 0.11512925464970228;

// WM_COMMAND.
void onDialogCommand(PannerPlugin& plugin, HWND dialog, WPARAM wParam, LPARAM lParam);
// WM_HSCROLL / WM_VSCROLL from a fader.
void onDialogFader(PannerPlugin& plugin, HWND dialog, WPARAM wParam, LPARAM lParam);
// Timers 2, 3 and 4: a typed centre trim or channel count, 500 ms after the last key.
void applyTypedEdit(PannerPlugin& plugin, HWND dialog, UINT_PTR timer);
// The counts before a change the editor makes, kept for the idle-time report to the host.
void markArrangementPending(PannerPlugin& plugin);
// The strips' mute, solo and reverse buttons; false when `id` is none of them.
bool onStripButton(PannerPlugin& plugin, int id);

// WM_LBUTTONDOWN and WM_LBUTTONDBLCLK in the name strips.
void onNamesClick(PannerPlugin& plugin, LPARAM lParam);
void onNamesDoubleClick(PannerPlugin& plugin, HWND dialog, LPARAM lParam);

// WM_EDITOR_BEGINRENAME, WM_EDITOR_ENDRENAME and timer 100.
void beginRename(PannerPlugin& plugin, HWND dialog, int channel);
void endRename(PannerPlugin& plugin, HWND dialog, bool commit);
void checkRenameFocus(HWND dialog);

// WM_CONTEXTMENU: the options menu at the click's screen position.
void showOptionsMenu(HWND dialog, LPARAM lParam);

// The controls the input lock disables, enabled or disabled as lockInputs says.
void applyInputLock(PannerPlugin& plugin);

// The host's keyboard hook while a rename field exists: 1 consumed, 0 or -1 (Control held) not.
int translateRenameKey(MSG* message, AcceleratorRegister* record);
