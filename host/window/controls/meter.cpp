#include <algorithm>
#include <cmath>

#include "host/window/controls/draw.h"
#include "host/window/controls/host_controls.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

// The colour of each part of the scale, from the bottom up.
struct Band {
  double fromDb;
  std::uint32_t color;
};
constexpr Band kBands[] = {{-1000.0, theme::kMeterGreen},
                           {-18.0, theme::kMeterYellow},
                           {-6.0, theme::kMeterOrange},
                           {0.0, theme::kMeterRed}};

}  // namespace

LRESULT Meter::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_KESTEL_VULEVELS: {
      const auto* levels = reinterpret_cast<const double*>(lParam);
      if (levels == nullptr) return 0;
      const bool visible = barPixels(levels[0]) != barPixels(levelsDb_[0]) ||
                           barPixels(levels[1]) != barPixels(levelsDb_[1]);
      levelsDb_[0] = levels[0];
      levelsDb_[1] = levels[1];
      if (visible) invalidate();  // only what shows differently is repainted
      return 0;
    }
    case WM_KESTEL_VUSCALE:
      if (wParam == 0 && lParam > kBottomDb) topDb_ = static_cast<double>(lParam);
      invalidate();
      return 0;
    default:
      return Control::handle(message, wParam, lParam);
  }
}

int Meter::barPixels(double levelDb) const {
  if (!(levelDb > kBottomDb)) return 0;
  const double fraction = std::min(1.0, (levelDb - kBottomDb) / (topDb_ - kBottomDb));
  return static_cast<int>(std::lround(fraction * (width() - 2)));
}

void Meter::paint(cairo_t* cr) {
  draw::fill(cr, self().clientRect(), theme::kMeterBack);
  const int inner = width() - 2;
  const int half = std::max(1, (height() - 3) / 2);
  for (int channel = 0; channel < 2; ++channel) {
    const int top = 1 + channel * (half + 1);
    const int lit = barPixels(levelsDb_[channel]);
    for (std::size_t b = 0; b < std::size(kBands); ++b) {
      const int start = barPixels(kBands[b].fromDb);
      const int end =
          std::min(lit, b + 1 < std::size(kBands) ? barPixels(kBands[b + 1].fromDb) : inner);
      if (end <= start) continue;
      draw::fill(cr, sized(1 + start, top, end - start, half),
                 enabled() ? kBands[b].color : 0xFF707070);
    }
  }
  const int zero = 1 + barPixels(0.0);
  draw::fill(cr, sized(zero, 0, 1, height()), 0x80FFFFFF);
}

}  // namespace winsys
