// The SDL2 back-end in a real X server: a small dialog in a window, clicked, its fader dragged and
// its edit typed into with xdotool; what the dialog procedure received is checked, and a dump of
// the real window must show what the window system painted.
#include <SDL.h>

#include <cstdio>
#include <optional>

#include "host/graphics/bitmap.h"
#include "host/graphics/png_io.h"
#include "host/window/backend/sdl_backend.h"
#include "tests/host/window/test_dialog.h"
#include "tests/host/window/x11_support.h"

using namespace winsys;

TEST(SdlInX11, ClicksDragsAndTypingReachTheDialog) {
  XvfbServer server;
  std::string error;
  ASSERT_TRUE(server.start(640, 480, &error)) << error;
  std::unique_ptr<SdlBackend> sdl = SdlBackend::open(&error);
  ASSERT_NE(sdl, nullptr) << error;
  SdlBackend& backend = *sdl;
  WindowSystem system(std::move(sdl));
  WindowSystem::setCurrent(&system);
  recorded().clear();
  const HWND top = system.createFrame("Spatiola window test", 300, 200, 256, true);
  const HWND dialog = createDialog(system, &testDialogResource, 77, top, recordingDialogProc, 0);
  system.show(system.find(dialog), true);
  system.paint();
  const auto control = [&](int id) { return findControl(system, dialog, id); };
  const std::string window = std::to_string(backend.x11WindowId(system.find(top)->surface->native));
  ASSERT_NE(window, "0");
  // "mousemove" to the centre of a control, shifted by dx; each step settles for 150 ms.
  const auto moveTo = [&](int id, int dx = 0) {
    const RECT r = windowRectIn(system, control(id), top);
    return " mousemove --window " + window + " " + std::to_string((r.left + r.right) / 2 + dx) +
           " " + std::to_string((r.top + r.bottom) / 2);
  };
  const std::string dump = "x11_dialog.xwd";
  // Started from the running loop: a click sent before the window is ready is lost.
  const std::vector<std::string> steps{
      "sh", "-ec",
      "sleep 0.15; xdotool" + moveTo(kGo) + " click 1 sleep 0.15" + moveTo(kFader, -30) +
          " mousedown 1" + moveTo(kFader) + moveTo(kFader, 30) + " mouseup 1 sleep 0.15" +
          moveTo(kEdit) +
          " click 1 sleep 0.15 type --delay 30 'Ab 7'\nsleep 0.15\n"
          "xwd -silent -id " +
          window + " -out " + dump + "; sleep 0.15"};
  std::optional<ChildProcess> script;
  const std::uint64_t deadline = system.nowMs() + 30000;
  system.runUntilClosed(
      top,
      [&] {
        if (!script) script.emplace(steps);
        if (script->finished() || system.nowMs() > deadline) system.requestQuit();
      },
      20);
  ASSERT_TRUE(script && script->finished()) << "the script did not finish in time";
  EXPECT_EQ(script->status(), 0);

  // What the dialog procedure received.
  std::vector<int> clicks, scrolls, changes;
  for (const Recorded& r : recorded()) {
    if (r.message == WM_COMMAND && lowWord(r.wParam) == kGo) clicks.push_back(highWord(r.wParam));
    if (r.message == WM_COMMAND && lowWord(r.wParam) == kEdit && highWord(r.wParam) == EN_CHANGE) {
      changes.push_back(0);
    }
    if (r.message == WM_HSCROLL) scrolls.push_back(lowWord(r.wParam));
  }
  EXPECT_EQ(clicks, (std::vector<int>{BN_CLICKED}));
  ASSERT_GE(scrolls.size(), 2u);
  EXPECT_EQ(scrolls.front(), SB_THUMBTRACK);
  EXPECT_EQ(scrolls.back(), SB_ENDSCROLL);
  EXPECT_GT(system.send(control(kFader), TBM_GETPOS, 0, 0), 300);
  char typed[32] = {};
  system.send(control(kEdit), WM_GETTEXT, sizeof typed, reinterpret_cast<LPARAM>(typed));
  EXPECT_STREQ(typed, "Ab 7");
  EXPECT_EQ(changes.size(), 4u);

  // The window on the screen shows what was painted.
  const std::unique_ptr<DAUB_IBitmap> shown = readXwd(dump, &error);
  std::remove(dump.c_str());
  ASSERT_NE(shown, nullptr) << error;
  const std::unique_ptr<graphics::CairoBitmap> painted = system.render(system.find(top));
  graphics::writePng(shown.get(), "x11_dialog.png");
  const graphics::ImageDifference difference =
      graphics::compareBitmaps(shown.get(), painted.get(), 2);
  EXPECT_TRUE(difference.matches()) << "first at " << difference.firstX << "," << difference.firstY;
  system.destroy(top);
  WindowSystem::setCurrent(nullptr);
}

// Letters, digits, space, End and BackSpace are typed end to end.
TEST(SdlKeys, MapToTheVirtualKeysOfWin32) {
  const std::pair<int, int> keys[] = {{SDLK_RETURN, VK_RETURN},
                                      {SDLK_RSHIFT, VK_SHIFT},
                                      {SDLK_RALT, VK_MENU},
                                      {SDLK_PAGEDOWN, VK_NEXT},
                                      {SDLK_F1, 0}};
  for (const auto& [sdl, virtualKey] : keys) EXPECT_EQ(virtualKeyOfSdlKey(sdl), virtualKey) << sdl;
}
