// Dialogs of a module's resource list: the window, the template's controls at the dialog's
// scale, WM_INITDIALOG, and the dialog procedure in front of the default one.
#include <cmath>

#include "host/window/control_registry.h"
#include "host/window/dialogs/dialog_builder.h"

namespace winsys {

namespace {

constexpr int kFlagChild = 1;

const PlaskDialogResource* findResource(const PlaskDialogResource* list, int resourceId) {
  for (; list != nullptr; list = list->next) {
    if (list->resourceId == resourceId) return list;
  }
  return nullptr;
}

int scaled(int pixels, int scale256) {
  return static_cast<int>(std::lround(pixels * scale256 / 256.0));
}

// The template builds its controls at the dialog's scale; the caller's parameters come back after.
void buildTemplate(WindowSystem& system, const PlaskDialogResource& resource, Window* dialog) {
  DialogBuilder& builder = system.dialogBuilder();
  const DialogBuilder saved = builder;
  builder = DialogBuilder{};
  builder.parent = dialog->handle();
  builder.templateScale = system.scale256Of(dialog) / 256.0;
  resource.createFunc(dialog->handle(), resource.windowFlags);
  builder = saved;
}

Window* firstTabStop(Window* dialog) {
  for (Window* child : dialog->children) {
    if ((child->style & WS_TABSTOP) != 0 && child->visible && child->enabled) return child;
  }
  return nullptr;
}

}  // namespace

HWND createDialog(WindowSystem& system, PlaskDialogResource* resources, int resourceId, HWND parent,
                  DLGPROC procedure, LPARAM param) {
  const PlaskDialogResource* resource = findResource(resources, resourceId);
  if (resource == nullptr && resourceId != 0) return nullptr;
  Window* parentWindow = system.find(parent);
  if (parent != nullptr && parentWindow == nullptr) return nullptr;
  const int flags = resource != nullptr ? resource->windowFlags : kFlagChild;
  const bool child = (flags & kFlagChild) != 0 && parentWindow != nullptr;
  const int scale256 = system.scale256Of(parentWindow);
  CreateParams params;
  params.className = "#32770";
  params.text = resource != nullptr && resource->title != nullptr ? resource->title : "";
  params.style = child ? WS_CHILD : WS_POPUP;
  params.rect = resource != nullptr ? sized(0, 0, scaled(resource->width, scale256),
                                            scaled(resource->height, scale256))
                                    : RECT{};
  params.parent = child ? parent : nullptr;
  params.proc = dialogWindowProc;
  params.kind = WindowKind::Dialog;
  const HWND handle = system.create(params);
  Window* dialog = system.find(handle);
  if (dialog == nullptr) return nullptr;
  dialog->dialogProc = procedure;
  if (!child && dialog->surface != nullptr) dialog->surface->scale256 = scale256;
  if (resource != nullptr && resource->createFunc != nullptr) {
    buildTemplate(system, *resource, dialog);
  }
  if (!system.isLive(dialog)) return nullptr;
  Window* first = firstTabStop(dialog);
  const LRESULT wantsFocus =
      system.send(dialog, WM_INITDIALOG,
                  first != nullptr ? reinterpret_cast<WPARAM>(first->handle()) : 0, param);
  if (!system.isLive(dialog)) return nullptr;
  if (wantsFocus != 0 && system.isLive(first)) system.setFocus(first);
  return handle;
}

LRESULT dialogWindowProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* dialog = reinterpret_cast<Window*>(handle);
  if (dialog->dialogProc != nullptr) {
    const INT_PTR answer = dialog->dialogProc(handle, message, wParam, lParam);
    if (answer != 0 || !dialog->system->isLive(dialog)) return answer;
  }
  return defaultWindowProc(handle, message, wParam, lParam);
}

void makeSetCurParms(WindowSystem& system, float xScale, float yScale, int xOffset, int yOffset,
                     HWND parent, bool /*translate*/, bool autoSize) {
  DialogBuilder& builder = system.dialogBuilder();
  builder.xScale = xScale;
  builder.yScale = yScale;
  builder.xOffset = xOffset;
  builder.yOffset = yOffset;
  builder.parent = parent;
  builder.autoSize = autoSize;
}

RECT templateRect(const DialogBuilder& builder, double x, double y, double w, double h) {
  const double sx = builder.xScale * builder.templateScale;
  const double sy = builder.yScale * builder.templateScale;
  const double ox = builder.xOffset * builder.templateScale;
  const double oy = builder.yOffset * builder.templateScale;
  auto edge = [](double units, double scale, double offset) {
    return static_cast<int>(std::lround(units * scale + offset));
  };
  return {edge(x, sx, ox), edge(y, sy, oy), edge(x + w, sx, ox), edge(y + h, sy, oy)};
}

}  // namespace winsys
