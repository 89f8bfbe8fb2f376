#include "host/window/backend/sdl_backend.h"

#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "host/graphics/bitmap.h"
#include "platform/win32_controls.h"

namespace winsys {

namespace {

struct KeyPair {
  SDL_Keycode sdl;
  int virtualKey;
};

constexpr KeyPair kKeys[] = {
    {SDLK_RETURN, VK_RETURN}, {SDLK_KP_ENTER, VK_RETURN}, {SDLK_TAB, VK_TAB},
    {SDLK_ESCAPE, VK_ESCAPE}, {SDLK_BACKSPACE, VK_BACK},  {SDLK_DELETE, VK_DELETE},
    {SDLK_LEFT, VK_LEFT},     {SDLK_RIGHT, VK_RIGHT},     {SDLK_UP, VK_UP},
    {SDLK_DOWN, VK_DOWN},     {SDLK_HOME, VK_HOME},       {SDLK_END, VK_END},
    {SDLK_PAGEUP, VK_PRIOR},  {SDLK_PAGEDOWN, VK_NEXT},   {SDLK_SPACE, VK_SPACE},
    {SDLK_LSHIFT, VK_SHIFT},  {SDLK_RSHIFT, VK_SHIFT},    {SDLK_LCTRL, VK_CONTROL},
    {SDLK_RCTRL, VK_CONTROL}, {SDLK_LALT, VK_MENU},       {SDLK_RALT, VK_MENU},
    {SDLK_F4, VK_F4},
};

unsigned modifiersNow() {
  const SDL_Keymod mod = SDL_GetModState();
  unsigned modifiers = 0;
  if ((mod & KMOD_SHIFT) != 0) modifiers |= kModShift;
  if ((mod & KMOD_CTRL) != 0) modifiers |= kModControl;
  if ((mod & KMOD_ALT) != 0) modifiers |= kModAlt;
  return modifiers;
}

SDL_Window* windowOf(void* surface) {
  return static_cast<SDL_Window*>(surface);
}

// Event coordinates are in the window's units; the back buffer is in pixels.
double pixelRatio(SDL_Window* window) {
  int w = 0, h = 0, pw = 0, ph = 0;
  SDL_GetWindowSize(window, &w, &h);
  SDL_GetWindowSizeInPixels(window, &pw, &ph);
  return w > 0 && pw > 0 ? static_cast<double>(pw) / w : 1.0;
}

MouseButton buttonOf(Uint8 button) {
  return button == SDL_BUTTON_RIGHT    ? MouseButton::Right
         : button == SDL_BUTTON_MIDDLE ? MouseButton::Middle
                                       : MouseButton::Left;
}

SDL_SystemCursor systemCursor(CursorShape shape) {
  switch (shape) {
    case CursorShape::IBeam:
      return SDL_SYSTEM_CURSOR_IBEAM;
    case CursorShape::Hand:
      return SDL_SYSTEM_CURSOR_HAND;
    case CursorShape::Cross:
      return SDL_SYSTEM_CURSOR_CROSSHAIR;
    case CursorShape::SizeWE:
      return SDL_SYSTEM_CURSOR_SIZEWE;
    case CursorShape::SizeNS:
      return SDL_SYSTEM_CURSOR_SIZENS;
    case CursorShape::SizeAll:
      return SDL_SYSTEM_CURSOR_SIZEALL;
    case CursorShape::Wait:
      return SDL_SYSTEM_CURSOR_WAIT;
    default:
      return SDL_SYSTEM_CURSOR_ARROW;
  }
}

}  // namespace

int virtualKeyOfSdlKey(int sdlKeycode) {
  if (sdlKeycode >= SDLK_a && sdlKeycode <= SDLK_z) return 'A' + (sdlKeycode - SDLK_a);
  if (sdlKeycode >= SDLK_0 && sdlKeycode <= SDLK_9) return '0' + (sdlKeycode - SDLK_0);
  for (const KeyPair& pair : kKeys) {
    if (pair.sdl == sdlKeycode) return pair.virtualKey;
  }
  return 0;
}

namespace {

// Without a display SDL falls back to windows nobody sees; only a caller who asks for such a
// driver by name gets one.
bool invisibleDriver(const char* driver) {
  return driver != nullptr &&
         (std::strcmp(driver, "offscreen") == 0 || std::strcmp(driver, "dummy") == 0);
}

bool displayNamed() {
  return std::getenv("SDL_VIDEODRIVER") != nullptr || std::getenv("DISPLAY") != nullptr ||
         std::getenv("WAYLAND_DISPLAY") != nullptr;
}

}  // namespace

std::unique_ptr<SdlBackend> SdlBackend::open(std::string* error) {
  auto fail = [error](const std::string& reason) {
    if (error != nullptr) *error = "cannot open a window: " + reason;
    return nullptr;
  };
  if (!displayNamed()) return fail("no display (DISPLAY and WAYLAND_DISPLAY are not set)");
  SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
  // The window system paints in software: the window's own framebuffer, no OpenGL behind it.
  SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
  // Ctrl+C and kill stop the program as they stop any other, instead of becoming a quit event.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  tolerateVanishedX11Windows();
  if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return fail(SDL_GetError());
  if (invisibleDriver(SDL_GetCurrentVideoDriver()) && std::getenv("SDL_VIDEODRIVER") == nullptr) {
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
    return fail("no display (SDL found only its offscreen driver)");
  }
  SDL_StartTextInput();
  return std::unique_ptr<SdlBackend>(new SdlBackend);
}

SdlBackend::~SdlBackend() {
  for (auto& [shape, cursor] : cursors_) SDL_FreeCursor(cursor);
  SDL_StopTextInput();
  SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

void* SdlBackend::openSurface(HWND /*owner*/, const char* title, int width, int height) {
  return SDL_CreateWindow(title != nullptr ? title : "", SDL_WINDOWPOS_CENTERED,
                          SDL_WINDOWPOS_CENTERED, std::max(width, 1), std::max(height, 1),
                          SDL_WINDOW_HIDDEN | SDL_WINDOW_ALLOW_HIGHDPI);
}

void SdlBackend::showSurface(void* surface, bool visible) {
  if (surface == nullptr) return;
  if (visible) {
    SDL_ShowWindow(windowOf(surface));
    SDL_RaiseWindow(windowOf(surface));
  } else {
    SDL_HideWindow(windowOf(surface));
  }
}

void SdlBackend::resizeSurface(void* surface, int width, int height) {
  if (surface != nullptr)
    SDL_SetWindowSize(windowOf(surface), std::max(width, 1), std::max(height, 1));
}

void SdlBackend::closeSurface(void* surface) {
  if (surface != nullptr) SDL_DestroyWindow(windowOf(surface));
}

void SdlBackend::setSurfaceTitle(void* surface, const char* title) {
  if (surface == nullptr) return;
  SDL_SetWindowTitle(windowOf(surface), title != nullptr ? title : "");
  setX11Title(surface, title != nullptr ? title : "");
}

void SdlBackend::present(void* surface, graphics::CairoBitmap& backBuffer,
                         const std::vector<RECT>& rects) {
  SDL_Window* window = windowOf(surface);
  SDL_Surface* screen = window != nullptr ? SDL_GetWindowSurface(window) : nullptr;
  if (screen == nullptr) return;
  cairo_surface_flush(backBuffer.surface());
  SDL_Surface* source = SDL_CreateRGBSurfaceWithFormatFrom(
      cairo_image_surface_get_data(backBuffer.surface()), backBuffer.getWidth(),
      backBuffer.getHeight(), 32, cairo_image_surface_get_stride(backBuffer.surface()),
      SDL_PIXELFORMAT_ARGB8888);
  if (source == nullptr) return;
  SDL_SetSurfaceBlendMode(source, SDL_BLENDMODE_NONE);
  std::vector<SDL_Rect> areas;
  const bool sameSize = screen->w == backBuffer.getWidth() && screen->h == backBuffer.getHeight();
  for (const RECT& r : rects) {
    SDL_Rect area{r.left, r.top, r.right - r.left, r.bottom - r.top};
    if (sameSize) {
      SDL_Rect target = area;
      SDL_BlitSurface(source, &area, screen, &target);
      areas.push_back(area);
    }
  }
  if (!sameSize) {
    SDL_BlitScaled(source, nullptr, screen, nullptr);
    areas = {SDL_Rect{0, 0, screen->w, screen->h}};
  }
  SDL_FreeSurface(source);
  SDL_UpdateWindowSurfaceRects(window, areas.data(), static_cast<int>(areas.size()));
}

std::optional<InputEvent> SdlBackend::waitEvent(int timeoutMs) {
  SDL_Event event;
  const int got = timeoutMs < 0 ? SDL_WaitEvent(&event) : SDL_WaitEventTimeout(&event, timeoutMs);
  if (got == 0) return std::nullopt;
  return translate(event);
}

std::optional<InputEvent> SdlBackend::translate(const SDL_Event& event) const {
  InputEvent out;
  out.modifiers = modifiersNow();
  auto place = [&out](Uint32 windowId, int x, int y) {
    SDL_Window* window = SDL_GetWindowFromID(windowId);
    const double ratio = window != nullptr ? pixelRatio(window) : 1.0;
    out.surface = window;
    out.x = static_cast<int>(std::lround(x * ratio));
    out.y = static_cast<int>(std::lround(y * ratio));
  };
  switch (event.type) {
    case SDL_MOUSEMOTION:
      out.kind = EventKind::MouseMove;
      place(event.motion.windowID, event.motion.x, event.motion.y);
      return out;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
      out.kind = event.type == SDL_MOUSEBUTTONDOWN ? EventKind::MouseDown : EventKind::MouseUp;
      out.button = buttonOf(event.button.button);
      out.clicks = event.button.clicks;
      place(event.button.windowID, event.button.x, event.button.y);
      return out;
    case SDL_MOUSEWHEEL: {
      int x = 0, y = 0;
      SDL_GetMouseState(&x, &y);
      out.kind = EventKind::Wheel;
      const int notches =
          event.wheel.direction == SDL_MOUSEWHEEL_FLIPPED ? -event.wheel.y : event.wheel.y;
      out.wheelDelta = notches * 120;
      place(event.wheel.windowID, x, y);
      return out;
    }
    case SDL_KEYDOWN:
    case SDL_KEYUP:
      out.kind = event.type == SDL_KEYDOWN ? EventKind::KeyDown : EventKind::KeyUp;
      out.virtualKey = virtualKeyOfSdlKey(event.key.keysym.sym);
      out.surface = SDL_GetWindowFromID(event.key.windowID);
      if (out.virtualKey == 0) return std::nullopt;
      return out;
    case SDL_TEXTINPUT:
      out.kind = EventKind::Text;
      out.text = event.text.text;
      out.surface = SDL_GetWindowFromID(event.text.windowID);
      return out;
    case SDL_WINDOWEVENT:
      out.surface = SDL_GetWindowFromID(event.window.windowID);
      if (event.window.event == SDL_WINDOWEVENT_CLOSE) {
        out.kind = EventKind::Close;
        return out;
      }
      if (event.window.event == SDL_WINDOWEVENT_EXPOSED) {
        out.kind = EventKind::Expose;
        return out;
      }
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

bool SdlBackend::keyHeld(int virtualKey) const {
  const SDL_Keymod mod = SDL_GetModState();
  switch (virtualKey) {
    case VK_SHIFT:
      return (mod & KMOD_SHIFT) != 0;
    case VK_CONTROL:
      return (mod & KMOD_CTRL) != 0;
    case VK_MENU:
      return (mod & KMOD_ALT) != 0;
    case VK_LBUTTON:
      return (SDL_GetMouseState(nullptr, nullptr) & SDL_BUTTON_LMASK) != 0;
    case VK_RBUTTON:
      return (SDL_GetMouseState(nullptr, nullptr) & SDL_BUTTON_RMASK) != 0;
    case VK_MBUTTON:
      return (SDL_GetMouseState(nullptr, nullptr) & SDL_BUTTON_MMASK) != 0;
    default:
      break;
  }
  int count = 0;
  const Uint8* keys = SDL_GetKeyboardState(&count);
  for (int scancode = 0; scancode < count; ++scancode) {
    if (keys[scancode] != 0 && virtualKeyOfSdlKey(SDL_GetKeyFromScancode(
                                   static_cast<SDL_Scancode>(scancode))) == virtualKey) {
      return true;
    }
  }
  return false;
}

std::uint64_t SdlBackend::nowMs() const {
  return SDL_GetTicks64();
}

void SdlBackend::setCursor(CursorShape shape) {
  SDL_Cursor*& cursor = cursors_[static_cast<int>(shape)];
  if (cursor == nullptr) cursor = SDL_CreateSystemCursor(systemCursor(shape));
  if (cursor != nullptr) SDL_SetCursor(cursor);
}

int SdlBackend::messageBox(void* surface, const char* text, const char* caption, int style) {
  struct Choice {
    int id;
    const char* label;
  };
  static const std::vector<Choice> kButtonSets[] = {
      {{IDOK, "OK"}},
      {{IDOK, "OK"}, {IDCANCEL, "Cancel"}},
      {{IDABORT, "Abort"}, {IDRETRY, "Retry"}, {IDIGNORE, "Ignore"}},
      {{IDYES, "Yes"}, {IDNO, "No"}, {IDCANCEL, "Cancel"}},
      {{IDYES, "Yes"}, {IDNO, "No"}},
      {{IDRETRY, "Retry"}, {IDCANCEL, "Cancel"}}};
  const int type = std::min(style & MB_TYPEMASK, 5);
  std::vector<SDL_MessageBoxButtonData> buttons;
  const int defaultIndex = (style & MB_DEFBUTTON3) != 0 ? 2 : (style & MB_DEFBUTTON2) != 0 ? 1 : 0;
  for (std::size_t i = 0; i < kButtonSets[type].size(); ++i) {
    Uint32 flags =
        static_cast<int>(i) == defaultIndex ? SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT : 0;
    if (kButtonSets[type][i].id == IDCANCEL || kButtonSets[type].size() == 1) {
      flags |= SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT;
    }
    buttons.push_back({flags, kButtonSets[type][i].id, kButtonSets[type][i].label});
  }
  const Uint32 icon = (style & 0x70) == MB_ICONERROR     ? SDL_MESSAGEBOX_ERROR
                      : (style & 0x70) == MB_ICONWARNING ? SDL_MESSAGEBOX_WARNING
                                                         : SDL_MESSAGEBOX_INFORMATION;
  const SDL_MessageBoxData data{icon,
                                windowOf(surface),
                                caption != nullptr ? caption : "",
                                text != nullptr ? text : "",
                                static_cast<int>(buttons.size()),
                                buttons.data(),
                                nullptr};
  int chosen = 0;
  if (SDL_ShowMessageBox(&data, &chosen) != 0) return 0;
  return chosen == -1 ? (kButtonSets[type].size() == 1 ? IDOK : IDCANCEL) : chosen;
}

// GDK_SCALE when the desktop sets it, else the display's DPI against 96, in quarter steps.
int SdlBackend::displayScale256() const {
  if (const char* gdk = std::getenv("GDK_SCALE"); gdk != nullptr && std::atoi(gdk) > 0) {
    return std::clamp(std::atoi(gdk), 1, 4) * 256;
  }
  float dpi = 0;
  if (SDL_GetDisplayDPI(0, &dpi, nullptr, nullptr) != 0 || !(dpi > 0)) return 256;
  const double quarters = std::round(dpi / 96.0 * 4.0);
  return static_cast<int>(std::clamp(quarters, 4.0, 16.0) * 64);
}

}  // namespace winsys
