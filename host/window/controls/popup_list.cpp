#include "host/window/controls/popup_list.h"

#include <algorithm>
#include <cmath>

#include "host/window/controls/draw.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

constexpr double kSeparatorPx = 9.0;
constexpr double kCheckColumnPx = 22.0;
constexpr double kSidePadPx = 10.0;

double scaledPx(double pixels, int scale256) {
  return pixels * scale256 / 256.0;
}

}  // namespace

PopupList::PopupList(Window& window, std::vector<PopupItem> items, int rowHeightPx,
                     bool checkColumn)
    : Control(window),
      items_(std::move(items)),
      texts_(items_.size()),
      rowHeightPx_(rowHeightPx),
      checkColumn_(checkColumn) {}

LRESULT PopupList::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const bool mouse = (message >= WM_MOUSEMOVE && message <= WM_MBUTTONUP) ||
                     message == WM_MOUSEWHEEL || message == WM_CAPTURECHANGED;
  if (mouse && inputHandler_) {
    inputHandler_(message, wParam, lParam);
    return 0;
  }
  return Control::handle(message, wParam, lParam);
}

int PopupList::rowHeight(int index) const {
  return items_[static_cast<std::size_t>(index)].separator
             ? static_cast<int>(std::lround(px(kSeparatorPx)))
             : rowHeightPx_;
}

int PopupList::visibleRows() const {
  int rows = 0;
  for (int y = 1, i = topIndex_; i < count() && y + rowHeight(i) <= height() - 1; ++i) {
    y += rowHeight(i);
    ++rows;
  }
  return std::max(rows, 1);
}

RECT PopupList::rowRect(int index) const {
  int y = 1;
  for (int i = topIndex_; i < index; ++i) y += rowHeight(i);
  if (index < topIndex_) y = -rowHeightPx_;
  return {1, y, width() - 1, y + rowHeight(index)};
}

int PopupList::itemAt(POINT client) const {
  if (client.x < 0 || client.x >= width()) return -1;
  for (int i = topIndex_, y = 1; i < count() && y < height() - 1; ++i) {
    if (client.y >= y && client.y < y + rowHeight(i)) return i;
    y += rowHeight(i);
  }
  return -1;
}

bool PopupList::choosable(int index) const {
  return index >= 0 && index < count() && !item(index).separator && item(index).enabled;
}

void PopupList::setHighlight(int index) {
  const int wanted = choosable(index) ? index : -1;
  if (wanted == highlight_) return;
  highlight_ = wanted;
  if (wanted >= 0) ensureVisible(wanted);
  invalidate();
}

void PopupList::moveHighlight(int steps) {
  int index = highlight_;
  const int direction = steps < 0 ? -1 : 1;
  for (int remaining = std::abs(steps); remaining > 0; --remaining) {
    int next = index + direction;
    if (index < 0) next = direction > 0 ? 0 : count() - 1;
    while (next >= 0 && next < count() && !choosable(next)) next += direction;
    if (next < 0 || next >= count()) break;
    index = next;
  }
  setHighlight(index);
}

void PopupList::scrollBy(int rows) {
  const int maxTop = std::max(0, count() - visibleRows());
  const int top = std::clamp(topIndex_ + rows, 0, maxTop);
  if (top == topIndex_) return;
  topIndex_ = top;
  invalidate();
}

void PopupList::ensureVisible(int index) {
  if (index < topIndex_) topIndex_ = index;
  while (index >= topIndex_ + visibleRows() && topIndex_ < count() - 1) ++topIndex_;
}

