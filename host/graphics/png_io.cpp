#include "host/graphics/png_io.h"

#include <cairo.h>

#include <algorithm>
#include <cstdlib>

#include "host/graphics/bitmap.h"

namespace graphics {
namespace {

void setError(std::string* error, const std::string& reason) {
  if (error != nullptr) *error = reason;
}

int largestChannelDelta(std::uint32_t a, std::uint32_t b) {
  int largest = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const int delta =
        std::abs(static_cast<int>((a >> shift) & 0xFFu) - static_cast<int>((b >> shift) & 0xFFu));
    largest = std::max(largest, delta);
  }
  return largest;
}

}  // namespace

bool writePng(DAUB_IBitmap* bitmap, const std::string& path, std::string* error) {
  CairoBitmap* source = asCairoBitmap(bitmap);
  if (source == nullptr) {
    setError(error, "no bitmap to write");
    return false;
  }
  cairo_surface_flush(source->surface());
  const cairo_status_t status = cairo_surface_write_to_png(source->surface(), path.c_str());
  if (status != CAIRO_STATUS_SUCCESS) {
    setError(error, "cannot write " + path + ": " + cairo_status_to_string(status));
    return false;
  }
  return true;
}

std::unique_ptr<DAUB_IBitmap> readPng(const std::string& path, std::string* error) {
  cairo_surface_t* image = cairo_image_surface_create_from_png(path.c_str());
  const cairo_status_t status = cairo_surface_status(image);
  if (status != CAIRO_STATUS_SUCCESS) {
    cairo_surface_destroy(image);
    setError(error, "cannot read " + path + ": " + cairo_status_to_string(status));
    return nullptr;
  }
  std::unique_ptr<CairoBitmap> bitmap =
      CairoBitmap::create(DAUB_BITMAP_MEMORY, cairo_image_surface_get_width(image),
                          cairo_image_surface_get_height(image));
  if (bitmap == nullptr) {
    cairo_surface_destroy(image);
    setError(error, "no memory for " + path);
    return nullptr;
  }
  // Files without alpha load as opaque RGB; painting converts any format to ARGB32.
  cairo_t* cr = cairo_create(bitmap->surface());
  cairo_set_operator(cr, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(cr, image, 0, 0);
  cairo_paint(cr);
  cairo_destroy(cr);
  cairo_surface_destroy(image);
  return bitmap;
}

ImageDifference compareBitmaps(DAUB_IBitmap* actual, DAUB_IBitmap* expected,
                               int tolerancePerChannel) {
  ImageDifference difference;
  CairoBitmap* a = asCairoBitmap(actual);
  CairoBitmap* b = asCairoBitmap(expected);
  if (a == nullptr || b == nullptr || a->getWidth() != b->getWidth() ||
      a->getHeight() != b->getHeight()) {
    return difference;
  }
  difference.sizesMatch = true;
  for (int y = 0; y < a->getHeight(); ++y) {
    const std::uint32_t* rowA = a->row(y);
    const std::uint32_t* rowB = b->row(y);
    for (int x = 0; x < a->getWidth(); ++x) {
      const int delta = largestChannelDelta(rowA[x], rowB[x]);
      difference.maxChannelDelta = std::max(difference.maxChannelDelta, delta);
      if (delta <= tolerancePerChannel) continue;
      if (difference.differingPixels++ == 0) {
        difference.firstX = x;
        difference.firstY = y;
      }
    }
  }
  return difference;
}

}  // namespace graphics
