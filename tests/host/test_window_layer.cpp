// The window layer plug-ins bind by name: one table, real functions where promised, the headless
// failure answer for the rest.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "host/window/control_registry.h"
#include "host/window/key_state.h"
#include "host/window/window_headless.h"
#include "host/window/window_table.h"
#include "tests/host/temp_config.h"

namespace {

template <PlaskId Id>
PlaskFn<Id> bound() {
  return reinterpret_cast<PlaskFn<Id>>(findWindowFunction(kPlaskNames[static_cast<int>(Id)]));
}

HWND creatorA(HWND, int, const char*, int, int, int, int, int) {
  return nullptr;
}
HWND creatorB(HWND, int, const char*, int, int, int, int, int) {
  return nullptr;
}

}  // namespace

TEST(WindowTable, EveryNameResolvesAndOnlyThePromisedOnesAreReal) {
  std::istringstream realNames(
      "lstrcpyn GetAsyncKeyState MulDiv GetTickCount Sleep WinIntersectRect WinOffsetRect "
      "WinSetRect WinUnionRect PLASK_RegisterCustomControlCreator "
      "PLASK_UnregisterCustomControlCreator GetPrivateProfileInt GetPrivateProfileString "
      "GetPrivateProfileSection GetPrivateProfileStruct WritePrivateProfileString "
      "WritePrivateProfileSection WritePrivateProfileStruct");
  const std::set<std::string> expectedReal{std::istream_iterator<std::string>(realNames), {}};
  std::set<std::string> real;
  const WindowFunctionEntry* table = windowFunctionTable();
  for (int i = 0; i < kPlaskFunctionCount; ++i) {
    EXPECT_STREQ(table[i].name, kPlaskNames[i]);
    ASSERT_NE(table[i].address, nullptr) << table[i].name;
    EXPECT_EQ(findWindowFunction(table[i].name), table[i].address);
    if (table[i].kind == WindowFunctionKind::Real) real.insert(table[i].name);
    if (table[i].kind == WindowFunctionKind::Headless) {
      EXPECT_EQ(table[i].address, reinterpret_cast<void*>(&headlessWindowFunction));
    }
  }
  EXPECT_EQ(real, expectedReal);
  // The headless entries share one function, which answers failure.
  EXPECT_EQ(bound<PlaskId::GetDlgItem>()(nullptr, 5), nullptr);
  RECT rect{1, 2, 3, 4};
  EXPECT_EQ(bound<PlaskId::GetClientRect>()(nullptr, &rect), 0);
  EXPECT_EQ(findWindowFunction("NoSuchFunction"), nullptr);
  EXPECT_EQ(findWindowFunction(nullptr), nullptr);
}

// lstrcpyn's cut is checked through a plug-in that binds it; here its edges.
TEST(WindowUtilities, StringsArithmeticAndTime) {
  const auto copy = bound<PlaskId::lstrcpyn>();
  char text[8] = "keep";
  copy(text, "ignored", 0);
  EXPECT_STREQ(text, "keep");  // nothing written for a zero limit
  copy(text, nullptr, 4);
  EXPECT_STREQ(text, "");
  // MulDiv rounds half away from zero and answers -1 for a zero divisor or an overflow.
  const auto mulDiv = bound<PlaskId::MulDiv>();
  for (const auto& [number, numerator, denominator, expected] :
       {std::array{10, 3, 4, 8},
        {-10, 1, 4, -3},
        {7, 1, -2, -4},
        {1, 1, 0, -1},
        {65536, 65536, 1, -1},
        {100000, 100000, 100000, 100000}}) {
    EXPECT_EQ(mulDiv(number, numerator, denominator), expected) << number << "*" << numerator;
  }
  const DWORD first = bound<PlaskId::GetTickCount>()();
  bound<PlaskId::Sleep>()(2);
  EXPECT_GE(static_cast<DWORD>(bound<PlaskId::GetTickCount>()() - first), 2u);
}

