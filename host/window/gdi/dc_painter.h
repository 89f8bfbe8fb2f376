// Cairo on a drawing context's target, clipped to the context and with its client origin at 0, 0,
// for the span of one drawing call.
#pragma once

#include <cairo.h>

#include <cstdint>

#include "host/graphics/paint_state.h"
#include "host/window/gdi/gdi_table.h"

namespace winsys {

class DcPainter {
 public:
  explicit DcPainter(DeviceContext& dc);
  DcPainter(const DcPainter&) = delete;
  DcPainter& operator=(const DcPainter&) = delete;

  cairo_t* cr() const { return scope_.cr(); }

 private:
  graphics::DrawScope scope_;
};

// COLORREF (0x00BBGGRR) with an alpha as the source of `cr`.
void setColorRef(cairo_t* cr, int colorRef, double alpha = 1.0);
// Non-premultiplied 0xAARRGGBB as the source of `cr`.
void setArgb(cairo_t* cr, std::uint32_t argb);
std::uint32_t argbOfColorRef(int colorRef);

}  // namespace winsys
