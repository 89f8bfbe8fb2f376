// The text of a single-line edit with its caret and selection, as byte offsets that always sit on
// UTF-8 character boundaries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace winsys {

class EditBuffer {
 public:
  const std::string& text() const { return text_; }
  std::size_t caret() const { return caret_; }
  std::size_t anchor() const { return anchor_; }
  std::size_t selectionStart() const { return caret_ < anchor_ ? caret_ : anchor_; }
  std::size_t selectionEnd() const { return caret_ < anchor_ ? anchor_ : caret_; }
  bool hasSelection() const { return caret_ != anchor_; }

  // Replaces everything; the caret goes to the start.
  void setText(std::string text);
  // EM_SETSEL: -1 as start removes the selection, an end of -1 (or past the text) is the end.
  void select(long start, long end);
  void selectAll() { select(0, -1); }
  // Moves the caret; with `extend` the anchor stays, making or changing a selection.
  void moveTo(std::size_t index, bool extend);
  void moveByCharacter(int direction, bool extend);
  void moveByWord(int direction, bool extend);
  // The word around the caret (for a double click).
  void selectWordAt(std::size_t index);

  // Typing: the selection is replaced; false when nothing changed (the limit was reached).
  bool replaceSelection(const std::string& insertion);
  // Backspace and Delete: the selection, else one character before / after the caret.
  bool eraseBackward();
  bool eraseForward();
  void setLimit(std::size_t bytes) { limit_ = bytes; }

  std::size_t previousBoundary(std::size_t index) const;
  std::size_t nextBoundary(std::size_t index) const;

 private:
  std::size_t snap(std::size_t index) const;
  bool isWordByte(std::size_t index) const;

  std::string text_;
  std::size_t caret_ = 0;
  std::size_t anchor_ = 0;
  std::size_t limit_ = 30000;
};

// UTF-8 of one code point.
std::string utf8Of(std::uint32_t codePoint);

}  // namespace winsys
