// The window layer plug-ins bind by name: one table, real functions where promised, the headless
// failure answer for the rest.
#include <gtest/gtest.h>

#include <cstring>
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

TEST(WindowUtilities, LstrcpynCutsAndTerminates) {
  const auto copy = bound<PlaskId::lstrcpyn>();
  char text[8];
  std::memset(text, 'x', sizeof text);
  EXPECT_EQ(copy(text, "Spatiola", 5), text);
  EXPECT_STREQ(text, "Spat");
  copy(text, "ab", 8);
  EXPECT_STREQ(text, "ab");
  text[0] = 'q';
  copy(text, "ignored", 0);
  EXPECT_EQ(text[0], 'q');  // nothing written for a zero limit
  copy(text, nullptr, 4);
  EXPECT_STREQ(text, "");
}

TEST(WindowUtilities, MulDivRoundsHalfAwayFromZero) {
  const auto mulDiv = bound<PlaskId::MulDiv>();
  struct Case {
    int number, numerator, denominator, expected;
  };
  const Case cases[] = {{10, 3, 4, 8},   {10, 1, 4, 3},         {-10, 1, 4, -3},
                        {10, -1, 4, -3}, {7, 1, -2, -4},        {5, 256, 256, 5},
                        {1, 1, 0, -1},   {65536, 65536, 1, -1}, {100000, 100000, 100000, 100000}};
  for (const Case& c : cases) {
    EXPECT_EQ(mulDiv(c.number, c.numerator, c.denominator), c.expected)
        << c.number << "*" << c.numerator << "/" << c.denominator;
  }
}

TEST(WindowUtilities, RectanglesAreHalfOpen) {
  RECT a{};
  bound<PlaskId::WinSetRect>()(&a, 0, 0, 10, 10);
  const RECT b{5, 5, 20, 20};
  RECT out{};
  EXPECT_EQ(bound<PlaskId::WinIntersectRect>()(&out, &a, &b), 1);
  EXPECT_EQ((std::array{out.left, out.top, out.right, out.bottom}), (std::array{5, 5, 10, 10}));
  const RECT touching{10, 0, 20, 10};
  EXPECT_EQ(bound<PlaskId::WinIntersectRect>()(&out, &a, &touching), 0);
  EXPECT_EQ((std::array{out.left, out.top, out.right, out.bottom}), (std::array{0, 0, 0, 0}));
  bound<PlaskId::WinUnionRect>()(&out, &a, &b);
  EXPECT_EQ((std::array{out.left, out.top, out.right, out.bottom}), (std::array{0, 0, 20, 20}));
  const RECT empty{3, 3, 3, 9};
  bound<PlaskId::WinUnionRect>()(&out, &empty, &b);
  EXPECT_EQ((std::array{out.left, out.top, out.right, out.bottom}), (std::array{5, 5, 20, 20}));
  bound<PlaskId::WinOffsetRect>()(&out, -5, 2);
  EXPECT_EQ((std::array{out.left, out.top, out.right, out.bottom}), (std::array{0, 7, 15, 22}));
}

TEST(WindowUtilities, TickCountIsMonotonic) {
  const auto ticks = bound<PlaskId::GetTickCount>();
  const DWORD first = ticks();
  bound<PlaskId::Sleep>()(2);
  EXPECT_GE(static_cast<DWORD>(ticks() - first), 2u);
}

TEST(KeyState, AsyncKeyStateFollowsTheHostTrackedModifiers) {
  const auto keyState = bound<PlaskId::GetAsyncKeyState>();
  releaseAllKeys();
  EXPECT_EQ(keyState(VK_SHIFT), 0);
  setKeyHeld(VK_SHIFT, true);
  setKeyHeld(VK_CONTROL, true);
  EXPECT_LT(keyState(VK_SHIFT), 0);
  EXPECT_LT(keyState(VK_CONTROL), 0);
  EXPECT_EQ(keyState(VK_MENU), 0);
  setKeyHeld(VK_SHIFT, false);
  EXPECT_EQ(keyState(VK_SHIFT), 0);
  EXPECT_EQ(keyState(-1), 0);
  EXPECT_EQ(keyState(4096), 0);
  releaseAllKeys();
  EXPECT_EQ(keyState(VK_CONTROL), 0);
}