void PopupList::paint(cairo_t* cr) {
  const RECT r = self().clientRect();
  draw::box(cr, r, px(3), theme::kField, theme::kBorder);
  const UiFont& font = uiFont(scale256());
  const double textLeft = checkColumn_ ? px(kCheckColumnPx) : px(kSidePadPx);
  cairo_save(cr);
  cairo_rectangle(cr, 1, 1, width() - 2, height() - 2);
  cairo_clip(cr);
  for (int i = topIndex_; i < count(); ++i) {
    const RECT row = rowRect(i);
    if (row.top >= height() - 1) break;
    const PopupItem& entry = item(i);
    if (entry.separator) {
      draw::fill(cr,
                 {row.left + static_cast<int>(px(6)), (row.top + row.bottom) / 2,
                  row.right - static_cast<int>(px(6)), (row.top + row.bottom) / 2 + 1},
                 theme::kGroupLine);
      continue;
    }
    const bool lit = i == highlight_;
    if (lit) {
      draw::roundedRect(cr, row.left + px(3), row.top + 1, width() - 2 - px(6),
                        row.bottom - row.top - 2, px(3));
      draw::setColor(cr, theme::kAccent);
      cairo_fill(cr);
    }
    const std::uint32_t ink = !entry.enabled ? theme::kTextDisabled
                              : lit          ? theme::kAccentText
                                             : theme::kText;
    if (entry.checked) {
      const int side = static_cast<int>(px(12));
      const RECT mark =
          sized(static_cast<int>(px(6)), (row.top + row.bottom - side) / 2, side, side);
      draw::checkMark(cr, mark, ink, px(1.6));
    }
    draw::setColor(cr, ink);
    const RECT textBox{static_cast<int>(textLeft), row.top,
                       row.right - static_cast<int>(px(kSidePadPx)), row.bottom};
    drawTextInBox(cr, font, texts_[static_cast<std::size_t>(i)].get(font, entry.text), textBox, -1);
    if (entry.hasSubmenu) {
      const double cx = row.right - px(10), cy = (row.top + row.bottom) / 2.0;
      cairo_move_to(cr, cx - px(2), cy - px(4));
      cairo_line_to(cr, cx + px(2), cy);
      cairo_line_to(cr, cx - px(2), cy + px(4));
      cairo_set_line_width(cr, px(1.5));
      cairo_stroke(cr);
    }
  }
  cairo_restore(cr);
}

SIZE PopupList::preferredSize(const std::vector<PopupItem>& items, int rowHeightPx,
                              bool checkColumn, int scale256, int maxRows) {
  const UiFont& font = uiFont(scale256);
  double widest = 0;
  int heightPx = 2;
  int rows = 0;
  for (const PopupItem& entry : items) {
    if (!entry.separator) widest = std::max(widest, ShapedText(font, entry.text).widthPx());
    if (rows++ < maxRows) {
      heightPx += entry.separator ? static_cast<int>(std::lround(scaledPx(kSeparatorPx, scale256)))
                                  : rowHeightPx;
    }
  }
  const double sides =
      (checkColumn ? scaledPx(kCheckColumnPx, scale256) : scaledPx(kSidePadPx, scale256)) +
      scaledPx(kSidePadPx + 14, scale256);
  return {static_cast<int>(std::ceil(widest + sides)), heightPx};
}

Window* openPopupList(WindowSystem& system, Window* top, const RECT& anchor,
                      std::vector<PopupItem> items, int rowHeightPx, bool checkColumn, int minWidth,
                      int maxRows) {
  const int scale256 = system.scale256Of(top);
  SIZE size = PopupList::preferredSize(items, rowHeightPx, checkColumn, scale256, maxRows);
  size.cx = std::min(std::max<int>(size.cx, minWidth), top->clientWidth());
  const int below = top->clientHeight() - anchor.bottom;
  const int above = anchor.top;
  const bool fitsBelow = size.cy <= below;
  int y = anchor.bottom;
  if (!fitsBelow && above > below) {
    size.cy = std::min<int>(size.cy, above);
    y = anchor.top - size.cy;
  } else if (!fitsBelow) {
    size.cy = std::max(below, rowHeightPx + 2);
  }
  const int x = std::clamp<int>(anchor.left, 0, std::max(0, top->clientWidth() - size.cx));
  CreateParams params;
  params.className = "PLASK_PopupList";
  params.style = WS_CHILD | WS_VISIBLE;
  params.rect = sized(x, y, size.cx, size.cy);
  params.parent = top->handle();
  params.proc = controlWindowProc;
  params.kind = WindowKind::Popup;
  Window* window = system.find(system.create(params));
  if (window == nullptr) return nullptr;
  window->control =
      std::make_unique<PopupList>(*window, std::move(items), rowHeightPx, checkColumn);
  window->ignoresMouse = true;  // its owner holds the capture and asks it which row is where
  system.invalidate(window, nullptr);
  return window;
}

PopupList* popupListOf(Window* window) {
  return window != nullptr ? dynamic_cast<PopupList*>(window->control.get()) : nullptr;
}

}  // namespace winsys
