// The window layer plug-ins bind by name: one table, real functions where promised, the headless
// failure answer for the rest.
#include <gtest/gtest.h>

#include <string>

#include "host/services/window_table.h"
#include "host/window/api/window_api.h"
#include "host/window/key_state.h"
#include "host/window/window_headless.h"

namespace {

template <PlaskId Id>
PlaskFn<Id> bound() {
  return reinterpret_cast<PlaskFn<Id>>(findWindowFunction(kPlaskNames[static_cast<int>(Id)]));
}

}  // namespace

TEST(WindowTable, EveryNameResolvesToTheWindowSystemOrTheFailureAnswer) {
  const std::string utilities =
      " lstrcpyn MulDiv GetTickCount Sleep WinIntersectRect WinOffsetRect WinSetRect WinUnionRect "
      "PLASK_RegisterCustomControlCreator PLASK_UnregisterCustomControlCreator "
      "GetPrivateProfileInt GetPrivateProfileString GetPrivateProfileSection "
      "GetPrivateProfileStruct WritePrivateProfileString WritePrivateProfileSection "
      "WritePrivateProfileStruct CreateFontIndirect ";
  const WindowFunctionEntry* table = windowFunctionTable();
  int realCount = 0;
  for (int i = 0; i < kPlaskFunctionCount; ++i) {
    const std::string name = kPlaskNames[i];
    const bool real = winsys::findWindowApiFunction(static_cast<PlaskId>(i)) != nullptr ||
                      utilities.find(" " + name + " ") != std::string::npos;
    realCount += real ? 1 : 0;
    EXPECT_EQ(findWindowFunction(name.c_str()), table[i].address) << name;
    EXPECT_EQ(table[i].kind != WindowFunctionKind::Headless, real) << name;
    EXPECT_EQ(table[i].address == reinterpret_cast<void*>(&headlessWindowFunction), !real) << name;
  }
  EXPECT_GT(realCount, 120);
  // Without a window system the window functions fail as a system without a display does.
  EXPECT_EQ(bound<PlaskId::GetDlgItem>()(nullptr, 5), nullptr);
  EXPECT_EQ(bound<PlaskId::CreatePopupMenu>()(), nullptr);
  EXPECT_EQ(findWindowFunction("NoSuchFunction"), nullptr);
}

TEST(KeyState, FollowsTheKeysTheHostHolds) {
  const auto keyState = bound<PlaskId::GetAsyncKeyState>();
  setKeyHeld(VK_SHIFT, true);
  setKeyHeld(VK_CONTROL, true);
  setKeyHeld(VK_SHIFT, false);
  EXPECT_EQ((std::array{keyState(VK_SHIFT) < 0, keyState(VK_CONTROL) < 0, keyState(VK_MENU) < 0}),
            (std::array{false, true, false}));
  releaseAllKeys();
  EXPECT_EQ(keyState(VK_CONTROL), 0);
}
