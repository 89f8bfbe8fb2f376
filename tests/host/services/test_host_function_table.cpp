// The host functions a plug-in fetches by name, and the keyboard hooks it registers.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "host/services/fader_law.h"
#include "host/services/host_function_table.h"
#include "host/services/settings.h"
#include "host/window/accelerators.h"
#include "platform/host_functions.h"
#include "tests/host/services/temp_config.h"

namespace {

template <typename Fn>
Fn lookup(const char* name) {
  return reinterpret_cast<Fn>(findHostFunction(name));
}

int translate(MSG*, AcceleratorRegister*) {
  return 0;
}

}  // namespace

// get_ini_file and SLIDER2DB are checked through the probe plug-in, which fetches them itself.
TEST(HostFunctions, SafeModePersistsOthersAnswerAsTheHost) {
  TempConfig config;
  EXPECT_EQ(findHostFunction("vac_createGroupsFromTab"), nullptr) << "listed but not offered";
  const auto setSafe = lookup<fxSetSafeModeFn>("fxSetSafeMode");
  for (const auto& [file, flags] :
       {std::pair{"/p/a.so", 5}, {"/odd/na=me[1];%.so", 2}, {"/p/a.so", 3}})
    setSafe(file, flags);
  const auto getSafe = lookup<fxGetSafeModeFn>("fxGetSafeMode");
  EXPECT_EQ((std::array{getSafe("/p/a.so"), getSafe("/odd/na=me[1];%.so"), getSafe("/p/b.so")}),
            (std::array{3, 2, 0}));
  // In the settings file, where a new process finds them.
  std::ifstream in(settingsFilePath());
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  EXPECT_NE(text.find("[safemode]\n/p/a.so=3\n"), std::string::npos) << text;
  EXPECT_NE(text.find("/odd/na%3Dme%5B1]%3B%25.so=2"), std::string::npos) << text;
  EXPECT_NEAR(lookup<DB2SLIDERFn>("DB2SLIDER")(faderPositionToDb(333.0)), 333.0, 1e-9);
}

TEST(Accelerators, RegisterAddsRemovesAndRefusesOtherNames) {
  const auto reg = lookup<plugin_registerFn>("plugin_register");
  AcceleratorRegister first{translate, true, nullptr}, second{translate, false, nullptr};
  // "<" puts a hook in front (once), "-" removes it; other names and null are refused.
  EXPECT_EQ((std::array{reg("<accelerator", &first), reg("<accelerator", &second),
                        reg("<accelerator", &first), reg("accelerator", &first),
                        reg("<accelerator", nullptr)}),
            (std::array{1, 1, 1, 0, 0}));
  EXPECT_EQ(registeredAccelerators(), (std::vector<AcceleratorRegister*>{&second, &first}));
  EXPECT_EQ((std::array{reg("-accelerator", &first), reg("-accelerator", &first),
                        reg("-accelerator", &second)}),
            (std::array{1, 0, 1}));
  EXPECT_TRUE(registeredAccelerators().empty());
}
