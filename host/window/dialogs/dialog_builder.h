// Dialogs of a module's resources and the controls made from lists or one at a time, with the
// current parameters of PLASK_MakeSetCurParms. [UI thread]
#pragma once

#include "host/window/dialogs/control_records.h"
#include "platform/plask_api.h"

namespace winsys {

// PLASK_MakeSetCurParms's state. While a dialog resource builds its controls, the dialog's scale
// multiplies the factors and offsets, so templates come out at the display's size.
struct DialogBuilder {
  float xScale = 1.0f;
  float yScale = 1.0f;
  int xOffset = 0;
  int yOffset = 0;
  HWND parent = nullptr;
  bool autoSize = false;
  double templateScale = 1.0;
};

void makeSetCurParms(WindowSystem& system, float xScale, float yScale, int xOffset, int yOffset,
                     HWND parent, bool translate, bool autoSize);
// The pixel rectangle of a template rectangle under the current parameters.
RECT templateRect(const DialogBuilder& builder, double x, double y, double w, double h);

// Resource `resourceId` of the list (0: an empty child dialog without template). The dialog is
// created hidden; WM_INITDIALOG gets `param`, and a non-zero answer puts the focus on the first
// tab stop. Null for an unknown resource or a parent that is not a live window.
HWND createDialog(WindowSystem& system, PlaskDialogResource* resources, int resourceId, HWND parent,
                  DLGPROC procedure, LPARAM param);
LRESULT dialogWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// The controls of a list of this build's records, in the current parent.
void generateDialogFromList(WindowSystem& system, const void* records, int count);
// One control: the custom creators first (for classes that are not built-in), then the host's
// classes, else an empty window of that class. Shown.
HWND makeControl(WindowSystem& system, const ControlTemplate& control);

}  // namespace winsys
