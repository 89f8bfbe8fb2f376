// Pop-up menus: their items (text, command, check, enabled, separator, submenu) behind HMENU
// handles that the table validates. [UI thread]
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/win32_controls.h"

namespace winsys {

struct MenuItem {
  std::string text;
  UINT_PTR command = 0;
  UINT flags = 0;  // MF_CHECKED, MF_GRAYED, MF_DISABLED, MF_SEPARATOR, MF_POPUP
  HMENU submenu = nullptr;
};

struct Menu {
  std::vector<MenuItem> items;
};

class MenuTable {
 public:
  HMENU create();
  // Also destroys its submenus, as Win32 does.
  bool destroy(HMENU menu);
  Menu* find(HMENU menu) const;

  // Inserts before the item at `where` (by position or by command, as `flags` says); a missing
  // item or -1 appends.
  bool insert(HMENU menu, int where, UINT flags, UINT_PTR command, const char* text);
  // The item by position (MF_BYPOSITION) or by command (searching submenus too), or null.
  MenuItem* item(HMENU menu, int which, UINT flags) const;
  // CheckMenuItem and EnableMenuItem: the previous state, or -1 when there is no such item.
  int check(HMENU menu, int which, UINT flags);
  int enable(HMENU menu, int which, UINT flags);
  bool remove(HMENU menu, int which, UINT flags);

 private:
  std::unordered_map<const Menu*, std::unique_ptr<Menu>> menus_;
};

// The text a menu shows: '&' marks removed ("&&" is one '&'), an accelerator after a tab cut off.
std::string menuLabel(const std::string& text);

}  // namespace winsys
