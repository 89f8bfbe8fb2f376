// What a back-end reports: mouse, wheel and keys in a top-level window's client pixels, text
// typed, the window closed or uncovered, and (headless only) the clock moving on.
#pragma once

#include <cstdint>
#include <string>

namespace winsys {

enum class EventKind {
  MouseMove,
  MouseDown,
  MouseUp,
  Wheel,
  KeyDown,
  KeyUp,
  Text,
  Close,
  Expose,
  AdvanceClock,
};

enum class MouseButton { Left, Right, Middle };

// Modifier bits held during an event.
enum : unsigned { kModShift = 1, kModControl = 2, kModAlt = 4 };

struct InputEvent {
  EventKind kind = EventKind::MouseMove;
  void* surface = nullptr;  // the back-end's window the event belongs to
  int x = 0;                // client pixels of that window
  int y = 0;
  MouseButton button = MouseButton::Left;
  int clicks = 1;                  // 2 on the second press of a double click
  int wheelDelta = 0;              // 120 per notch, positive away from the user
  int virtualKey = 0;              // Win32 virtual key of KeyDown/KeyUp
  unsigned modifiers = 0;          // kMod* bits
  std::string text;                // UTF-8 of Text
  std::uint32_t milliseconds = 0;  // of AdvanceClock
};

}  // namespace winsys
