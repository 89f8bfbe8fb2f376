// The window layer plug-ins bind by name: one table, real functions where promised, the headless
// failure answer for the rest.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/services/window_table.h"
#include "host/window/api/window_api.h"
#include "host/window/control_registry.h"
#include "host/window/key_state.h"
#include "host/window/window_headless.h"
#include "tests/host/services/temp_config.h"

namespace {

template <PlaskId Id>
PlaskFn<Id> bound() {
  return reinterpret_cast<PlaskFn<Id>>(findWindowFunction(kPlaskNames[static_cast<int>(Id)]));
}

HWND creatorA(HWND, int, const char*, int, int, int, int, int) {
  return nullptr;
}
HWND creatorB(HWND, int, const char*, int, int, int, int, int) {
  return reinterpret_cast<HWND>(1);
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

// lstrcpyn's cut is checked through a plug-in that binds it; here its edges and MulDiv's rounding.
TEST(WindowUtilities, StringsArithmeticAndRectangles) {
  char text[8] = "keep";
  bound<PlaskId::lstrcpyn>()(text, "ignored", 0);
  EXPECT_STREQ(text, "keep");  // nothing written for a zero limit
  // Half away from zero; -1 for a zero divisor or an overflow.
  for (const auto& [number, numerator, denominator, expected] :
       {std::array{10, 3, 4, 8}, {-10, 1, 4, -3}, {1, 1, 0, -1}, {65536, 65536, 1, -1}})
    EXPECT_EQ(bound<PlaskId::MulDiv>()(number, numerator, denominator), expected) << number;
  const auto edges = [](const RECT& r) { return std::array{r.left, r.top, r.right, r.bottom}; };
  const RECT a{0, 0, 10, 10}, b{5, 5, 20, 20}, touching{10, 0, 20, 10}, empty{3, 3, 3, 9};
  RECT out{};
  EXPECT_EQ(bound<PlaskId::WinIntersectRect>()(&out, &a, &b), 1);
  EXPECT_EQ(edges(out), (std::array{5, 5, 10, 10}));
  EXPECT_EQ(bound<PlaskId::WinIntersectRect>()(&out, &a, &touching), 0) << "half-open";
  bound<PlaskId::WinUnionRect>()(&out, &empty, &b);
  bound<PlaskId::WinOffsetRect>()(&out, -5, 2);
  EXPECT_EQ(edges(out), (std::array{0, 7, 15, 22}));
}

TEST(Registrations, KeysFollowTheHostAndControlCreatorsAreKeptOnceInOrder) {
  const auto keyState = bound<PlaskId::GetAsyncKeyState>();
  setKeyHeld(VK_SHIFT, true);
  setKeyHeld(VK_CONTROL, true);
  setKeyHeld(VK_SHIFT, false);
  EXPECT_EQ((std::array{keyState(VK_SHIFT) < 0, keyState(VK_CONTROL) < 0, keyState(VK_MENU) < 0}),
            (std::array{false, true, false}));
  releaseAllKeys();
  EXPECT_EQ(keyState(VK_CONTROL), 0);
  for (auto creator : {creatorA, creatorB, creatorA, static_cast<PlaskControlCreator>(nullptr)})
    bound<PlaskId::PLASK_RegisterCustomControlCreator>()(creator);
  EXPECT_EQ(registeredControlCreators(), (std::vector<PlaskControlCreator>{creatorA, creatorB}));
  for (auto creator : {creatorA, creatorB})
    bound<PlaskId::PLASK_UnregisterCustomControlCreator>()(creator);
  EXPECT_TRUE(registeredControlCreators().empty());
}

// Sections and structs share the file handling checked here.
TEST(ProfileFiles, StringsIntsAndSectionsOnRealFiles) {
  TempConfig config;
  const char* file = "plugin.ini";  // relative: in the settings directory
  const auto write = bound<PlaskId::WritePrivateProfileString>();
  const auto getString = bound<PlaskId::GetPrivateProfileString>();
  for (const auto& [section, key, value] : {std::array<const char*, 3>{"view", "zoom", "42"},
                                            {"view", "name", "a long value"},
                                            {"other", "k", "v"},
                                            {"VIEW", "ZOOM", "43"},  // updates, keeps the order
                                            {"other", nullptr, nullptr}})  // deletes the section
    ASSERT_EQ(write(section, key, value, file), 1);
  EXPECT_EQ(bound<PlaskId::GetPrivateProfileInt>()("view", "zoom", -1, file), 43u);
  char text[64];
  EXPECT_EQ(getString("view", "name", "def", text, 5, file), 4u);
  EXPECT_STREQ(text, "a lo");
  // Null key: the section's keys, zero-separated, ending with an extra zero.
  EXPECT_EQ(getString("view", nullptr, "", text, sizeof text, file), 10u);
  EXPECT_EQ(std::string(text, 11), std::string("zoom\0name\0\0", 11));
  EXPECT_EQ(getString("other", "k", "gone", text, sizeof text, file), 4u);
  EXPECT_TRUE(std::filesystem::exists(config.dir() + "/spatiola/plugin.ini"));
}
