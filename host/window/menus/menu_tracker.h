// TrackPopupMenu: the menu and its submenus as pop-up lists in the owner's top-level window, in a
// nested loop that ends when an item is chosen (mouse or Return) or the menu is dismissed (a
// click outside, Escape, or a back-end that has nothing more to give).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/window/core/window_system.h"
#include "host/window/menus/menu_table.h"

namespace winsys {

class PopupList;

class MenuTracker {
 public:
  MenuTracker(WindowSystem& system, HMENU menu, Window* top, POINT atInTopLevel, UINT flags);
  ~MenuTracker();
  MenuTracker(const MenuTracker&) = delete;
  MenuTracker& operator=(const MenuTracker&) = delete;

  // The command chosen, or 0.
  UINT_PTR run();

  // For scripts: the row of the deepest open level showing `label` (as displayed), in the
  // top-level window's coordinates.
  std::optional<RECT> rowRect(const std::string& label) const;
  int levelCount() const { return static_cast<int>(levels_.size()); }

 private:
  struct Level {
    HMENU menu;
    Window* popup;
  };
  bool openLevel(HMENU menu, const RECT& anchor);
  void closeLevelsAfter(std::size_t keep);
  PopupList* list(std::size_t level) const;
  const MenuItem* entry(std::size_t level, int row) const;
  void onMouse(UINT message, LPARAM lParam);
  bool onKey(UINT message, WPARAM wParam);
  void activate(std::size_t level, int row);
  void finish(UINT_PTR command);

  WindowSystem& system_;
  Window* top_;
  UINT flags_;
  std::vector<Level> levels_;
  bool done_ = false;
  UINT_PTR result_ = 0;
};

// TrackPopupMenu's answer: with TPM_RETURNCMD the command (0 for none); otherwise WM_COMMAND is
// posted to the owner (unless TPM_NONOTIFY) and the answer is non-zero when something was chosen.
int trackPopupMenu(WindowSystem& system, HMENU menu, UINT flags, int x, int y, HWND owner);

}  // namespace winsys
