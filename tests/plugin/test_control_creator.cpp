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

// Makes two instances, then closes them in `closeOrder` (0 = the first made); each step is
// marked in the output between the creator calls it caused.
std::vector<std::string> twoInstanceLife(const std::vector<int>& closeOrder) {
  return linesOf(inChild([&closeOrder] {
    PluginLibrary::instance().plaskDllMain(1, &lendsCreatorRegistry);
    TestHost host;
    AEffect* effects[2] = {host.create(), nullptr};
    std::printf("made first\n");
    effects[1] = host.create();
    std::printf("made second\n");
    for (const int which : closeOrder) {
      closeEffect(effects[which]);
      std::printf("closed %s\n", which == 0 ? "first" : "second");
    }
  }));
}

std::string creatorIn(const std::string& line) {
  return line.substr(line.find(' ') + 1);
}

}  // namespace

TEST(ControlCreator, FirstInstanceRegistersLastUnregistersTheSameCreator) {
  const struct {
    const char* name;
    std::vector<int> closeOrder;
    const char* firstClosed;
    const char* lastClosed;
  } cases[] = {{"first made closes first", {0, 1}, "closed first", "closed second"},
               {"second made closes first", {1, 0}, "closed second", "closed first"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<std::string> lines = twoInstanceLife(c.closeOrder);
    ASSERT_EQ(lines.size(), 6u) << ::testing::PrintToString(lines);
    const std::string creator = creatorIn(lines[0]);
    EXPECT_NE(creator, "(nil)");
    EXPECT_EQ(lines,
              (std::vector<std::string>{"register " + creator, "made first", "made second",
                                        c.firstClosed, "unregister " + creator, c.lastClosed}));
  }
}

TEST(ControlCreator, AnInstanceAfterTheLastClosedRegistersAgain) {
  const std::vector<std::string> lines = linesOf(inChild([] {
    PluginLibrary::instance().plaskDllMain(1, &lendsCreatorRegistry);
    TestHost host;
    for (int round = 1; round <= 2; ++round) {
      AEffect* effect = host.create();
      std::printf("made %d\n", round);
      closeEffect(effect);
      std::printf("closed %d\n", round);
    }
  }));
  ASSERT_EQ(lines.size(), 8u) << ::testing::PrintToString(lines);
  const std::string registered = "register " + creatorIn(lines[0]);
  const std::string unregistered = "unregister " + creatorIn(lines[0]);
  EXPECT_EQ(lines, (std::vector<std::string>{registered, "made 1", unregistered, "closed 1",
                                             registered, "made 2", unregistered, "closed 2"}));
}

TEST(ControlCreator, AnInstanceRefusedForWantOfTheIniFileRegistersNothing) {
  const std::vector<std::string> lines = linesOf(inChild([] {
    PluginLibrary::instance().plaskDllMain(1, &lendsCreatorRegistry);
    TestHost host;
    host.serveIniFile = false;
    std::printf("made %s\n", host.create() == nullptr ? "none" : "one");
  }));
  EXPECT_EQ(lines, (std::vector<std::string>{"made none"}));
}
