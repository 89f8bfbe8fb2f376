// The host functions a plug-in fetches by name, and the keyboard hooks it registers.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
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

std::string readSettings() {
  std::ifstream in(settingsFilePath());
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

int translate(MSG*, AcceleratorRegister*) {
  return 0;
}

}  // namespace

// The offered functions are fetched by name below and by the probe plug-in; here the rest.
TEST(HostFunctions, TableListsAll39NamesAndOnlyOffersSome) {
  EXPECT_STREQ(hostFunctionTable()[0].name, "GetResourcePath");
  EXPECT_STREQ(hostFunctionTable()[kHostFunctionCount - 1].name, "__localizePrepareDialog");
  EXPECT_EQ(kHostFunctionCount, 39);
  for (const char* name :
       {"vac_createGroupsFromTab", "NoSuchHostFunction", static_cast<const char*>(nullptr)})
    EXPECT_EQ(findHostFunction(name), nullptr) << (name ? name : "null");
}

// get_ini_file and SLIDER2DB are checked through the probe plug-in, which fetches them itself.
TEST(HostFunctions, SafeModeScaleFaderAndLocalization) {
  TempConfig config;
  // Safe-mode flags persist per plug-in file, in the settings file where a new process finds them.
  const auto getSafe = lookup<fxGetSafeModeFn>("fxGetSafeMode");
  const auto setSafe = lookup<fxSetSafeModeFn>("fxSetSafeMode");
  for (const auto& [file, flags] :
       {std::pair{"/p/a.so", 5}, {"/odd/na=me[1];%.so", 2}, {"/p/a.so", 3}})
    setSafe(file, flags);
  EXPECT_EQ((std::array{getSafe("/p/a.so"), getSafe("/odd/na=me[1];%.so"), getSafe("/p/b.so"),
                        getSafe(nullptr)}),
            (std::array{3, 2, 0, 0}));
  const std::string text = readSettings();
  EXPECT_NE(text.find("[safemode]\n/p/a.so=3\n"), std::string::npos) << text;
  EXPECT_NE(text.find("/odd/na%3Dme%5B1]%3B%25.so=2"), std::string::npos) << text;
  const auto scale = lookup<GetWindowDPIScalingForDialogFn>("GetWindowDPIScalingForDialog");
  setDisplayScaleOverride(320);
  EXPECT_EQ(scale(nullptr), 320);  // headless: the host's display scale
  setDisplayScaleOverride(0);
  EXPECT_NEAR(lookup<DB2SLIDERFn>("DB2SLIDER")(faderPositionToDb(333.0)), 333.0, 1e-9);
  // Localization keeps the plug-in's own texts.
  const char* own = "Speakers";
  EXPECT_EQ(lookup<localizeFuncFn>("__localizeFunc")(own, "spatiola", 0), own);
  const auto prepare = lookup<localizePrepareDialogFn>("__localizePrepareDialog");
  EXPECT_EQ(prepare("spatiola_", nullptr, 101, nullptr, 0, nullptr, 5), nullptr);
}

TEST(Accelerators, RegisterAddsRemovesAndRefusesOtherNames) {
  const auto reg = lookup<plugin_registerFn>("plugin_register");
  AcceleratorRegister first{translate, true, nullptr};
  AcceleratorRegister second{translate, false, nullptr};
  // "<" puts a hook in front (once), "-" removes it; other names and null are refused.
  EXPECT_EQ((std::array{reg("<accelerator", &first), reg("<accelerator", &second),
                        reg("<accelerator", &first), reg("accelerator", &first),
                        reg("<hook", &first), reg("<accelerator", nullptr)}),
            (std::array{1, 1, 1, 0, 0, 0}));
  EXPECT_EQ(registeredAccelerators(), (std::vector<AcceleratorRegister*>{&second, &first}));
  EXPECT_EQ((std::array{reg("-accelerator", &first), reg("-accelerator", &first),
                        reg("-accelerator", &second)}),
            (std::array{1, 0, 1}));
  EXPECT_TRUE(registeredAccelerators().empty());
}
