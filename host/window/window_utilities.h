// The window-layer functions that need no window: text, arithmetic, time and rectangles.
#pragma once

#include "platform/win32_types.h"

// Copies at most maxCount - 1 characters and always terminates (when maxCount > 0).
char* windowLstrcpyn(char* destination, const char* source, int maxCount);
// number * numerator / denominator with a 64-bit intermediate, rounded half away from zero;
// -1 when the denominator is 0 or the result does not fit.
int windowMulDiv(int number, int numerator, int denominator);
// Milliseconds of a monotonic clock, wrapping at 2^32.
DWORD windowGetTickCount();
void windowSleep(DWORD milliseconds);

// Rectangles are half-open: right and bottom are outside. An empty result is all zeros.
BOOL windowIntersectRect(RECT* out, const RECT* a, const RECT* b);
void windowOffsetRect(RECT* rect, int dx, int dy);
void windowSetRect(RECT* rect, int left, int top, int right, int bottom);
void windowUnionRect(RECT* out, const RECT* a, const RECT* b);
