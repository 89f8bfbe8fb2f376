#pragma once

#include "host/window/controls/control.h"
#include "host/window/controls/ui_font.h"

namespace winsys {

class Label final : public Control {
 public:
  explicit Label(Window& window);
  void paint(cairo_t* cr) override;

 private:
  CachedText text_;
};

}  // namespace winsys
