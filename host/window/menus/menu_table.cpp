#include "host/window/menus/menu_table.h"

namespace winsys {

HMENU MenuTable::create() {
  auto menu = std::make_unique<Menu>();
  const Menu* raw = menu.get();
  menus_.emplace(raw, std::move(menu));
  return reinterpret_cast<HMENU>(const_cast<Menu*>(raw));
}

bool MenuTable::destroy(HMENU handle) {
  Menu* menu = find(handle);
  if (menu == nullptr) return false;
  const std::vector<MenuItem> items = std::move(menu->items);
  menus_.erase(menu);
  for (const MenuItem& entry : items) {
    if (entry.submenu != nullptr) destroy(entry.submenu);
  }
  return true;
}

Menu* MenuTable::find(HMENU handle) const {
  const auto it = menus_.find(reinterpret_cast<const Menu*>(handle));
  return it != menus_.end() ? it->second.get() : nullptr;
}

bool MenuTable::insert(HMENU handle, int where, UINT flags, UINT_PTR command, const char* text) {
  Menu* menu = find(handle);
  if (menu == nullptr) return false;
  MenuItem entry{text != nullptr && (flags & MF_SEPARATOR) == 0 ? text : "", command,
                 flags & ~MF_BYPOSITION, nullptr};
  if ((flags & MF_POPUP) != 0) {
    entry.submenu = reinterpret_cast<HMENU>(command);
    entry.command = 0;
  }
  auto at = menu->items.end();
  if ((flags & MF_BYPOSITION) != 0 && where >= 0 && where < static_cast<int>(menu->items.size())) {
    at = menu->items.begin() + where;
  } else if ((flags & MF_BYPOSITION) == 0 && where >= 0) {
    for (auto it = menu->items.begin(); it != menu->items.end(); ++it) {
      if (it->command == static_cast<UINT_PTR>(where) && it->submenu == nullptr) at = it;
    }
  }
  menu->items.insert(at, std::move(entry));
  return true;
}

MenuItem* MenuTable::item(HMENU handle, int which, UINT flags) const {
  Menu* menu = find(handle);
  if (menu == nullptr) return nullptr;
  if ((flags & MF_BYPOSITION) != 0) {
    if (which < 0 || which >= static_cast<int>(menu->items.size())) return nullptr;
    return &menu->items[static_cast<std::size_t>(which)];
  }
  for (MenuItem& entry : menu->items) {
    if (entry.submenu == nullptr && entry.command == static_cast<UINT_PTR>(which)) return &entry;
    if (entry.submenu != nullptr) {
      if (MenuItem* inner = item(entry.submenu, which, flags)) return inner;
    }
  }
  return nullptr;
}

int MenuTable::check(HMENU menu, int which, UINT flags) {
  MenuItem* entry = item(menu, which, flags);
  if (entry == nullptr) return -1;
  const int previous = static_cast<int>(entry->flags & MF_CHECKED);
  entry->flags = (entry->flags & ~MF_CHECKED) | (flags & MF_CHECKED);
  return previous;
}

int MenuTable::enable(HMENU menu, int which, UINT flags) {
  MenuItem* entry = item(menu, which, flags);
  if (entry == nullptr) return -1;
  const int previous = static_cast<int>(entry->flags & (MF_GRAYED | MF_DISABLED));
  entry->flags = (entry->flags & ~(MF_GRAYED | MF_DISABLED)) | (flags & (MF_GRAYED | MF_DISABLED));
  return previous;
}

bool MenuTable::remove(HMENU handle, int which, UINT flags) {
  Menu* menu = find(handle);
  MenuItem* entry = item(handle, which, flags);
  if (menu == nullptr || entry == nullptr) return false;
  for (auto it = menu->items.begin(); it != menu->items.end(); ++it) {
    if (&*it != entry) continue;
    if (it->submenu != nullptr) destroy(it->submenu);
    menu->items.erase(it);
    return true;
  }
  return false;  // the item is in a submenu: Win32 deletes only from the menu given
}

std::string menuLabel(const std::string& text) {
  std::string label;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\t') break;
    if (text[i] == '&' && i + 1 < text.size()) ++i;
    label += text[i];
  }
  return label;
}

}  // namespace winsys
