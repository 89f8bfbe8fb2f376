// Controls made from a control list or one by one (PLASK_Make*).
#include <algorithm>

#include "host/window/control_registry.h"
#include "host/window/controls/ui_font.h"
#include "host/window/dialogs/dialog_builder.h"

namespace winsys {

namespace {

HWND fromCreators(const ControlTemplate& control, HWND parent, const RECT& rect) {
  for (PlaskControlCreator creator : registeredControlCreators()) {
    const HWND made =
        creator(parent, control.id, control.className.c_str(), static_cast<int>(control.style),
                rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
    if (made != nullptr) return made;
  }
  return nullptr;
}

// Labels, check boxes and radio buttons grow to show their text when the builder sizes them.
RECT autoSized(WindowSystem& system, const ControlTemplate& control, HWND parent, RECT rect) {
  const bool checkable = control.className == "Button" &&
                         (control.style & BS_TYPEMASK) != BS_GROUPBOX &&
                         (control.style & BS_TYPEMASK) >= BS_CHECKBOX;
  if (control.className != "Static" && !checkable) return rect;
  const int scale256 = system.scale256Of(system.find(parent));
  const ShapedText text(uiFont(scale256), control.text);
  const int extra = checkable ? static_cast<int>((13 + 8) * scale256 / 256.0) : 0;
  rect.right = std::max<int>(rect.right, rect.left + static_cast<int>(text.widthPx()) + extra + 2);
  return rect;
}

}  // namespace

HWND makeControl(WindowSystem& system, const ControlTemplate& control) {
  const DialogBuilder& builder = system.dialogBuilder();
  if (system.find(builder.parent) == nullptr) return nullptr;
  RECT rect = templateRect(builder, control.x, control.y, control.width, control.height);
  if (builder.autoSize) rect = autoSized(system, control, builder.parent, rect);
  if (!control.builtin) {
    if (const HWND made = fromCreators(control, builder.parent, rect)) return made;
  }
  ControlSpec wanted{control.className, control.text, control.id,    control.style | WS_VISIBLE,
                     control.exStyle,   rect,         builder.parent};
  if (isHostControlClass(control.className)) return createHostControl(system, wanted);
  CreateParams params;
  params.className = control.className.c_str();
  params.text = control.text.c_str();
  params.style = wanted.style | WS_CHILD;
  params.exStyle = control.exStyle;
  params.rect = rect;
  params.parent = builder.parent;
  params.id = control.id;
  return system.create(params);
}

void generateDialogFromList(WindowSystem& system, const void* records, int count) {
  if (records == nullptr || count <= 0) return;
  const auto* list = static_cast<const PlaskControlRecord*>(records);
  for (int i = 0; i < count; ++i) makeControl(system, decodeControlRecord(list[i], nativeString));
}

}  // namespace winsys
