// spatiola edit on a screen: the editor in a window of a private X server, closed as a window
// manager closes it, saving the state; and the errors before any window opens.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/host/spatiola/command_fixture.h"
#include "tests/host/spatiola/x_window_client.h"
#include "tests/host/window/x11_support.h"

namespace {

// Polls `done` every 50 ms for up to 20 s (the program starts under a loaded machine too).
template <typename Done>
bool waitFor(Done done) {
  for (int tries = 0; tries < 400; ++tries) {
    if (done()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

class EditWindow : public CommandTest {};

}  // namespace

TEST_F(EditWindow, OpensTheEditorAndSavesTheStateWhenClosed) {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"}) unsetenv(name);
  const CommandResult noDisplay = spatiola({"edit"});
  EXPECT_EQ(noDisplay.exitCode, 1);
  EXPECT_EQ(noDisplay.err,
            "spatiola: cannot open a window: no display (DISPLAY and WAYLAND_DISPLAY are not set); "
            "without a display use --headless --script FILE\n");

  XvfbServer server;
  std::string error;
  ASSERT_TRUE(server.start(1024, 768, &error)) << error;
  const CommandResult probe = spatiola({"edit", "--plugin", std::string(PROBE_DIR) + "/probe.so"});
  EXPECT_EQ(probe.exitCode, 1);
  EXPECT_TRUE(probe.err.ends_with(" has no editor (effFlagsHasEditor is clear)\n")) << probe.err;

  ChildProcess edit(
      {SPATIOLA_EXE, "edit", "--layout", "5.1 surround", "--save-state", path("closed.bin")});
  ASSERT_TRUE(edit.started());
  XWindowClient x;
  ASSERT_TRUE(x.connected());
  unsigned long window = 0;
  ASSERT_TRUE(waitFor([&] { return (window = x.find("Spatiola")) != 0 || edit.finished(); }));
  ASSERT_NE(window, 0ul) << "the program ended with " << edit.status() << " before its window";
  EXPECT_EQ(x.size(window), std::pair(851, 635)) << "six speaker rows";
  x.askToClose(window);
  ASSERT_TRUE(waitFor([&] { return edit.finished(); }));
  EXPECT_EQ(edit.status(), 0);
  const CommandResult scene = spatiola({"scene", "export", path("closed.bin")});
  EXPECT_NE(scene.out.find(R"("layout": "5.1 surround")"), std::string::npos) << scene.err;
}
