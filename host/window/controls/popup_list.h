// The pop-up list shared by drop-down combos and pop-up menus: a topmost window in the top-level
// window showing rows (text, check mark, disabled, separators) with one highlighted. Its owner
// keeps the mouse capture and the keys and drives it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/window/controls/control.h"
#include "host/window/controls/ui_font.h"

namespace winsys {

struct PopupItem {
  std::string text;
  bool enabled = true;
  bool checked = false;
  bool separator = false;
  bool hasSubmenu = false;
};

class PopupList final : public Control {
 public:
  PopupList(Window& window, std::vector<PopupItem> items, int rowHeightPx, bool checkColumn);
  // Mouse messages go to the owner's handler when one is set (the list holds the capture then).
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;
  void setInputHandler(std::function<void(UINT, WPARAM, LPARAM)> handler) {
    inputHandler_ = std::move(handler);
  }

  // The row under a point of this window's client area, or -1.
  int itemAt(POINT client) const;
  int highlight() const { return highlight_; }
  void setHighlight(int index);
  // Moves by `steps` choosable rows (negative: up), stopping at the ends.
  void moveHighlight(int steps);
  void scrollBy(int rows);
  int count() const { return static_cast<int>(items_.size()); }
  const PopupItem& item(int index) const { return items_[static_cast<std::size_t>(index)]; }
  bool choosable(int index) const;
  // The row's rectangle in client coordinates (scrolled), for tests and scripts.
  RECT rowRect(int index) const;

  // Size a list of these items wants: width for the longest text, height for at most `maxRows`.
  static SIZE preferredSize(const std::vector<PopupItem>& items, int rowHeightPx, bool checkColumn,
                            int scale256, int maxRows);

 private:
  int rowHeight(int index) const;
  int visibleRows() const;
  void ensureVisible(int index);

  std::vector<PopupItem> items_;
  std::vector<CachedText> texts_;
  int rowHeightPx_;
  bool checkColumn_;
  int highlight_ = -1;
  int topIndex_ = 0;
  std::function<void(UINT, WPARAM, LPARAM)> inputHandler_;
};

// Opens the list below `anchor` (a rectangle of the top-level window `top`), or above it when
// there is more room there, at least `minWidth` wide and at most `maxRows` rows high.
Window* openPopupList(WindowSystem& system, Window* top, const RECT& anchor,
                      std::vector<PopupItem> items, int rowHeightPx, bool checkColumn, int minWidth,
                      int maxRows);
PopupList* popupListOf(Window* window);

}  // namespace winsys
