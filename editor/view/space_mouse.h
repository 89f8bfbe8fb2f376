// Mouse editing of the room picture, shared by the editor's space view and the host's inline view:
// w and h are the size of the bitmap the mouse position refers to.
#pragma once

#include "model/panner_plugin.h"

// [UI thread] Grabs the input or speaker under the mouse, or deselects on empty floor. True when
// something was grabbed. `inlineView` picks the DPI scale of the hit size.
bool hitTestAndGrab(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height,
                    bool inlineView);

// [UI thread] One drag step; true when the picture must be repainted.
bool dragTo(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height);

// [UI thread] Button up after a grab: click selection or end-of-edit reports; resets the drag.
void finishDrag(PannerPlugin& plugin);

// [UI thread] Right button up: selects the inputs inside the rectangle.
void finishBandSelect(PannerPlugin& plugin, int mouseX, int mouseY, int width, int height);

// [UI thread] Right button down: starts the selection rectangle at the mouse.
void startBandSelect(PannerPlugin& plugin, int mouseX, int mouseY);

// [UI thread] Double click: puts the selected inputs back on the floor, or at the centre.
void resetPositions(PannerPlugin& plugin);
