#include "host/window/controls/edit.h"

#include <algorithm>
#include <cmath>

#include "host/window/controls/draw.h"
#include "host/window/controls/theme.h"

namespace winsys {

Edit::Edit(Window& window) : Control(window) {
  buffer_.setText(window.text);
}

LRESULT Edit::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SETTEXT:
      buffer_.setText(lParam != 0 ? reinterpret_cast<const char*>(lParam) : "");
      scrollPx_ = 0;
      changed();
      return 1;
    case WM_KEYDOWN:
      return keyDown(wParam);
    case WM_CHAR:
      return character(wParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      return mouseDown(lParam, message == WM_LBUTTONDBLCLK);
    case WM_MOUSEMOVE:
      if (captured()) {
        buffer_.moveTo(indexAtX(signedLowWord(lParam)), true);
        caretMoved();
      }
      return 0;
    case WM_LBUTTONUP:
      if (captured()) system().releaseCapture();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      invalidate();
      notify(message == WM_SETFOCUS ? EN_SETFOCUS : EN_KILLFOCUS);
      return 0;
    case WM_SETCURSOR:
      if (wParam != reinterpret_cast<WPARAM>(self().handle())) break;
      system().setCursor(CursorShape::IBeam);
      return 1;
    case WM_GETDLGCODE:
      if (wParam == VK_RETURN && (self().style & ES_WANTRETURN) != 0) return DLGC_WANTALLKEYS;
      return DLGC_WANTCHARS | DLGC_WANTARROWS;
    case EM_SETSEL:
      buffer_.select(static_cast<long>(static_cast<int>(wParam)),
                     static_cast<long>(static_cast<int>(lParam)));
      caretMoved();
      return 0;
    case EM_GETSEL:
      return getSelection(wParam, lParam);
    case EM_REPLACESEL:
      if (buffer_.replaceSelection(lParam != 0 ? reinterpret_cast<const char*>(lParam) : "")) {
        changed();
      }
      return 0;
    case EM_LIMITTEXT:
      buffer_.setLimit(wParam == 0 ? 0x7FFFFFFE : wParam);
      return 0;
    default:
      break;
  }
  return Control::handle(message, wParam, lParam);
}

LRESULT Edit::getSelection(WPARAM startOut, LPARAM endOut) const {
  const auto start = static_cast<DWORD>(buffer_.selectionStart());
  const auto end = static_cast<DWORD>(buffer_.selectionEnd());
  if (startOut != 0) *reinterpret_cast<DWORD*>(startOut) = start;
  if (endOut != 0) *reinterpret_cast<DWORD*>(endOut) = end;
  return static_cast<LRESULT>(makeLParam(static_cast<int>(start), static_cast<int>(end)) &
                              0xFFFFFFFF);
}

LRESULT Edit::keyDown(WPARAM key) {
  const bool shift = system().keyHeld(VK_SHIFT);
  const bool control = system().keyHeld(VK_CONTROL);
  switch (key) {
    case VK_LEFT:
    case VK_RIGHT: {
      const int direction = key == VK_LEFT ? -1 : 1;
      if (control) {
        buffer_.moveByWord(direction, shift);
      } else {
        buffer_.moveByCharacter(direction, shift);
      }
      break;
    }
    case VK_HOME:
      buffer_.moveTo(0, shift);
      break;
    case VK_END:
      buffer_.moveTo(buffer_.text().size(), shift);
      break;
    case VK_DELETE:
      if (!readOnly() && buffer_.eraseForward()) changed();
      return 0;
    case 'A':
      if (!control) return 0;
      buffer_.selectAll();
      break;
    default:
      return 0;
  }
  caretMoved();
  return 0;
}

LRESULT Edit::character(WPARAM codePoint) {
  if (readOnly() || system().keyHeld(VK_CONTROL)) return 0;
  if (codePoint == VK_BACK) {
    if (buffer_.eraseBackward()) changed();
    return 0;
  }
  if (codePoint < 0x20 || codePoint == 0x7F || codePoint > 0x10FFFF) return 0;
  if ((self().style & ES_NUMBER) != 0 && (codePoint < '0' || codePoint > '9')) return 0;
  if (buffer_.replaceSelection(utf8Of(static_cast<std::uint32_t>(codePoint)))) changed();
  return 0;
}

