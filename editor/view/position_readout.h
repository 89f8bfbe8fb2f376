// The position text of an input or speaker shown in the editor's info label.
#pragma once

#include <cstddef>

#include "model/panner_plugin.h"
#include "platform/win32_types.h"

constexpr int kReadoutCapacity = 512;
constexpr int kInfoLabelId = 1287;          // the editor's "(info)" label
constexpr UINT_PTR kInfoClearTimerId = 10;  // clears the label when it fires
constexpr UINT kInfoClearDelayMs = 2000;

// Appends printf-style text at the end of a NUL-terminated buffer of `capacity` bytes; nothing when
// capacity <= 0 or the buffer holds no terminator.
void appendFormat(char* buffer, int capacity, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// The readout of a position ("50%R  50%F  (45 deg)") in percent of the unit room and degrees,
// written into `text` of `capacity` bytes (kReadoutCapacity holds any readout).
void formatPosition(char* text, int capacity, double x, double y, double z);

// Drops the two spaces that end every part of a readout; a text of 2 characters or fewer stays.
void cutTrailingSeparator(char* text);

// [UI thread] Shows input `inputIndex` (>= 0) or else speaker `speakerIndex` in the info label and
// arms the timer that clears it. Nothing while the editor is closed.
void showPositionReadout(PannerPlugin& plugin, int inputIndex, int speakerIndex);

// [UI thread] Writes `text` into the info label; a non-empty text arms the clearing timer.
void setInfoText(PannerPlugin& plugin, const char* text);