TEST(ControlRegistry, CreatorsAreKeptOnceInOrderUntilRemoved) {
  const auto add = bound<PlaskId::PLASK_RegisterCustomControlCreator>();
  const auto remove = bound<PlaskId::PLASK_UnregisterCustomControlCreator>();
  add(creatorA);
  add(creatorB);
  add(creatorA);
  add(nullptr);
  EXPECT_EQ(registeredControlCreators(), (std::vector<PlaskControlCreator>{creatorA, creatorB}));
  remove(creatorA);
  EXPECT_EQ(registeredControlCreators(), (std::vector<PlaskControlCreator>{creatorB}));
  remove(creatorB);
  remove(creatorB);
  EXPECT_TRUE(registeredControlCreators().empty());
}

TEST(ProfileFiles, StringsIntsAndSectionsOnRealFiles) {
  TempConfig config;
  const std::string file = config.dir() + "/plugin.ini";
  const auto writeString = bound<PlaskId::WritePrivateProfileString>();
  const auto getString = bound<PlaskId::GetPrivateProfileString>();
  const auto getInt = bound<PlaskId::GetPrivateProfileInt>();
  ASSERT_EQ(writeString("view", "zoom", "42", file.c_str()), 1);
  ASSERT_EQ(writeString("view", "name", "a long value", file.c_str()), 1);
  ASSERT_EQ(writeString("other", "k", "v", file.c_str()), 1);
  EXPECT_EQ(getInt("VIEW", "Zoom", -1, file.c_str()), 42u);
  ASSERT_EQ(writeString("VIEW", "ZOOM", "43", file.c_str()), 1);  // updates, keeps the order
  EXPECT_EQ(getInt("view", "zoom", -1, file.c_str()), 43u);
  EXPECT_EQ(getInt("view", "missing", -1, file.c_str()), static_cast<UINT>(-1));
  char text[64];
  EXPECT_EQ(getString("view", "name", "def", text, sizeof text, file.c_str()), 12u);
  EXPECT_STREQ(text, "a long value");
  EXPECT_EQ(getString("view", "name", "def", text, 5, file.c_str()), 4u);
  EXPECT_STREQ(text, "a lo");
  EXPECT_EQ(getString("view", "missing", "def", text, sizeof text, file.c_str()), 3u);
  EXPECT_STREQ(text, "def");
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
}

TEST(ProfileFiles, WholeSectionsAndRelativeNames) {
  TempConfig config;
  const auto writeSection = bound<PlaskId::WritePrivateProfileSection>();
  const auto getSection = bound<PlaskId::GetPrivateProfileSection>();
  const char data[] = "a=1\0b=two\0";
  ASSERT_EQ(writeSection("s", data, "relative.ini"), 1);  // in the settings directory
  char text[64];
  EXPECT_EQ(getSection("s", text, sizeof text, "relative.ini"), 10u);
  EXPECT_EQ(std::string(text, 11), std::string("a=1\0b=two\0\0", 11));
  EXPECT_TRUE(std::filesystem::exists(config.dir() + "/spatiola/relative.ini"));
  // Too small a buffer: cut, still double-terminated, size - 2 as in Win32.
  EXPECT_EQ(getSection("s", text, 6, "relative.ini"), 4u);
  EXPECT_EQ(std::string(text, 6), std::string("a=1\0\0\0", 6));
}

TEST(ProfileFiles, StructsCarryAChecksum) {
  TempConfig config;
  const std::string file = config.dir() + "/s.ini";
  const auto writeStruct = bound<PlaskId::WritePrivateProfileStruct>();
  const auto getStruct = bound<PlaskId::GetPrivateProfileStruct>();
  const unsigned char bytes[3] = {0x01, 0xAB, 0xFF};
  ASSERT_EQ(writeStruct("s", "blob", bytes, 3, file.c_str()), 1);
  char text[32];
  bound<PlaskId::GetPrivateProfileString>()("s", "blob", "", text, sizeof text, file.c_str());
  EXPECT_STREQ(text, "01ABFFAB");  // checksum (1 + 171 + 255) mod 256 = 0xAB
  unsigned char back[3] = {};
  EXPECT_EQ(getStruct("s", "blob", back, 3, file.c_str()), 1);
  EXPECT_EQ(std::memcmp(back, bytes, 3), 0);
  EXPECT_EQ(getStruct("s", "blob", back, 2, file.c_str()), 0);  // size differs
  bound<PlaskId::WritePrivateProfileString>()("s", "blob", "01ABFF00", file.c_str());
  EXPECT_EQ(getStruct("s", "blob", back, 3, file.c_str()), 0);  // checksum differs
}
