// The host functions a plug-in fetches by name, and the keyboard hooks it registers.
#include <gtest/gtest.h>

#include <string>

#include "host/services/accelerators.h"
#include "host/services/fader_law.h"
#include "host/services/host_functions.h"
#include "host/services/settings.h"
#include "platform/host_functions.h"
#include "tests/host/temp_config.h"

namespace {

template <typename Fn>
Fn lookup(const char* name) {
  return reinterpret_cast<Fn>(findHostFunction(name));
}

int translate(MSG*, AcceleratorRegister*) {
  return 0;
}

}  // namespace

TEST(HostFunctions, TableListsAll39NamesWithTheOnesOffered) {
  const HostFunctionInfo* table = hostFunctionTable();
  std::set<std::string> offered;
  for (int i = 0; i < kHostFunctionCount; ++i) {
    if (table[i].offered) offered.insert(table[i].name);
  }
  EXPECT_STREQ(table[0].name, "GetResourcePath");
  EXPECT_STREQ(table[38].name, "__localizePrepareDialog");
  for (const char* name : {"get_ini_file", "SLIDER2DB", "DB2SLIDER", "plugin_register",
                           "fxGetSafeMode", "fxSetSafeMode", "GetWindowDPIScalingForDialog",
                           "__localizeFunc", "__localizePrepareDialog"}) {
    EXPECT_EQ(offered.count(name), 1u) << name;
  }
  EXPECT_EQ(findHostFunction("vac_createGroupsFromTab"), nullptr);
  EXPECT_EQ(findHostFunction("NoSuchHostFunction"), nullptr);
  EXPECT_EQ(findHostFunction(nullptr), nullptr);
}

// get_ini_file and SLIDER2DB are checked through the probe plug-in, which fetches them itself.
TEST(HostFunctions, SafeModeScaleFaderAndLocalization) {
  TempConfig config;
  const auto getSafe = lookup<fxGetSafeModeFn>("fxGetSafeMode");
  lookup<fxSetSafeModeFn>("fxSetSafeMode")("/p/spatiola.so", 0x11);
  EXPECT_EQ(getSafe("/p/spatiola.so"), 0x11);
  EXPECT_EQ(safeModeFlags("/p/spatiola.so"), 0x11);
  EXPECT_EQ(getSafe(nullptr), 0);
  const auto scale = lookup<GetWindowDPIScalingForDialogFn>("GetWindowDPIScalingForDialog");
  EXPECT_EQ(scale(nullptr), 256);  // headless
  setDisplayScaleOverride(320);
  EXPECT_EQ(scale(nullptr), 320);
  setDisplayScaleOverride(0);
  EXPECT_NEAR(lookup<DB2SLIDERFn>("DB2SLIDER")(faderPositionToDb(333.0)), 333.0, 1e-9);
  // Localization keeps the plug-in's own texts.
  const char* text = "Speakers";
  EXPECT_EQ(lookup<localizeFuncFn>("__localizeFunc")(text, "spatiola", 0), text);
  const auto prepare = lookup<localizePrepareDialogFn>("__localizePrepareDialog");
  EXPECT_EQ(prepare("spatiola_", nullptr, 101, nullptr, 0, nullptr, 5), nullptr);
}

TEST(Accelerators, RegisterAddsRemovesAndRefusesOtherNames) {
  const auto reg = lookup<plugin_registerFn>("plugin_register");
  AcceleratorRegister first{translate, true, nullptr};
  AcceleratorRegister second{translate, false, nullptr};
  EXPECT_EQ(reg("<accelerator", &first), 1);
  EXPECT_EQ(reg("<accelerator", &second), 1);
  EXPECT_EQ(reg("<accelerator", &first), 1);  // already there: kept once
  EXPECT_EQ(registeredAccelerators(), (std::vector<AcceleratorRegister*>{&second, &first}));
  EXPECT_EQ(reg("accelerator", &first), 0);
  EXPECT_EQ(reg("<hook", &first), 0);
  EXPECT_EQ(reg("<accelerator", nullptr), 0);
  EXPECT_EQ(reg("-accelerator", &first), 1);
  EXPECT_EQ(reg("-accelerator", &first), 0);
  EXPECT_EQ(registeredAccelerators(), (std::vector<AcceleratorRegister*>{&second}));
  EXPECT_EQ(reg("-accelerator", &second), 1);
  EXPECT_TRUE(registeredAccelerators().empty());
}
