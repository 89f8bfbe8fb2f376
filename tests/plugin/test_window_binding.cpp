// Binding the host's window layer through PLASK_dllMain. The binding is process-wide, so each case
// runs in a child process and reports what it saw on a pipe.
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

// A window layer lending three functions, each recording its use.
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
void* lendsThree(const char* name) {
  const std::string n = name;
  if (n == "lstrcpyn") return reinterpret_cast<void*>(&recordingCopy);
  if (n == "GetAsyncKeyState") return reinterpret_cast<void*>(&shiftHeld);
  return reinterpret_cast<void*>(&dummyFunction);  // every other name: present, does nothing
}

}  // namespace

TEST(WindowBinding, AGetterThatKnowsNoNamesBindsEverySlotToTheStub) {
  const auto lines = linesOf(inChild([] {
    const PluginLibrary& library = PluginLibrary::instance();
    std::printf("result %d\n", library.plaskDllMain(1, &knowsNothing));
    TestHost host;
    AEffect* effect = host.create();  // stubs answer 0: construction still works
    std::printf("name %s\n", textOf(effect, effGetEffectName).c_str());
    closeEffect(effect);
  }));
  ASSERT_EQ(lines.size(), 337u);
  for (int i = 0; i < kPlaskFunctionCount; ++i) {
    EXPECT_EQ(lines[static_cast<std::size_t>(i)],
              std::string("PLASK API not found: ") + kPlaskNames[i]);
  }
  EXPECT_EQ(lines[335], "result 1");
  EXPECT_EQ(lines[336], "name Spatiola");
}

TEST(WindowBinding, OnlyProcessAttachWithAGetterBinds) {
  const auto lines = linesOf(inChild([] {
    const PluginLibrary& library = PluginLibrary::instance();
    std::printf("detach %d\n", library.plaskDllMain(0, &knowsNothing));
    std::printf("no getter %d\n", library.plaskDllMain(1, nullptr));
    std::printf("module %d %d\n", library.dllMain(1), library.dllMain(0));
  }));
  EXPECT_EQ(lines, (std::vector<std::string>{"detach 1", "no getter 0", "module 1 1"}));
}

TEST(WindowBinding, BoundFunctionsServeTheDispatcherAndTheModel) {
  const auto lines = linesOf(inChild([] {
    PluginLibrary::instance().plaskDllMain(1, &lendsThree);
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
  EXPECT_EQ(lines, (std::vector<std::string>{"lstrcpyn 32", "vendor Tolvek",
                                             "first speaker 0.500 0.750 0.250"}));
}
