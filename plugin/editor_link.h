// What the editor library gives the plug-in shell. Without the editor (the `noeditor` build) every
// hook answers "nothing": no dialog, no control creator, inline messages unanswered.
#pragma once

#include "model/panner_plugin.h"
#include "platform/plask_api.h"

// The module's dialog resource list handed to PLASK_CreateDialog; null when there is none.
PlaskDialogResource* pluginDialogResources();

// The editor dialog's procedure (resource 101); null without an editor.
DLGPROC editorDialogProcedure();

// The creator of the SpaceView control class; null without an editor.
PlaskControlCreator spaceViewControlCreator();

// [UI thread, last instance closed] Deletes the fonts and bitmaps the editors share.
void releaseSharedDrawingResources();

// [UI thread] One message of the host's inline view (effVendorSpecific index 16).
VstIntPtr handleInlineMessage(PannerPlugin& plugin, int message, VstIntPtr value, void* ptr);
