// spatiola edit on a screen: the editor in a window of a private X server, edited with the real
// mouse and keyboard and closed as a window manager closes it, saving the state.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/host/spatiola/command_fixture.h"
#include "tests/host/spatiola/x_window_client.h"
#include "tests/host/window/x11_support.h"

namespace {

using EditWindow = CommandTest;

// xdotool's commands against `window` (a decimal X id); false when it failed.
bool xdotool(unsigned long window, const std::string& commands) {
  std::string line = commands;
  for (std::size_t at = 0; (at = line.find("W", at)) != std::string::npos;) {
    line.replace(at, 1, std::to_string(window));
  }
  return std::system(("xdotool " + line + " >/dev/null 2>&1").c_str()) == 0;
}

void pause(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

// Input 1 dragged right, "3" typed as the input count, input 1 renamed.
TEST_F(EditWindow, MouseAndKeysEditTheSetupThatIsSavedOnClosing) {
  if (std::system("command -v xdotool >/dev/null 2>&1") != 0) GTEST_SKIP() << "no xdotool";
  XvfbServer server;
  std::string error;
  ASSERT_TRUE(server.start(1024, 768, &error)) << error;
  ChildProcess edit({SPATIOLA_EXE, "edit", "--save-state", path("edited.bin")});
  ASSERT_TRUE(edit.started());
  XWindowClient x;
  ASSERT_TRUE(x.connected());
  unsigned long window = 0;
  ASSERT_TRUE(eventually([&] { return (window = x.find("Spatiola")) != 0 || edit.finished(); },
                         std::chrono::seconds(20)));
  ASSERT_NE(window, 0ul) << "the program ended with " << edit.status() << " before its window";
  EXPECT_EQ(x.size(window), std::pair(851, 571)) << "sized to the editor";
  pause(300);
  ASSERT_TRUE(xdotool(window,
                      "mousemove --window W 203 188 mousedown 1 mousemove --window W 208 "
                      "188 mousemove --window W 213 188 mouseup 1"));
  ASSERT_TRUE(xdotool(window, "mousemove --window W 692 27 click 1 key End BackSpace type 3"));
  pause(800);
  ASSERT_TRUE(xdotool(window, "mousemove --window W 180 502 click --repeat 2 --delay 80 1"));
  pause(200);
  ASSERT_TRUE(xdotool(window, "type Lead"));
  ASSERT_TRUE(xdotool(window, "key Return"));
  pause(300);
  x.askToClose(window);
  ASSERT_TRUE(eventually([&] { return edit.finished(); }, std::chrono::seconds(20)));
  EXPECT_EQ(edit.status(), 0);
  const std::string scene = spatiola({"scene", "export", path("edited.bin")}).out;
  for (const char* part : {R"("name": "Lead")", R"("name": "channel 3")"})
    EXPECT_NE(scene.find(part), std::string::npos) << part << "\n" << scene;
  EXPECT_EQ(scene.find(R"("x": -0.25,)"), std::string::npos) << "input 1 moved";
}

}  // namespace
