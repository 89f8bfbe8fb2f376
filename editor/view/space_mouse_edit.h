// Pieces shared by the mouse operations of the space view: modifier keys, the border limit, the
// drag state and the automation reports of moved positions.
#pragma once

#include <cstdint>

#include "model/channels.h"
#include "model/panner_plugin.h"

// Modifier keys, read once at the start of a mouse event and before modelMutex is taken (the key
// state is a call into the host's window layer).
struct ModifierKeys {
  bool shift;
  bool ctrl;
  bool alt;
};
ModifierKeys readModifierKeys();

// Positions stay within [-L, L], L = 0.48 / zoom: the part of the room the view shows.
double positionLimit(const PannerPlugin& plugin);

double clampToLimit(double value, double limit);

// Back to idle: nothing grabbed, no rectangle, offsets and step count zero.
void resetDragState(PannerPlugin& plugin);

// Counts one drag step and remembers the mouse for the next height step.
void countDragStep(PannerPlugin& plugin, int mouseX, int mouseY);

// Clears `selected` of every input; true when one was set.
bool clearSelection(PannerPlugin& plugin);

// Positions to report to the host, gathered under modelMutex and sent after it is released so that
// the host may call back into the plug-in.
class PositionReports {
 public:
  void addInput(const PannerPlugin& plugin, int input);
  void addSpeaker(const PannerPlugin& plugin, int speaker);
  void addSelectedInputs(const PannerPlugin& plugin);
  // [UI thread, modelMutex not held] audioMasterAutomate for each value, each followed by
  // audioMasterEndEdit when `endEdit`.
  void send(PannerPlugin& plugin, bool endEdit) const;

 private:
  struct Report {
    std::int32_t index;
    float value;
  };
  void add(std::int32_t index, double coordinate);

  static constexpr int kCapacity = 3 * kMaxInputs;
  Report items_[kCapacity];
  int count_ = 0;
};
