// The host functions a plug-in fetches by name, and the keyboard hooks it registers.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "host/services/fader_law.h"
#include "host/services/host_function_table.h"
#include "host/services/settings.h"
#include "host/window/accelerators.h"
#include "host/window/backend/headless_backend.h"
#include "host/window/core/window_system.h"
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
  setDisplayScaleOverride(320);
  const auto dpi = lookup<GetWindowDPIScalingForDialogFn>("GetWindowDPIScalingForDialog");
  EXPECT_EQ(dpi(nullptr), 320);
  {
    // A window of the window system has its top-level window's scale.
    winsys::WindowSystem system(std::make_unique<winsys::HeadlessBackend>());
    winsys::WindowSystem::setCurrent(&system);
    const HWND frame = system.createFrame("", 10, 10, 512, false);
    EXPECT_EQ((std::array{dpi(frame), dpi(nullptr)}), (std::array{512, 320}));
    winsys::WindowSystem::setCurrent(nullptr);
  }
  setDisplayScaleOverride(0);
  EXPECT_NEAR(lookup<DB2SLIDERFn>("DB2SLIDER")(faderPositionToDb(333.0)), 333.0, 1e-9);
  const char* own = "Speakers";  // localization keeps the plug-in's own texts
  EXPECT_EQ(lookup<localizeFuncFn>("__localizeFunc")(own, "spatiola", 0), own);
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
