#include "host/window/controls/edit_buffer.h"

#include <algorithm>
#include <cctype>

namespace winsys {

namespace {

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

std::string utf8Of(std::uint32_t point) {
  std::string out;
  if (point < 0x80) {
    out += static_cast<char>(point);
  } else if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    out += static_cast<char>(0xE0 | (point >> 12));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (point >> 18));
    out += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  }
  return out;
}

void EditBuffer::setText(std::string text) {
  text_ = std::move(text);
  caret_ = anchor_ = 0;
}

std::size_t EditBuffer::snap(std::size_t index) const {
  index = std::min(index, text_.size());
  while (index > 0 && index < text_.size() && isContinuation(text_[index])) --index;
  return index;
}

std::size_t EditBuffer::previousBoundary(std::size_t index) const {
  if (index == 0) return 0;
  return snap(index - 1);
}

std::size_t EditBuffer::nextBoundary(std::size_t index) const {
  if (index >= text_.size()) return text_.size();
  ++index;
  while (index < text_.size() && isContinuation(text_[index])) ++index;
  return index;
}

void EditBuffer::select(long start, long end) {
  if (start < 0) {
    anchor_ = caret_;
    return;
  }
  const auto size = static_cast<long>(text_.size());
  const long to = end < 0 || end > size ? size : end;
  anchor_ = snap(static_cast<std::size_t>(std::min(start, size)));
  caret_ = snap(static_cast<std::size_t>(to));
}

void EditBuffer::moveTo(std::size_t index, bool extend) {
  caret_ = snap(index);
  if (!extend) anchor_ = caret_;
}

void EditBuffer::moveByCharacter(int direction, bool extend) {
  if (!extend && hasSelection()) {
    moveTo(direction < 0 ? selectionStart() : selectionEnd(), false);
    return;
  }
  moveTo(direction < 0 ? previousBoundary(caret_) : nextBoundary(caret_), extend);
}

bool EditBuffer::isWordByte(std::size_t index) const {
  const auto c = static_cast<unsigned char>(text_[index]);
  return c >= 0x80 || std::isalnum(c) != 0 || c == '_';
}

void EditBuffer::moveByWord(int direction, bool extend) {
  std::size_t i = caret_;
  if (direction < 0) {
    while (i > 0 && !isWordByte(i - 1)) --i;
    while (i > 0 && isWordByte(i - 1)) --i;
  } else {
    while (i < text_.size() && isWordByte(i)) ++i;
    while (i < text_.size() && !isWordByte(i)) ++i;
  }
  moveTo(i, extend);
}

void EditBuffer::selectWordAt(std::size_t index) {
  std::size_t start = snap(index), end = start;
  while (start > 0 && isWordByte(start - 1)) --start;
  while (end < text_.size() && isWordByte(end)) ++end;
  anchor_ = start;
  caret_ = end;
}

bool EditBuffer::replaceSelection(const std::string& insertion) {
  const std::size_t start = selectionStart(), end = selectionEnd();
  const std::size_t room = limit_ - std::min(limit_, text_.size() - (end - start));
  std::string kept = insertion.substr(0, std::min(room, insertion.size()));
  while (!kept.empty() && kept.size() < insertion.size() &&
         isContinuation(insertion[kept.size()])) {
    kept.pop_back();  // never cut a character in two
  }
  if (kept.empty() && start == end) return false;
  text_.replace(start, end - start, kept);
  caret_ = anchor_ = start + kept.size();
  return true;
}

bool EditBuffer::eraseBackward() {
  if (!hasSelection()) {
    if (caret_ == 0) return false;
    anchor_ = previousBoundary(caret_);
  }
  return replaceSelection({});
}

bool EditBuffer::eraseForward() {
  if (!hasSelection()) {
    if (caret_ >= text_.size()) return false;
    anchor_ = nextBoundary(caret_);
  }
  return replaceSelection({});
}

}  // namespace winsys
