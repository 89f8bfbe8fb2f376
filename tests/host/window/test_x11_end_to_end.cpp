// The SDL2 back-end in a real X server: a small dialog in a window, clicked, its fader dragged and
// its edit typed into with xdotool; what the dialog procedure received is checked, and a real
// screenshot of the screen (x11_dialog.png, next to the test) must show what the window system
// painted.
#include <SDL.h>

#include <cstdio>

#include "host/graphics/bitmap.h"
#include "host/graphics/drawing.h"
#include "host/graphics/png_io.h"
#include "host/window/backend/sdl_backend.h"
#include "tests/host/window/test_dialog.h"
#include "tests/host/window/x11_support.h"

using namespace winsys;

namespace {

// Runs one command after the other, each when the one before has ended and the window system had
// a moment to take its events.
class Script {
 public:
  explicit Script(std::vector<std::vector<std::string>> steps) : steps_(std::move(steps)) {}
  // Called from the event loop; true when every step has run.
  bool advance(std::uint64_t nowMs) {
    if (current_ != nullptr && !current_->finished()) return false;
    if (current_ != nullptr) {
      statuses_.push_back(current_->status());
      current_.reset();
      settledAt_ = nowMs + 150;
    }
    if (nowMs < settledAt_) return false;
    if (next_ == steps_.size()) return true;
    current_ = std::make_unique<ChildProcess>(steps_[next_++]);
    return false;
  }
  const std::vector<int>& statuses() const { return statuses_; }

 private:
  std::vector<std::vector<std::string>> steps_;
  std::size_t next_ = 0;
  std::unique_ptr<ChildProcess> current_;
  std::vector<int> statuses_;
  std::uint64_t settledAt_ = 0;
};

std::string text(int value) {
  return std::to_string(value);
}

}  // namespace

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
  const auto centre = [&](int id) {
    const RECT r = windowRectIn(system, control(id), top);
    return std::pair{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
  };
  const std::string window = std::to_string(backend.x11WindowId(system.find(top)->surface->native));
  ASSERT_NE(window, "0");
  const auto [goX, goY] = centre(kGo);
  const auto [faderX, faderY] = centre(kFader);
  const auto [editX, editY] = centre(kEdit);
  const std::string dump = "x11_dialog.xwd";
  Script script({
      {"xdotool", "mousemove", "--window", window, text(goX), text(goY), "click", "1"},
      {"xdotool",    "mousemove",       "--window",   window,      text(faderX - 30),
       text(faderY), "mousedown",       "1",          "mousemove", "--window",
       window,       text(faderX),      text(faderY), "mousemove", "--window",
       window,       text(faderX + 30), text(faderY), "mouseup",   "1"},
      {"xdotool", "mousemove", "--window", window, text(editX), text(editY), "click", "1"},
      {"xdotool", "type", "--delay", "30", "Ab 7"},
      {"xwd", "-root", "-silent", "-out", dump},
  });
  const std::uint64_t deadline = system.nowMs() + 30000;
  bool done = false;
  system.runUntilClosed(
      top,
      [&] {
        done = script.advance(system.nowMs());
        if (done || system.nowMs() > deadline) system.requestQuit();
      },
      20);
  ASSERT_TRUE(done) << "the script did not finish in time";
  EXPECT_EQ(script.statuses(), (std::vector<int>{0, 0, 0, 0, 0}));

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

  // The screen shows what was painted.
  const std::unique_ptr<DAUB_IBitmap> screen = readXwd(dump, &error);
  std::remove(dump.c_str());
  ASSERT_NE(screen, nullptr) << error;
  const std::unique_ptr<graphics::CairoBitmap> painted = system.render(system.find(top));
  const int left = (640 - 300) / 2, topEdge = (480 - 200) / 2;
  std::unique_ptr<DAUB_IBitmap> shown(graphics::DAUB_CreateBitmap(DAUB_BITMAP_MEMORY, 300, 200));
  graphics::DAUB_Blit(shown.get(), screen.get(), 0, 0, left, topEdge, 300, 200, 1.0f, 0);
  graphics::writePng(shown.get(), "x11_dialog.png");
  const graphics::ImageDifference difference =
      graphics::compareBitmaps(shown.get(), painted.get(), 2);
  EXPECT_EQ(difference.differingPixels, 0)
      << "first at " << difference.firstX << "," << difference.firstY;
  system.destroy(top);
  WindowSystem::setCurrent(nullptr);
}

TEST(SdlKeys, MapToTheVirtualKeysOfWin32) {
  const std::pair<int, int> keys[] = {{SDLK_a, 'A'},
                                      {SDLK_z, 'Z'},
                                      {SDLK_7, '7'},
                                      {SDLK_RETURN, VK_RETURN},
                                      {SDLK_TAB, VK_TAB},
                                      {SDLK_ESCAPE, VK_ESCAPE},
                                      {SDLK_BACKSPACE, VK_BACK},
                                      {SDLK_RSHIFT, VK_SHIFT},
                                      {SDLK_LCTRL, VK_CONTROL},
                                      {SDLK_RALT, VK_MENU},
                                      {SDLK_PAGEDOWN, VK_NEXT},
                                      {SDLK_F1, 0}};
  for (const auto& [sdl, virtualKey] : keys) EXPECT_EQ(virtualKeyOfSdlKey(sdl), virtualKey) << sdl;
}
