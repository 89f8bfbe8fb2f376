// Pop-up menus.
#include "host/window/api/api_support.h"
#include "host/window/menus/menu_table.h"
#include "host/window/menus/menu_tracker.h"

namespace winsys::api {

namespace {

MenuTable* menus() {
  WindowSystem* current = system();
  return current != nullptr ? &current->menus() : nullptr;
}

HMENU apiCreatePopupMenu() {
  MenuTable* table = menus();
  return table != nullptr ? table->create() : nullptr;
}

HMENU apiCreatePopupMenuEx(const char* /*title*/) {
  return apiCreatePopupMenu();
}

void apiDestroyMenu(HMENU menu) {
  if (MenuTable* table = menus()) table->destroy(menu);
}

void apiInsertMenu(HMENU menu, int where, unsigned int flags, UINT_PTR command, const char* text) {
  if (MenuTable* table = menus()) table->insert(menu, where, flags, command, text);
}

void apiAddMenuItem(HMENU menu, const char* text, int command) {
  if (MenuTable* table = menus())
    table->insert(menu, -1, MF_BYPOSITION, static_cast<UINT_PTR>(command), text);
}

int apiMenuAddMenuItem(HMENU menu, const char* text, int command, unsigned int flags) {
  MenuTable* table = menus();
  if (table == nullptr) return -1;
  const Menu* items = table->find(menu);
  if (items == nullptr) return -1;
  const auto position = static_cast<int>(items->items.size());
  table->insert(menu, -1, (flags & ~MF_BYPOSITION) | MF_BYPOSITION, static_cast<UINT_PTR>(command),
                text);
  return position;
}

BOOL apiCheckMenuItem(HMENU menu, int which, int flags) {
  MenuTable* table = menus();
  return table != nullptr ? table->check(menu, which, static_cast<UINT>(flags)) : -1;
}

BOOL apiEnableMenuItem(HMENU menu, int which, int flags) {
  MenuTable* table = menus();
  return table != nullptr ? table->enable(menu, which, static_cast<UINT>(flags)) : -1;
}

BOOL apiDeleteMenu(HMENU menu, int which, int flags) {
  MenuTable* table = menus();
  return table != nullptr && table->remove(menu, which, static_cast<UINT>(flags)) ? 1 : 0;
}

int apiGetMenuItemCount(HMENU menu) {
  MenuTable* table = menus();
  const Menu* items = table != nullptr ? table->find(menu) : nullptr;
  return items != nullptr ? static_cast<int>(items->items.size()) : -1;
}

int apiGetMenuItemID(HMENU menu, int position) {
  MenuTable* table = menus();
  const MenuItem* item = table != nullptr ? table->item(menu, position, MF_BYPOSITION) : nullptr;
  return item != nullptr && item->submenu == nullptr ? static_cast<int>(item->command) : -1;
}

HMENU apiGetSubMenu(HMENU menu, int position) {
  MenuTable* table = menus();
  const MenuItem* item = table != nullptr ? table->item(menu, position, MF_BYPOSITION) : nullptr;
  return item != nullptr ? item->submenu : nullptr;
}

int apiTrackPopupMenu(HMENU menu, int flags, int x, int y, int /*reserved*/, HWND owner,
                      const RECT* /*ignored*/) {
  WindowSystem* current = system();
  return current != nullptr ? trackPopupMenu(*current, menu, static_cast<UINT>(flags), x, y, owner)
                            : 0;
}

}  // namespace

std::vector<ApiEntry> menuFunctions() {
  return {entry<PlaskId::CreatePopupMenu>(apiCreatePopupMenu),
          entry<PlaskId::CreatePopupMenuEx>(apiCreatePopupMenuEx),
          entry<PlaskId::DestroyMenu>(apiDestroyMenu),
          entry<PlaskId::PLASK_InsertMenu>(apiInsertMenu),
          entry<PlaskId::AddMenuItem>(apiAddMenuItem),
          entry<PlaskId::PLASK_Menu_AddMenuItem>(apiMenuAddMenuItem),
          entry<PlaskId::CheckMenuItem>(apiCheckMenuItem),
          entry<PlaskId::EnableMenuItem>(apiEnableMenuItem),
          entry<PlaskId::DeleteMenu>(apiDeleteMenu),
          entry<PlaskId::GetMenuItemCount>(apiGetMenuItemCount),
          entry<PlaskId::GetMenuItemID>(apiGetMenuItemID),
          entry<PlaskId::GetSubMenu>(apiGetSubMenu),
          entry<PlaskId::TrackPopupMenu>(apiTrackPopupMenu)};
}

}  // namespace winsys::api
