#include "host/window/window_utilities.h"

#include <time.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>

char* windowLstrcpyn(char* destination, const char* source, int maxCount) {
  if (destination == nullptr || maxCount <= 0) return destination;
  int i = 0;
  for (; source != nullptr && i < maxCount - 1 && source[i] != '\0'; ++i) {
    destination[i] = source[i];
  }
  destination[i] = '\0';
  return destination;
}

int windowMulDiv(int number, int numerator, int denominator) {
  if (denominator == 0) return -1;
  const std::int64_t product = static_cast<std::int64_t>(number) * numerator;
  const std::int64_t divisor = std::llabs(denominator);
  std::int64_t result = (std::llabs(product) + divisor / 2) / divisor;
  if ((product < 0) != (denominator < 0)) result = -result;
  if (result > INT_MAX || result < INT_MIN) return -1;
  return static_cast<int>(result);
}

DWORD windowGetTickCount() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const std::uint64_t ms = static_cast<std::uint64_t>(now.tv_sec) * 1000u +
                           static_cast<std::uint64_t>(now.tv_nsec) / 1000000u;
  return static_cast<DWORD>(ms);
}

void windowSleep(DWORD milliseconds) {
  timespec wait{static_cast<time_t>(milliseconds / 1000u),
                static_cast<long>(milliseconds % 1000u) * 1000000L};
  while (nanosleep(&wait, &wait) != 0) {
  }
}

namespace {

bool isEmpty(const RECT& r) {
  return r.right <= r.left || r.bottom <= r.top;
}

}  // namespace

BOOL windowIntersectRect(RECT* out, const RECT* a, const RECT* b) {
  if (out == nullptr || a == nullptr || b == nullptr) return 0;
  const RECT r{std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
               std::min(a->bottom, b->bottom)};
  *out = isEmpty(r) ? RECT{0, 0, 0, 0} : r;
  return isEmpty(r) ? 0 : 1;
}

void windowOffsetRect(RECT* rect, int dx, int dy) {
  if (rect == nullptr) return;
  rect->left += dx;
  rect->right += dx;
  rect->top += dy;
  rect->bottom += dy;
}

void windowSetRect(RECT* rect, int left, int top, int right, int bottom) {
  if (rect != nullptr) *rect = RECT{left, top, right, bottom};
}

void windowUnionRect(RECT* out, const RECT* a, const RECT* b) {
  if (out == nullptr || a == nullptr || b == nullptr) return;
  if (isEmpty(*a) || isEmpty(*b)) {
    *out = isEmpty(*a) ? (isEmpty(*b) ? RECT{0, 0, 0, 0} : *b) : *a;
    return;
  }
  *out = RECT{std::min(a->left, b->left), std::min(a->top, b->top), std::max(a->right, b->right),
              std::max(a->bottom, b->bottom)};
}
