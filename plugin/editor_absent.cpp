// The plug-in without an editor: every editor hook answers "nothing here".
#include "plugin/editor_link.h"

PlaskDialogResource* pluginDialogResources() {
  return nullptr;
}

DLGPROC editorDialogProcedure() {
  return nullptr;
}

PlaskControlCreator spaceViewControlCreator() {
  return nullptr;
}

void releaseSharedDrawingResources() {}

VstIntPtr handleInlineMessage(PannerPlugin& /*plugin*/, int /*message*/, VstIntPtr /*value*/,
                              void* /*ptr*/) {
  return 0;
}
