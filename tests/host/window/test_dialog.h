// A small dialog with one control of each class the host draws, built from a control list as a
// plug-in's template builder does (factor 2 from template units to pixels at 100 %).
#pragma once

#include "tests/host/window/window_test_support.h"

enum TestControl : int {
  kName = 10,
  kEdit,
  kCombo,
  kGo,
  kLock,
  kRadioA,
  kRadioB,
  kGroup,
  kKnob,
  kFader,
  kMeter,
  kHot,
  kProbe,
  kUnknown,
};

inline const PlaskControlRecord kTestControls[] = {
    builtinRecord(kPlaskLabelClass, -1, "Name:", kName, {4, 5, 24, 8}),
    builtinRecord(kPlaskEditClass, 0, "", kEdit, {30, 3, 60, 12}, ES_AUTOHSCROLL | WS_TABSTOP),
    builtinRecord(kPlaskComboClass, 0, "", kCombo, {4, 18, 60, 60}, CBS_DROPDOWNLIST | WS_TABSTOP),
    builtinRecord(kPlaskButtonClass, 0, "Go", kGo, {70, 18, 28, 12}, WS_TABSTOP),
    customRecord("Lock", kLock, "Button", BS_AUTOCHECKBOX | WS_TABSTOP, {4, 34, 40, 10}),
    customRecord("A", kRadioA, "Button", BS_AUTORADIOBUTTON, {50, 34, 20, 10}),
    customRecord("B", kRadioB, "Button", BS_AUTORADIOBUTTON, {74, 34, 20, 10}),
    builtinRecord(kPlaskGroupClass, 0, "Group", kGroup, {2, 48, 100, 46}),
    customRecord(nullptr, kKnob, "KESTELknob", WS_TABSTOP, {6, 60, 14, 14}),
    customRecord(nullptr, kFader, "KESTELhfader", WS_TABSTOP, {24, 60, 74, 10}),
    customRecord(nullptr, kMeter, "KESTELhorzvu", WS_TABSTOP, {24, 74, 74, 4}),
    customRecord("M", kHot, "HotTrackButton", 0x4B, {6, 80, 8, 8}),
    customRecord(nullptr, kProbe, "ProbeView", WS_TABSTOP, {104, 4, 40, 40}),
    customRecord("?", kUnknown, "NoSuchClass", 0, {104, 50, 20, 10}),
};

inline void buildTestDialog(HWND parent, int flags) {
  auto& system = *winsys::WindowSystem::current();
  winsys::makeSetCurParms(system, 2.0f, 2.0f, 0, 0, parent, false, (flags & 8) == 0);
  winsys::generateDialogFromList(system, kTestControls, std::size(kTestControls));
}

inline PlaskDialogResource testDialogResource{77, "", 13, buildTestDialog, 300, 200, nullptr};
