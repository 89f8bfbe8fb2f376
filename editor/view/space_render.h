// The room picture of the space view and the inline view, drawn through the host's graphics
// library, and the drawing resources every instance of the process shares.
#pragma once

#include <cstdint>

#include "model/panner_plugin.h"
#include "platform/daub.h"

constexpr int kInputPaletteSize = 8;
extern const DAUB_pixel inputPalette[kInputPaletteSize];

// [UI thread] Draws the picture into `front`, using `back` as the static layer (null: `front` is
// both). `flags` is a copy of changeFlags; nothing is drawn unless it has bit 8 or 16.
void renderSpace(PannerPlugin& plugin, DAUB_IBitmap* front, DAUB_IBitmap* back,
                 std::uint32_t flags);

// [UI thread] 64 anti-aliased segments round an ellipse turned by `angleRad`.
void drawEllipse(DAUB_IBitmap* bitmap, DAUB_pixel color, float cx, float cy, float rx, float ry,
                 float angleRad, float alpha);
