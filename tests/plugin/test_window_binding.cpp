// The control creator lent to the host's window layer bound through PLASK_dllMain. The binding is
// process-wide: this program binds once, and every case starts and ends with no instance.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plugin_host.h"

namespace {

std::string creatorLog;
std::vector<PlaskControlCreator> creators;

void recordRegister(PlaskControlCreator creator) {
  creatorLog += " r";
  creators.push_back(creator);
}
void recordUnregister(PlaskControlCreator creator) {
  creatorLog += " u";
  creators.push_back(creator);
}
int dummyFunction() {
  return 0;
}
// A window layer whose creator functions record their use; every other name does nothing.
void* lendsWindowLayer(const char* name) {
  const std::string n = name;
  if (n == "PLASK_RegisterCustomControlCreator") return reinterpret_cast<void*>(&recordRegister);
  if (n == "PLASK_UnregisterCustomControlCreator") {
    return reinterpret_cast<void*>(&recordUnregister);
  }
  return reinterpret_cast<void*>(&dummyFunction);
}

// Runs `steps`: '+' makes an instance, '!' tries one without the ini file, a digit closes the
// instance made in that place. Answers the log of instances and creator calls ("r"/"u").
std::string lifeOf(const std::string& steps) {
  TestHost host;
  std::vector<AEffect*> made;
  creatorLog.clear();
  for (const char step : steps) {
    host.serveIniFile = step != '!';
    if (step == '+' || step == '!') {
      made.push_back(host.create());
      creatorLog += (made.back() ? " made" : " refused") + std::to_string(made.size() - 1);
    } else {
      closeEffect(made[static_cast<std::size_t>(step - '0')]);
      creatorLog += std::string(" closed") + step;
    }
  }
  return creatorLog.substr(1);
}

}  // namespace

// The SpaceView control creator is registered by the first live instance, unregistered by the
// last, and is always the same creator.
TEST(ControlCreator, FirstLiveInstanceRegistersLastUnregisters) {
  ASSERT_TRUE(PluginLibrary::instance().loaded()) << dlerror();
  ASSERT_EQ(PluginLibrary::instance().plaskDllMain(1, &lendsWindowLayer), 1);
  const struct {
    const char* steps;
    const char* log;
  } cases[] = {
      {"++01", "r made0 made1 closed0 u closed1"},
      {"++10", "r made0 made1 closed1 u closed0"},
      {"+0+1", "r made0 u closed0 r made1 u closed1"},  // again after the last one closed
      {"!", "refused0"},
  };
  for (const auto& c : cases) EXPECT_EQ(lifeOf(c.steps), c.log) << c.steps;
  ASSERT_FALSE(creators.empty());
  EXPECT_NE(creators[0], nullptr);
  EXPECT_EQ(creators, std::vector<PlaskControlCreator>(creators.size(), creators[0]));
}