TEST(WindowUtilities, RectanglesAreHalfOpen) {
  const auto edges = [](const RECT& r) { return std::array{r.left, r.top, r.right, r.bottom}; };
  RECT a{}, out{};
  bound<PlaskId::WinSetRect>()(&a, 0, 0, 10, 10);
  const RECT b{5, 5, 20, 20}, touching{10, 0, 20, 10}, empty{3, 3, 3, 9};
  EXPECT_EQ(bound<PlaskId::WinIntersectRect>()(&out, &a, &b), 1);
  EXPECT_EQ(edges(out), (std::array{5, 5, 10, 10}));
  EXPECT_EQ(bound<PlaskId::WinIntersectRect>()(&out, &a, &touching), 0);
  EXPECT_EQ(edges(out), (std::array{0, 0, 0, 0}));
  bound<PlaskId::WinUnionRect>()(&out, &empty, &b);
  EXPECT_EQ(edges(out), (std::array{5, 5, 20, 20}));
  bound<PlaskId::WinOffsetRect>()(&out, -5, 2);
  EXPECT_EQ(edges(out), (std::array{0, 7, 15, 22}));
}

TEST(KeyState, AsyncKeyStateFollowsTheHostTrackedModifiers) {
  const auto keyState = bound<PlaskId::GetAsyncKeyState>();
  setKeyHeld(VK_SHIFT, true);
  setKeyHeld(VK_CONTROL, true);
  setKeyHeld(VK_SHIFT, false);
  EXPECT_EQ((std::array{keyState(VK_SHIFT) < 0, keyState(VK_CONTROL) < 0, keyState(VK_MENU) < 0}),
            (std::array{false, true, false}));
  EXPECT_EQ(keyState(4096), 0);
  releaseAllKeys();
  EXPECT_EQ(keyState(VK_CONTROL), 0);
}

TEST(ControlRegistry, CreatorsAreKeptOnceInOrderUntilRemoved) {
  const auto add = bound<PlaskId::PLASK_RegisterCustomControlCreator>();
  const auto remove = bound<PlaskId::PLASK_UnregisterCustomControlCreator>();
  for (auto creator : {creatorA, creatorB, creatorA, static_cast<PlaskControlCreator>(nullptr)})
    add(creator);
  EXPECT_EQ(registeredControlCreators(), (std::vector<PlaskControlCreator>{creatorA, creatorB}));
  for (auto creator : {creatorA, creatorB, creatorB}) remove(creator);
  EXPECT_TRUE(registeredControlCreators().empty());
}

// Sections and structs share the file handling checked here.
TEST(ProfileFiles, StringsIntsAndSectionsOnRealFiles) {
  TempConfig config;
  const std::string file = "plugin.ini";  // relative: in the settings directory
  const auto writeString = bound<PlaskId::WritePrivateProfileString>();
  const auto getString = bound<PlaskId::GetPrivateProfileString>();
  const auto getInt = bound<PlaskId::GetPrivateProfileInt>();
  ASSERT_EQ(writeString("view", "zoom", "42", file.c_str()), 1);
  ASSERT_EQ(writeString("view", "name", "a long value", file.c_str()), 1);
  ASSERT_EQ(writeString("other", "k", "v", file.c_str()), 1);
  ASSERT_EQ(writeString("VIEW", "ZOOM", "43", file.c_str()), 1);  // updates, keeps the order
  EXPECT_EQ(getInt("view", "zoom", -1, file.c_str()), 43u);
  EXPECT_EQ(getInt("view", "missing", -1, file.c_str()), static_cast<UINT>(-1));
  char text[64];
  EXPECT_EQ(getString("view", "name", "def", text, 5, file.c_str()), 4u);
  EXPECT_STREQ(text, "a lo");
  EXPECT_EQ(getString("view", "missing", "def", text, sizeof text, file.c_str()), 3u);
  // Null key: the section's keys, zero-separated, ending with an extra zero.
  EXPECT_EQ(getString("view", nullptr, "", text, sizeof text, file.c_str()), 10u);
  EXPECT_EQ(std::string(text, 11), std::string("zoom\0name\0\0", 11));
  EXPECT_EQ(getString(nullptr, nullptr, "", text, sizeof text, file.c_str()), 11u);
  EXPECT_EQ(std::string(text, 12), std::string("view\0other\0\0", 12));
  // Null value deletes a key, null key a section.
  ASSERT_EQ(writeString("view", "zoom", nullptr, file.c_str()), 1);
  EXPECT_EQ(getInt("view", "zoom", 7, file.c_str()), 7u);
  ASSERT_EQ(writeString("other", nullptr, nullptr, file.c_str()), 1);
  EXPECT_EQ(getString("other", "k", "gone", text, sizeof text, file.c_str()), 4u);
  EXPECT_TRUE(std::filesystem::exists(config.dir() + "/spatiola/plugin.ini"));
}
