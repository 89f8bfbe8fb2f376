#include "host/window/core/dirty_region.h"

#include "host/window/core/rects.h"

namespace winsys {

namespace {

bool overlapsOrTouches(const RECT& a, const RECT& b) {
  return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

}  // namespace

void DirtyRegion::add(const RECT& rect) {
  if (isEmpty(rect)) return;
  RECT merged = rect;
  // Absorb every rectangle the new one meets; the grown one may meet more.
  for (bool grew = true; grew;) {
    grew = false;
    for (auto it = rects_.begin(); it != rects_.end();) {
      if (!overlapsOrTouches(*it, merged)) {
        ++it;
        continue;
      }
      const RECT before = merged;
      merged = unionOf(merged, *it);
      it = rects_.erase(it);
      grew = grew || !(before == merged);
    }
  }
  rects_.push_back(merged);
  if (rects_.size() > kMaxRects) rects_ = {bounds()};
}

RECT DirtyRegion::bounds() const {
  RECT all{};
  for (const RECT& r : rects_) all = unionOf(all, r);
  return all;
}

std::vector<RECT> DirtyRegion::take() {
  std::vector<RECT> taken;
  taken.swap(rects_);
  return taken;
}

bool DirtyRegion::intersects(const RECT& rect) const {
  for (const RECT& r : rects_) {
    if (!isEmpty(intersection(r, rect))) return true;
  }
  return false;
}

}  // namespace winsys
