// Dialogs, controls made on the fly, and the dialog-item helpers.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/window/api/api_support.h"
#include "host/window/controls/button.h"
#include "host/window/dialogs/dialog_builder.h"

namespace winsys::api {

namespace {

HWND apiCreateDialog(PlaskDialogResource* resources, int resourceId, HWND parent, DLGPROC proc,
                     LPARAM param) {
  WindowSystem* current = system();
  return current != nullptr ? createDialog(*current, resources, resourceId, parent, proc, param)
                            : nullptr;
}

BOOL apiEndDialog(HWND h, int result) {
  Window* w = window(h);
  if (w == nullptr || w->kind != WindowKind::Dialog) return 0;
  w->dialogResult = result;
  system()->show(w, false);
  return 1;
}

void apiMakeSetCurParms(float xScale, float yScale, int xOffset, int yOffset, HWND parent,
                        bool translate, bool autoSize) {
  if (WindowSystem* current = system()) {
    makeSetCurParms(*current, xScale, yScale, xOffset, yOffset, parent, translate, autoSize);
  }
}

void apiGenerateDialogFromList(const void* records, int count) {
  if (WindowSystem* current = system()) generateDialogFromList(*current, records, count);
}

HWND make(const char* className, const char* text, int id, int x, int y, int w, int h,
          LONG_PTR style, bool builtin = true) {
  WindowSystem* current = system();
  if (current == nullptr) return nullptr;
  ControlTemplate control;
  control.className = className;
  control.text = text != nullptr ? text : "";
  control.builtin = builtin;
  control.id = id;
  control.style = style;
  control.x = x;
  control.y = y;
  control.width = w;
  control.height = h;
  return makeControl(*current, control);
}

HWND apiMakeEditField(const char* text, int id, int x, int y, int w, int h, int style) {
  return make("Edit", text, id, x, y, w, h, style);
}

HWND apiMakeLabel(int alignment, const char* text, int id, int x, int y, int w, int h, int style) {
  const LONG_PTR align = alignment < 0    ? LONG_PTR{SS_LEFT}
                         : alignment == 0 ? LONG_PTR{SS_CENTER}
                                          : LONG_PTR{SS_RIGHT};
  return make("Static", text, id, x, y, w, h, (style & ~0x3) | align);
}

HWND apiMakeButton(int isDefault, const char* text, int id, int x, int y, int w, int h, int style) {
  return make("Button", text, id, x, y, w, h,
              (style & ~BS_TYPEMASK) | (isDefault != 0 ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON));
}

HWND apiMakeCombo(int id, int x, int y, int w, int h, int style) {
  return make("ComboBox", "", id, x, y, w, h, style);
}

HWND apiMakeGroupBox(const char* text, int id, int x, int y, int w, int h, int style) {
  return make("Button", text, id, x, y, w, h, (style & ~BS_TYPEMASK) | BS_GROUPBOX);
}

HWND apiMakeCheckBox(const char* text, int id, int x, int y, int w, int h, int style) {
  const LONG_PTR type = (style & BS_TYPEMASK) != 0 ? LONG_PTR{0} : LONG_PTR{BS_AUTOCHECKBOX};
  return make("Button", text, id, x, y, w, h, style | type);
}

HWND apiMakeControl(const char* text, int id, const char* className, int style, int x, int y, int w,
                    int h, int /*exStyle*/) {
  return className != nullptr ? make(className, text, id, x, y, w, h, style, false) : nullptr;
}

Button* buttonOf(HWND h) {
  Window* w = window(h);
  return w != nullptr ? dynamic_cast<Button*>(w->control.get()) : nullptr;
}

bool apiIsButton(HWND h) {
  const Button* button = buttonOf(h);
  return button != nullptr && !button->isGroupBox();
}

bool apiIsGroupBox(HWND h) {
  const Button* button = buttonOf(h);
  return button != nullptr && button->isGroupBox();
}

bool apiIsStaticText(HWND h) {
  Window* w = window(h);
  return w != nullptr && w->className == "Static";
}

Window* item(HWND dialog, int id) {
  Window* w = window(dialog);
  return w != nullptr ? system()->childById(w, id) : nullptr;
}

BOOL apiSetDlgItemText(HWND dialog, int id, const char* text) {
  Window* control = item(dialog, id);
  if (control == nullptr) return 0;
  system()->send(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text != nullptr ? text : ""));
  return 1;
}

BOOL apiGetDlgItemText(HWND dialog, int id, char* out, int size) {
  Window* control = item(dialog, id);
  if (out != nullptr && size > 0) out[0] = '\0';
  if (control == nullptr || out == nullptr || size <= 0) return 0;
  return static_cast<BOOL>(system()->send(control, WM_GETTEXT, static_cast<WPARAM>(size),
                                          reinterpret_cast<LPARAM>(out)));
}

BOOL apiSetDlgItemInt(HWND dialog, int id, UINT value, BOOL isSigned) {
  char text[24];
  if (isSigned != 0) {
    std::snprintf(text, sizeof text, "%d", static_cast<int>(value));
  } else {
    std::snprintf(text, sizeof text, "%u", value);
  }
  return apiSetDlgItemText(dialog, id, text);
}

// Win32: leading blanks and a sign (when signed) allowed; anything after the digits fails.
UINT apiGetDlgItemInt(HWND dialog, int id, BOOL* ok, BOOL isSigned) {
  if (ok != nullptr) *ok = 0;
  char text[64];
  if (apiGetDlgItemText(dialog, id, text, sizeof text) == 0) return 0;
  char* end = nullptr;
  const long long value = std::strtoll(text, &end, 10);
  const bool digitsOnly = end != text && *end == '\0';
  if (!digitsOnly || (isSigned == 0 && value < 0)) return 0;
  if (ok != nullptr) *ok = 1;
  return static_cast<UINT>(value);
}

BOOL apiCheckDlgButton(HWND dialog, int id, UINT check) {
  Window* control = item(dialog, id);
  if (control == nullptr) return 0;
  system()->send(control, BM_SETCHECK, check, 0);
  return 1;
}

UINT apiIsDlgButtonChecked(HWND dialog, int id) {
  Window* control = item(dialog, id);
  return control != nullptr ? static_cast<UINT>(system()->send(control, BM_GETCHECK, 0, 0)) : 0;
}

void apiSetClassName(HWND h, const char* name) {
  if (Window* w = window(h); w != nullptr && name != nullptr) w->className = name;
}

int apiGetScaling256() {
  WindowSystem* current = system();
  return current != nullptr ? current->defaultScale256() : 256;
}

}  // namespace

