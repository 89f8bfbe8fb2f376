// The host's control classes lent to plug-ins: "KESTELknob", "KESTELhfader", "KESTELhorzvu" and
// "HotTrackButton". Their messages are in platform/win32_controls.h.
#pragma once

#include <string>

#include "host/window/controls/control.h"
#include "host/window/controls/ui_font.h"
#include "platform/plask_dialog_records.h"

namespace winsys {

// An endless knob for relative moves. Dragging up (or the wheel, or the arrow keys) turns it;
// each step sends WM_COMMAND with the step in lParam's low 16 bits (kKnobCentre = none, 1638 per
// pixel of drag, a quarter with Shift) and kKnobGestureEnd on the last one of a gesture (button
// up; every wheel notch and key press is a gesture of its own). A double click turns the pointer
// back to the centre and ends the gesture. Locked (WM_KESTEL_SETPROPERTY 0) it ignores input.
class Knob final : public Control {
 public:
  explicit Knob(Window& window) : Control(window) {}
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;
  double pointerAngleRad() const { return angleRad_; }

  static constexpr int kStepPerPixel = 1638;

 private:
  bool acceptsInput() const { return enabled() && !locked_; }
  void step(int amount, bool end);
  LRESULT keyDown(WPARAM key);

  double angleRad_ = 0;  // of the pointer, from straight up, clockwise
  WPARAM style_ = 0;
  bool locked_ = false;
  int lastY_ = 0;
};

// A horizontal fader: a bar filled up to the position, the tick mark, and its name and value
// texts drawn on it. Range 0..1000 until TBM_SETRANGE. A drag moves it relatively (a tenth as
// fast with Shift), the wheel and the arrow keys in steps; each change sends WM_HSCROLL with
// SB_THUMBTRACK and the position in the high word, lParam the fader, and SB_ENDSCROLL ends each
// gesture (the wheel's 400 ms after the last notch). A double click jumps to the tick.
class Fader final : public Control {
 public:
  explicit Fader(Window& window) : Control(window) {}
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;
  int position() const { return position_; }
  int tick() const { return tick_; }
  const std::string& nameText() const { return name_; }
  const std::string& valueText() const { return value_; }

  static constexpr UINT_PTR kWheelEndTimer = 0x7FADE;

 private:
  bool acceptsInput() const { return enabled() && !locked_; }
  void moveTo(int position);
  void endGesture();
  void setProperty(WPARAM which, LPARAM value);
  LRESULT keyDown(WPARAM key);
  double positionX(int position) const;

  int minimum_ = 0;
  int maximum_ = 1000;
  int position_ = 0;
  int tick_ = -1;
  bool locked_ = false;
  bool dragging_ = false;
  int dragStartX_ = 0;
  int dragStartPosition_ = 0;
  std::string name_;
  std::string value_;
  CachedText nameText_;
  CachedText valueText_;
};

// A two-channel level meter: levels in dB (WM_KESTEL_VULEVELS), from -60 dB to the top of its
// scale (WM_KESTEL_VUSCALE, +6 dB at first), coloured green, yellow, orange and red by level.
class Meter final : public Control {
 public:
  explicit Meter(Window& window) : Control(window) {}
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;
  double levelDb(int channel) const { return levelsDb_[channel]; }

  static constexpr double kBottomDb = -60.0;

 private:
  int barPixels(double levelDb) const;

  double levelsDb_[2] = {-150.0, -150.0};
  double topDb_ = 6.0;
};

// A button drawn from a bitmap of three frames (normal, under the mouse, pressed) set with
// BM_SETIMAGE; a click sends WM_COMMAND with BN_CLICKED.
class HotTrackButton final : public Control {
 public:
  explicit HotTrackButton(Window& window) : Control(window) {}
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void paint(cairo_t* cr) override;

 private:
  PlaskButtonImage image_{};
  bool pressed_ = false;
  CachedText text_;
};

}  // namespace winsys
