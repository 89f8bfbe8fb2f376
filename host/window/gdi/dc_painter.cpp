#include "host/window/gdi/dc_painter.h"

#include "host/graphics/bitmap.h"

namespace winsys {

DcPainter::DcPainter(DeviceContext& dc) : scope_(*dc.target) {
  cairo_t* cr = scope_.cr();
  if (dc.clipped) {
    for (const RECT& r : dc.clip)
      cairo_rectangle(cr, r.left, r.top, r.right - r.left, r.bottom - r.top);
    if (dc.clip.empty()) cairo_rectangle(cr, 0, 0, 0, 0);
    cairo_clip(cr);
  }
  cairo_translate(cr, dc.origin.x, dc.origin.y);
}

void setColorRef(cairo_t* cr, int colorRef, double alpha) {
  cairo_set_source_rgba(cr, (colorRef & 0xFF) / 255.0, ((colorRef >> 8) & 0xFF) / 255.0,
                        ((colorRef >> 16) & 0xFF) / 255.0, alpha);
}

void setArgb(cairo_t* cr, std::uint32_t argb) {
  cairo_set_source_rgba(cr, ((argb >> 16) & 0xFF) / 255.0, ((argb >> 8) & 0xFF) / 255.0,
                        (argb & 0xFF) / 255.0, (argb >> 24) / 255.0);
}

std::uint32_t argbOfColorRef(int colorRef) {
  const auto c = static_cast<std::uint32_t>(colorRef);
  return 0xFF000000u | ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
}

}  // namespace winsys
