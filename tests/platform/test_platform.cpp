// The declarations both sides of the host boundary compile against.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "platform/host_functions.h"
#include "platform/plask_api.h"
#include "platform/vst2.h"

TEST(PlatformAbi, UniqueIdPacksFirstCharacterHighest) {
  const std::int32_t id = fourCharCode('p', 'k', 'o', 'w');
  char bytes[4];
  std::memcpy(bytes, &id, 4);
  EXPECT_EQ(std::string(bytes, 4), "wokp");
  EXPECT_EQ(kEffectMagic, fourCharCode('V', 's', 't', 'P'));
}

TEST(PlatformAbi, ExtensionConstantsAreThe32BitPatterns) {
  EXPECT_EQ(static_cast<std::uint32_t>(kHostExtensionOpcode), 0xdeadbeefu);
  EXPECT_EQ(static_cast<std::uint32_t>(kHostFunctionLookupIndex), 0xdeadf00du);
  EXPECT_EQ(static_cast<std::uint32_t>(kHostChannelCountIndex), 0xdeadf00eu);
  EXPECT_LT(kExtensionCanDoAnswer, 0);  // a negative 32-bit value, widened
}

TEST(WindowLayerTable, Holds335DistinctNamesInImportOrder) {
  std::set<std::string> names(std::begin(kPlaskNames), std::end(kPlaskNames));
  EXPECT_EQ(names.size(), 335u);
  EXPECT_STREQ(kPlaskNames[0], "BeginPaint");
  EXPECT_STREQ(kPlaskNames[static_cast<int>(PlaskId::GetAsyncKeyState)], "GetAsyncKeyState");
  EXPECT_STREQ(kPlaskNames[334], "PLASK_initargs");
  int prefixed = 0;
  for (const char* name : kPlaskNames) prefixed += std::strncmp(name, "PLASK_", 6) == 0;
  EXPECT_EQ(prefixed, 94);
}

TEST(HostFunctionTable, Lists39NamesInLookupOrder) {
  const char* names[] = {
#define HOST_NAME(name, type) #name,
      HOST_FUNCTION_LIST(HOST_NAME)
#undef HOST_NAME
  };
  ASSERT_EQ(std::size(names), static_cast<std::size_t>(kHostFunctionCount));
  EXPECT_STREQ(names[1], "get_ini_file");
  EXPECT_STREQ(names[9], "GetWindowDPIScalingForDialog");
  EXPECT_STREQ(names[10], "DAUB_CreateBitmap");
  EXPECT_STREQ(names[33], "DAUB_DrawText");
  EXPECT_STREQ(names[38], "__localizePrepareDialog");
}
