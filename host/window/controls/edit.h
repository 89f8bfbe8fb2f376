// "Edit": a single-line edit field with caret, selection by mouse and keys, the editing keys
// (no clipboard), EN_CHANGE on every change of its text, horizontal scrolling to the caret.
#pragma once

#include "host/window/controls/control.h"
#include "host/window/controls/edit_buffer.h"
#include "host/window/controls/ui_font.h"

namespace winsys {

class Edit final : public Control {
 public:
  explicit Edit(Window& window);
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;

  const EditBuffer& buffer() const { return buffer_; }

 private:
  LRESULT keyDown(WPARAM key);
  LRESULT character(WPARAM codePoint);
  LRESULT mouseDown(LPARAM lParam, bool doubleClick);
  LRESULT getSelection(WPARAM startOut, LPARAM endOut) const;
  void changed();
  void caretMoved();
  bool readOnly() const { return (self().style & ES_READONLY) != 0; }
  std::size_t indexAtX(int x);
  // Left edge of the text in client pixels, after alignment and scrolling.
  double textLeft(const ShapedText& text) const;
  void scrollToCaret(const ShapedText& text);

  EditBuffer buffer_;
  CachedText shaped_;
  double scrollPx_ = 0;
};

}  // namespace winsys
