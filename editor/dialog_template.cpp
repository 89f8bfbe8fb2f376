// Dialog resource 101 and its template: the control list as records of the plug-in's width,
// handed to the window layer, which builds the controls at the dialog's scale.
#include "editor/editor_dialog.h"
#include "plugin/editor_link.h"
#include "plugin/window_layer.h"

namespace {

constexpr int kEditorResourceId = 101;
constexpr float kTemplateScale = 1.9f;  // pixels per template unit at 100 %
constexpr int kFlagNoAutoSize = 8;
// Child, flipped coordinates, no automatic sizing.
constexpr int kEditorWindowFlags = 1 | 4 | kFlagNoAutoSize;
constexpr int kEditorWidth = 851;  // 448 x 430 template units
constexpr int kEditorHeight = 817;

std::intptr_t word(const char* text) {
  return reinterpret_cast<std::intptr_t>(text);
}

// Built-in classes are named in the first field; custom ones carry their text there instead.
PlaskControlRecord recordOf(const EditorControl& c) {
  const TemplateRect& r = c.rect;
  const auto style = static_cast<std::intptr_t>(c.style);
  if (isBuiltinClass(c.cls)) {
    const int alignment = c.cls == ControlClass::Label ? c.alignment : 0;
    return {word(classNameOf(c.cls)), alignment, word(c.text), c.id, r.x, r.y, r.w, r.h, style};
  }
  return {word(c.text), c.id, word(classNameOf(c.cls)), style, r.x, r.y, r.w, r.h, 0};
}

std::array<PlaskControlRecord, kEditorControlCount> buildRecords() {
  std::array<PlaskControlRecord, kEditorControlCount> records{};
  for (std::size_t i = 0; i < records.size(); ++i) records[i] = recordOf(kEditorControls[i]);
  return records;
}

// Made when the plug-in is loaded, before any dialog can ask for them.
const std::array<PlaskControlRecord, kEditorControlCount> templateRecords = buildRecords();

// [UI thread] Called by the window layer while it creates the dialog.
void buildEditorTemplate(HWND parent, int flags) {
  const bool autoSize = (flags & kFlagNoAutoSize) == 0;
  plaskCall<PlaskId::PLASK_MakeSetCurParms>(kTemplateScale, kTemplateScale, 0, 0, parent, false,
                                            autoSize);
  plaskCall<PlaskId::PLASK_GenerateDialogFromList>(static_cast<const void*>(templateRecords.data()),
                                                   kEditorControlCount);
}

// The module's resource list: this one record, registered at load.
PlaskDialogResource editorDialogResource{
    kEditorResourceId, "",     kEditorWindowFlags, &buildEditorTemplate, kEditorWidth,
    kEditorHeight,     nullptr};

}  // namespace

const PlaskControlRecord* editorTemplateRecords() {
  return templateRecords.data();
}

PlaskDialogResource* pluginDialogResources() {
  return &editorDialogResource;
}