std::vector<ApiEntry> dialogFunctions() {
  return {entry<PlaskId::PLASK_CreateDialog>(apiCreateDialog),
          entry<PlaskId::EndDialog>(apiEndDialog),
          entry<PlaskId::PLASK_MakeSetCurParms>(apiMakeSetCurParms),
          entry<PlaskId::PLASK_GenerateDialogFromList>(apiGenerateDialogFromList),
          entry<PlaskId::PLASK_MakeEditField>(apiMakeEditField),
          entry<PlaskId::PLASK_MakeLabel>(apiMakeLabel),
          entry<PlaskId::PLASK_MakeButton>(apiMakeButton),
          entry<PlaskId::PLASK_MakeCombo>(apiMakeCombo),
          entry<PlaskId::PLASK_MakeGroupBox>(apiMakeGroupBox),
          entry<PlaskId::PLASK_MakeCheckBox>(apiMakeCheckBox),
          entry<PlaskId::PLASK_MakeControl>(apiMakeControl),
          entry<PlaskId::PLASK_IsButton>(apiIsButton),
          entry<PlaskId::PLASK_IsGroupBox>(apiIsGroupBox),
          entry<PlaskId::PLASK_IsStaticText>(apiIsStaticText),
          entry<PlaskId::SetDlgItemText>(apiSetDlgItemText),
          entry<PlaskId::GetDlgItemText>(apiGetDlgItemText),
          entry<PlaskId::SetDlgItemInt>(apiSetDlgItemInt),
          entry<PlaskId::GetDlgItemInt>(apiGetDlgItemInt),
          entry<PlaskId::CheckDlgButton>(apiCheckDlgButton),
          entry<PlaskId::IsDlgButtonChecked>(apiIsDlgButtonChecked),
          entry<PlaskId::PLASK_SetClassName>(apiSetClassName),
          entry<PlaskId::PLASK_GetScaling256>(apiGetScaling256)};
}

}  // namespace winsys::api
