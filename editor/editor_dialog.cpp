// The editor dialog is not part of this build yet: the host gets no dialog resources and no
// procedure, so effEditOpen answers 0 while the views (inline view, space view control) work.
#include "plugin/editor_link.h"

PlaskDialogResource* pluginDialogResources() {
  return nullptr;
}

DLGPROC editorDialogProcedure() {
  return nullptr;
}
