// The snapshot command's --size parser; --scale and the inline view's information block are
// checked end to end, where the probe plug-in reads the block.
#include <gtest/gtest.h>

#include "host/cli/snapshot.h"
#include "tests/host/runtime/test_support.h"

TEST(SnapshotSize, AcceptsWholePixelsWithinTheLimitAndSaysWhyOthersAreRefused) {
  const BitmapSize largest = parseBitmapSize("8192x8192"), padded = parseBitmapSize("007x09");
  EXPECT_EQ((std::array{largest.widthPx, largest.heightPx, padded.widthPx, padded.heightPx}),
            (std::array{8192, 8192, 7, 9}));
  const std::string form = "must be WIDTHxHEIGHT in pixels, for instance 480x480";
  const std::string numbers = "must be two whole numbers of pixels, for instance 480x480";
  const std::string range = "is out of range: each side is 1 to 8192 pixels";
  const std::pair<const char*, std::string> cases[] = {
      {"480", form},     {"480X480", form}, {"-5x5", numbers},  {"4.5x5", numbers},
      {" 5x5", numbers}, {"0x10", range},   {"8193x10", range}, {"123456x5", range}};
  for (const auto& [text, reason] : cases) {
    EXPECT_EQ(errorOf([&] { parseBitmapSize(text); }),
              "--size '" + std::string(text) + "' " + reason);
  }
}
