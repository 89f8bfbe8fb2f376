#include <cmath>

#include "host/graphics/bitmap.h"
#include "host/window/controls/draw.h"
#include "host/window/controls/host_controls.h"
#include "host/window/controls/theme.h"

namespace winsys {

LRESULT HotTrackButton::handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case BM_SETIMAGE: {
      const auto* image = reinterpret_cast<const PlaskButtonImage*>(lParam);
      const auto previous = reinterpret_cast<LRESULT>(image_.bitmap);
      if (wParam == kHotTrackImageKind) image_ = image != nullptr ? *image : PlaskButtonImage{};
      invalidate();
      return previous;
    }
    case BM_GETIMAGE:
      return reinterpret_cast<LRESULT>(image_.bitmap);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      system().setCapture(&self());
      pressed_ = true;
      invalidate();
      return 0;
    case WM_MOUSEMOVE:
      if (captured()) {
        const bool inside =
            contains(self().clientRect(), {signedLowWord(lParam), signedHighWord(lParam)});
        if (inside != pressed_) invalidate();
        pressed_ = inside;
      } else {
        invalidate();  // the highlight under the mouse
      }
      return 0;
    case WM_LBUTTONUP: {
      const bool inside =
          contains(self().clientRect(), {signedLowWord(lParam), signedHighWord(lParam)});
      const bool click = pressed_ && captured() && inside;
      if (captured()) system().releaseCapture();
      pressed_ = false;
      invalidate();
      if (click) notify(BN_CLICKED);
      return 0;
    }
    case WM_CAPTURECHANGED:
    case WM_MOUSELEAVE:
      if (message == WM_CAPTURECHANGED) pressed_ = false;
      invalidate();
      return 0;
    default:
      return Control::handle(message, wParam, lParam);
  }
}

void HotTrackButton::paint(cairo_t* cr) {
  const RECT r = self().clientRect();
  const int frame = pressed_ ? 2 : hot() ? 1 : 0;
  graphics::CairoBitmap* bitmap = graphics::asCairoBitmap(image_.bitmap);
  cairo_save(cr);
  if (bitmap != nullptr && bitmap->getWidth() >= 3) {
    const double frameWidth = bitmap->getWidth() / 3.0;
    cairo_rectangle(cr, 0, 0, width(), height());
    cairo_clip(cr);
    cairo_scale(cr, width() / frameWidth, static_cast<double>(height()) / bitmap->getHeight());
    cairo_set_source_surface(cr, bitmap->surface(), -frame * frameWidth, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_GOOD);
    cairo_paint_with_alpha(cr, enabled() ? 1.0 : 0.4);
  } else {
    draw::box(cr, r, px(2), enabled() ? theme::kButton : theme::kFieldDisabled, theme::kBorder);
    const UiFont& font = uiFont(scale256());
    draw::setColor(cr, enabled() ? theme::kText : theme::kTextDisabled);
    drawTextInBox(cr, font, text_.get(font, self().text), r, 0);
  }
  cairo_restore(cr);
  // The frames may look alike: the host adds its own light and shade.
  if (enabled() && (frame > 0)) {
    draw::fill(cr, r, frame == 2 ? 0x28000000 : 0x38FFFFFF);
  }
}

}  // namespace winsys
