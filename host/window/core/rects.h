// Rectangle arithmetic of the window system. Rectangles are half-open: right and bottom are
// outside.
#pragma once

#include <algorithm>

#include "platform/win32_types.h"

namespace winsys {

inline int width(const RECT& r) {
  return r.right - r.left;
}
inline int height(const RECT& r) {
  return r.bottom - r.top;
}
inline bool isEmpty(const RECT& r) {
  return r.right <= r.left || r.bottom <= r.top;
}
inline bool contains(const RECT& r, POINT p) {
  return p.x >= r.left && p.x < r.right && p.y >= r.top && p.y < r.bottom;
}
inline bool containsRect(const RECT& outer, const RECT& inner) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}
// Empty results are all zeros.
inline RECT intersection(const RECT& a, const RECT& b) {
  const RECT r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
               std::min(a.bottom, b.bottom)};
  return isEmpty(r) ? RECT{} : r;
}
inline RECT unionOf(const RECT& a, const RECT& b) {
  if (isEmpty(a)) return b;
  if (isEmpty(b)) return a;
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
          std::max(a.bottom, b.bottom)};
}
inline RECT offsetBy(const RECT& r, int dx, int dy) {
  return {r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
}
inline RECT sized(int x, int y, int w, int h) {
  return {x, y, x + w, y + h};
}
inline bool operator==(const RECT& a, const RECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

}  // namespace winsys
