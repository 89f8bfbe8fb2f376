// Binding the host's window layer through PLASK_dllMain, and the control creator lent to it. The
// binding and the instance count are process-wide, so each case runs in a child process and
// reports what it saw on a pipe.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "child_process.h"
#include "plugin_host.h"

namespace {

void* knowsNothing(const char*) {
  return nullptr;
}

void recordRegister(PlaskControlCreator creator) {
  std::printf("register %p\n", reinterpret_cast<void*>(creator));
}
void recordUnregister(PlaskControlCreator creator) {
  std::printf("unregister %p\n", reinterpret_cast<void*>(creator));
}

// A window layer lending a few functions, each recording its use; every other name is present and
// does nothing.
char* recordingCopy(char* destination, const char* source, int limit) {
  std::printf("lstrcpyn %d\n", limit);
  std::snprintf(destination, static_cast<std::size_t>(limit), "%s", source);
  return destination;
}
short shiftHeld(int key) {
  return key == 0x10 ? -32768 : 0;
}
int dummyFunction() {
  return 0;
}
void* lendsWindowLayer(const char* name) {
  const std::string n = name;
  if (n == "lstrcpyn") return reinterpret_cast<void*>(&recordingCopy);
  if (n == "GetAsyncKeyState") return reinterpret_cast<void*>(&shiftHeld);
  if (n == "PLASK_RegisterCustomControlCreator") return reinterpret_cast<void*>(&recordRegister);
  if (n == "PLASK_UnregisterCustomControlCreator") {
    return reinterpret_cast<void*>(&recordUnregister);
  }
  return reinterpret_cast<void*>(&dummyFunction);
}

}  // namespace

TEST(WindowBinding, OnlyProcessAttachWithAGetterBindsAndUnknownNamesGetTheStub) {
  const auto lines = linesOf(inChild([] {
    const PluginLibrary& library = PluginLibrary::instance();
    std::printf("detach %d, no getter %d\n", library.plaskDllMain(0, &knowsNothing),
                library.plaskDllMain(1, nullptr));
    std::printf("result %d\n", library.plaskDllMain(1, &knowsNothing));
    TestHost host;
    AEffect* effect = host.create();  // stubs answer 0: construction still works
    std::printf("name %s\n", textOf(effect, effGetEffectName).c_str());
    closeEffect(effect);
    std::printf("module %d %d\n", library.dllMain(1), library.dllMain(0));
  }));
  ASSERT_EQ(lines.size(), 339u);
  EXPECT_EQ(lines[0], "detach 1, no getter 0");
  for (int i = 0; i < kPlaskFunctionCount; ++i) {
    EXPECT_EQ(lines[static_cast<std::size_t>(i) + 1],
              std::string("PLASK API not found: ") + kPlaskNames[i]);
  }
  EXPECT_EQ(std::vector<std::string>(lines.end() - 3, lines.end()),
            (std::vector<std::string>{"result 1", "name Spatiola", "module 1 1"}));
}

TEST(WindowBinding, BoundFunctionsServeTheDispatcherAndTheModel) {
  const auto lines = linesOf(inChild([] {
    PluginLibrary::instance().plaskDllMain(1, &lendsWindowLayer);
    TestHost host;
    host.channelCount = 40;  // a custom layout of 40: with Shift held, on the ring
    AEffect* effect = host.create();
    std::printf("vendor %s\n", textOf(effect, effGetVendorString).c_str());
    const int speaker0 = 4 + 10 * 40;
    std::printf("first speaker %.3f %.3f %.3f\n", effect->getParameter(effect, speaker0 + 1),
                effect->getParameter(effect, speaker0 + 2),
                effect->getParameter(effect, speaker0 + 4));
    closeEffect(effect);
  }));
  ASSERT_EQ(lines.size(), 5u);  // between the creator's register and unregister
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end() - 1),
            (std::vector<std::string>{"lstrcpyn 32", "vendor Tolvek",
                                      "first speaker 0.500 0.750 0.250"}));
}

namespace {

// Runs `steps` in a fresh process: '+' makes an instance, '!' tries one without the ini file,
// a digit closes the instance made in that place. Answers the log with each creator call as
// "r"/"u" once all of them are seen to pass the same non-null creator.
std::string lifeOf(const std::string& steps) {
  const auto lines = linesOf(inChild([&steps] {
    PluginLibrary::instance().plaskDllMain(1, &lendsWindowLayer);
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

// The SpaceView control creator is registered by the first live instance, unregistered by the
// last, and is always the same creator.
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
