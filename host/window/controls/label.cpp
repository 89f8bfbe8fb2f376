// "Static": a line of text, left, centred or right, that lets the mouse through unless SS_NOTIFY.
#include "host/window/controls/label.h"

#include "host/window/controls/draw.h"
#include "host/window/controls/theme.h"

namespace winsys {

Label::Label(Window& window) : Control(window) {
  window.ignoresMouse = (window.style & SS_NOTIFY) == 0;
}

void Label::paint(cairo_t* cr) {
  const UiFont& font = uiFont(scale256());
  const int alignment = static_cast<int>(self().style & 0x3);
  draw::setColor(cr, enabled() ? theme::kText : theme::kTextDisabled);
  drawTextInBox(cr, font, text_.get(font, self().text), self().clientRect(),
                alignment == SS_CENTER  ? 0
                : alignment == SS_RIGHT ? 1
                                        : -1);
}

}  // namespace winsys
