// Pieces shared by the mouse operations of the space view: modifier keys, the border limit and
// the drag state.
#pragma once

#include <cstdint>

#include "model/automation_reports.h"
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
