// The position text of an input or speaker shown in the editor's info label.
#pragma once

#include <cstddef>

#include "model/panner_plugin.h"

// Appends printf-style text at the end of a NUL-terminated buffer of `capacity` bytes; nothing when
// capacity <= 0 or the buffer holds no terminator.
void appendFormat(char* buffer, int capacity, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// The readout of a position ("50%R  50%F  (45 deg)"), written into `text` (512 bytes).
void formatPosition(char* text, int capacity, double x, double y, double z);

// [UI thread] Shows input `inputIndex` (>= 0) or else speaker `speakerIndex` in the info label and
// arms the timer that clears it. Nothing while the editor is closed.
void showPositionReadout(PannerPlugin& plugin, int inputIndex, int speakerIndex);

// [UI thread] Writes `text` into the info label; a non-empty text arms the clearing timer.
void setInfoText(PannerPlugin& plugin, const char* text);
