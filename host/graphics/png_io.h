// PNG files of bitmaps (the host's snapshots, reference images of tests) and a tolerant
// comparison of two bitmaps.
#pragma once

#include <memory>
#include <string>

#include "platform/daub.h"

namespace graphics {

// False with a reason in `error` (when given) if the file cannot be written.
bool writePng(DAUB_IBitmap* bitmap, const std::string& path, std::string* error = nullptr);

// A plain memory bitmap with the file's pixels, or null with a reason in `error`.
std::unique_ptr<DAUB_IBitmap> readPng(const std::string& path, std::string* error = nullptr);

struct ImageDifference {
  bool sizesMatch = false;
  int differingPixels = 0;  // pixels with some channel off by more than the tolerance
  int maxChannelDelta = 0;  // over all pixels
  int firstX = -1;          // first differing pixel in reading order
  int firstY = -1;
  bool matches() const { return sizesMatch && differingPixels == 0; }
};

// Compares the stored (premultiplied) pixels, so fully transparent pixels of any colour are
// equal, as they look the same over any background.
ImageDifference compareBitmaps(DAUB_IBitmap* actual, DAUB_IBitmap* expected,
                               int tolerancePerChannel);

}  // namespace graphics
