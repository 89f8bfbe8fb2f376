// What every layer of the room picture needs: the model, the projection of the front bitmap and
// its DPI scale. Internal to the drawing.
#pragma once

#include "editor/view/space_projection.h"
#include "platform/daub.h"

struct RoomCanvas {
  const PannerPlugin& plugin;
  ViewGeometry view;
  int width;
  int height;
  int scale256;

  int scaled(int size100) const { return scaledSize(size100, scale256); }
};

// The static layer: background, axes, room outline, influence circles, speakers.
void drawBackLayer(const RoomCanvas& canvas, DAUB_IBitmap* back);

// The inputs over the finished back layer: labels, marks, stalks, ellipses, dots, numbers.
void drawInputLayer(const RoomCanvas& canvas, DAUB_IBitmap* front);

// The selection rectangle while the right button is held.
void drawSelectionBand(const RoomCanvas& canvas, DAUB_IBitmap* front);

// A label beside `anchorX`: left-aligned to its right, or right-aligned to its left.
void drawSideLabel(const RoomCanvas& canvas, DAUB_IBitmap* bitmap, const char* text, int anchorX,
                   int anchorY, bool leftSide);
