// The SDL2 back-end: a real window per top-level window, real mouse, wheel and keys, text input,
// the real clock, system cursors, message boxes, and the display's HiDPI scale.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "host/window/backend/backend.h"

struct SDL_Cursor;
struct SDL_Window;
union SDL_Event;

namespace winsys {

class SdlBackend final : public Backend {
 public:
  // Null, with the reason in `error`, when SDL's video cannot start (no display).
  static std::unique_ptr<SdlBackend> open(std::string* error);
  ~SdlBackend() override;
  SdlBackend(const SdlBackend&) = delete;
  SdlBackend& operator=(const SdlBackend&) = delete;

  void* openSurface(HWND owner, const char* title, int width, int height) override;
  void showSurface(void* surface, bool visible) override;
  void resizeSurface(void* surface, int width, int height) override;
  void closeSurface(void* surface) override;
  void setSurfaceTitle(void* surface, const char* title) override;
  void present(void* surface, graphics::CairoBitmap& backBuffer,
               const std::vector<RECT>& rects) override;

  std::optional<InputEvent> waitEvent(int timeoutMs) override;
  bool canWait() const override { return true; }
  bool keyHeld(int virtualKey) const override;

  std::uint64_t nowMs() const override;
  void setCursor(CursorShape shape) override;
  int messageBox(void* surface, const char* text, const char* caption, int style) override;
  int displayScale256() const override;

  // The X11 window behind a surface (0 on other video drivers), for tools that drive it.
  unsigned long x11WindowId(void* surface) const;

 private:
  void setX11Title(void* surface, const char* title) const;
  static void tolerateVanishedX11Windows();
  SdlBackend() = default;
  std::optional<InputEvent> translate(const SDL_Event& event) const;

  std::unordered_map<int, SDL_Cursor*> cursors_;
};

// The Win32 virtual key of an SDL key code, or 0.
int virtualKeyOfSdlKey(int sdlKeycode);

}  // namespace winsys