LRESULT Edit::mouseDown(LPARAM lParam, bool doubleClick) {
  takeFocus();
  const std::size_t index = indexAtX(signedLowWord(lParam));
  if (doubleClick) {
    buffer_.selectWordAt(index);
  } else {
    buffer_.moveTo(index, system().keyHeld(VK_SHIFT));
    system().setCapture(&self());
  }
  caretMoved();
  return 0;
}

void Edit::changed() {
  self().text = buffer_.text();
  caretMoved();
  notify(EN_CHANGE);
}

void Edit::caretMoved() {
  const UiFont& font = uiFont(scale256());
  scrollToCaret(shaped_.get(font, buffer_.text()));
  invalidate();
}

std::size_t Edit::indexAtX(int x) {
  const ShapedText& text = shaped_.get(uiFont(scale256()), buffer_.text());
  return text.indexAt(x - textLeft(text));
}

double Edit::textLeft(const ShapedText& text) const {
  const double pad = px(theme::kTextPadPx);
  const double area = width() - 2 * pad;
  const int align = static_cast<int>(self().style & 0x3);
  if (text.widthPx() <= area && align == ES_CENTER)
    return pad + std::floor((area - text.widthPx()) / 2);
  if (text.widthPx() <= area && align == ES_RIGHT) return pad + area - text.widthPx();
  return pad - scrollPx_;
}

void Edit::scrollToCaret(const ShapedText& text) {
  const double area = width() - 2 * px(theme::kTextPadPx) - 1;
  const double caretX = text.xAt(buffer_.caret());
  if (caretX - scrollPx_ > area) scrollPx_ = caretX - area;
  if (caretX - scrollPx_ < 0) scrollPx_ = caretX;
  scrollPx_ = std::clamp(scrollPx_, 0.0, std::max(0.0, text.widthPx() - area));
}

void Edit::paint(cairo_t* cr) {
  const RECT r = self().clientRect();
  const bool focus = focused();
  const std::uint32_t border = !enabled() ? theme::kBorderDisabled
                               : focus    ? theme::kAccent
                                          : theme::kBorder;
  draw::box(cr, r, px(theme::kCornerPx), enabled() ? theme::kField : theme::kFieldDisabled, border,
            focus ? px(1.5) : 1.0);
  const UiFont& font = uiFont(scale256());
  const ShapedText& text = shaped_.get(font, buffer_.text());
  const double pad = px(theme::kTextPadPx) - 1;
  cairo_save(cr);
  cairo_rectangle(cr, pad, 1, width() - 2 * pad, height() - 2);
  cairo_clip(cr);
  const double left = textLeft(text);
  const double top = std::floor((height() - font.heightPx()) / 2 + 0.5);
  const double baseline = top + font.ascentPx;
  draw::setColor(cr, enabled() ? theme::kText : theme::kTextDisabled);
  text.draw(cr, font, left, baseline);
  if (buffer_.hasSelection()) {
    const double x0 = left + text.xAt(buffer_.selectionStart());
    const double x1 = left + text.xAt(buffer_.selectionEnd());
    cairo_rectangle(cr, x0, top, x1 - x0, font.heightPx());
    draw::setColor(cr, focus ? theme::kAccent : theme::kSelectionUnfocused);
    cairo_fill_preserve(cr);
    cairo_clip(cr);
    draw::setColor(cr, focus ? theme::kAccentText : theme::kText);
    text.draw(cr, font, left, baseline);
  }
  cairo_restore(cr);
  if (focus && enabled()) {
    const double x = std::floor(left + text.xAt(buffer_.caret())) + 0.5;
    cairo_move_to(cr, x, top);
    cairo_line_to(cr, x, top + font.heightPx());
    draw::setColor(cr, theme::kText);
    cairo_set_line_width(cr, std::max(1.0, std::floor(px(1))));
    cairo_stroke(cr);
  }
}

}  // namespace winsys
