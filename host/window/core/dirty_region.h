// The part of a surface that waits to be repainted or presented: a few rectangles, merged when
// they overlap and collapsed to their union when they grow too many.
#pragma once

#include <vector>

#include "platform/win32_types.h"

namespace winsys {

class DirtyRegion {
 public:
  void add(const RECT& rect);
  bool empty() const { return rects_.empty(); }
  const std::vector<RECT>& rects() const { return rects_; }
  RECT bounds() const;
  // The rectangles, leaving the region empty.
  std::vector<RECT> take();
  bool intersects(const RECT& rect) const;

 private:
  static constexpr std::size_t kMaxRects = 24;
  std::vector<RECT> rects_;
};

}  // namespace winsys
