// Compares a picture with its reference PNG; SPATIOLA_UPDATE_REFERENCE_IMAGES=1 rewrites the
// reference instead. A mismatch leaves NAME.actual.png in the working folder to look at.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "host/graphics/bitmap.h"
#include "host/graphics/png_io.h"

inline void expectMatchesReferencePng(DAUB_IBitmap* actual, const std::string& folder,
                                      const std::string& name, int tolerancePerChannel,
                                      int allowedDifferingPixels = 0) {
  ASSERT_NE(actual, nullptr) << name;
  const std::string path = folder + "/" + name + ".png";
  std::string error;
  if (std::getenv("SPATIOLA_UPDATE_REFERENCE_IMAGES") != nullptr) {
    ASSERT_TRUE(graphics::writePng(actual, path, &error)) << error;
    return;
  }
  const std::unique_ptr<DAUB_IBitmap> expected = graphics::readPng(path, &error);
  ASSERT_NE(expected, nullptr) << error;
  const graphics::ImageDifference difference =
      graphics::compareBitmaps(actual, expected.get(), tolerancePerChannel);
  if (!difference.matches()) graphics::writePng(actual, name + ".actual.png");
  EXPECT_TRUE(difference.sizesMatch) << name;
  EXPECT_LE(difference.differingPixels, allowedDifferingPixels)
      << name << ": first at " << difference.firstX << "," << difference.firstY
      << ", largest channel difference " << difference.maxChannelDelta;
}
