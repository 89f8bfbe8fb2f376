// The SpaceView control creator through the life of several instances: registered with the
// window layer by the first live instance, unregistered by the last, always the same creator.
// Each case runs in a child process, since the binding and the instance count are process-wide.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "child_process.h"
#include "plugin_host.h"

namespace {

void recordRegister(PlaskControlCreator creator) {
  std::printf("register %p\n", reinterpret_cast<void*>(creator));
}
void recordUnregister(PlaskControlCreator creator) {
  std::printf("unregister %p\n", reinterpret_cast<void*>(creator));
}
int dummyFunction() {
  return 0;
}

// A window layer that records the creator calls; every other function is present and inert.
void* lendsCreatorRegistry(const char* name) {
  const std::string n = name;
  if (n == "PLASK_RegisterCustomControlCreator") return reinterpret_cast<void*>(&recordRegister);
  if (n == "PLASK_UnregisterCustomControlCreator") {
    return reinterpret_cast<void*>(&recordUnregister);
  }
  return reinterpret_cast<void*>(&dummyFunction);
}

// Runs `steps` in a fresh process: '+' makes an instance, '!' tries one without the ini file,
// a digit closes the instance made in that place. Answers the log with each creator call as
// "r"/"u" once all of them are seen to pass the same non-null creator.
std::string lifeOf(const std::string& steps) {
  const auto lines = linesOf(inChild([&steps] {
    PluginLibrary::instance().plaskDllMain(1, &lendsCreatorRegistry);
    TestHost host;
    std::vector<AEffect*> made;
    for (const char step : steps) {
      host.serveIniFile = step != '!';
      if (step == '+' || step == '!') {
        made.push_back(host.create());
        std::printf("%s%zu\n", made.back() ? "made" : "refused", made.size() - 1);
      } else {
        closeEffect(made[static_cast<std::size_t>(step - '0')]);
        std::printf("closed%c\n", step);
      }
    }
  }));
  std::string log;
  std::string creator;
  for (const std::string& line : lines) {
    const std::size_t space = line.find(' ');
    if (space != std::string::npos) {
      if (creator.empty()) creator = line.substr(space + 1);
      EXPECT_EQ(line.substr(space + 1), creator);
      EXPECT_NE(creator, "(nil)");
    }
    log += (log.empty() ? "" : " ") + (space == std::string::npos ? line : line.substr(0, 1));
  }
  return log;
}

}  // namespace

TEST(ControlCreator, FirstLiveInstanceRegistersLastUnregisters) {
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
}
