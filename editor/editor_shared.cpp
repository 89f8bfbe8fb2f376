#include "editor/editor_shared.h"

#include "editor/dialog_handlers.h"
#include "editor/view/shared_drawing.h"
#include "plugin/editor_link.h"
#include "plugin/host_api.h"
#include "plugin/window_layer.h"

int updatingControls = 0;
ColumnOrigins columnOrigins{};
RenameState renameState{nullptr, nullptr, 0, {&translateRenameKey, true, nullptr}};
ButtonImages buttonImages{};

// [UI thread] Only the closing part: opening and committing a rename are the dialog's commands.
void cancelRenameOf(PannerPlugin& plugin) {
  if (renameState.renameEdit == nullptr || renameState.renameOwner != &plugin) return;
  if (hostApi.plugin_register != nullptr) {
    hostApi.plugin_register("-accelerator", &renameState.renameAccelerator);
  }
  plaskCall<PlaskId::DestroyWindow>(renameState.renameEdit);
  renameState.renameEdit = nullptr;
  renameState.renameOwner = nullptr;
}

DAUB_pixel stripFaceColor() {
  return pixelOfColorRef(plaskCall<PlaskId::GetSysColor>(int{COLOR_ACTIVECAPTION}));
}

void releaseSharedDrawingResources() {
  releaseViewDrawingResources();
  releaseButtonImages();
}
