// The snapshot command's --size parser; --scale and the inline view's information block are
// checked end to end, where the probe plug-in reads the block.
#include <gtest/gtest.h>

#include <tuple>

#include "host/cli/snapshot.h"
#include "tests/host/test_support.h"

TEST(SnapshotSize, AcceptsWholePixelsWithinTheLimitAndSaysWhyOthersAreRefused) {
  for (const auto& [text, widthPx, heightPx] : {std::tuple{"480x480", 480, 480},
                                                {"1x1", 1, 1},
                                                {"8192x8192", 8192, 8192},
                                                {"007x09", 7, 9}}) {
    const BitmapSize size = parseBitmapSize(text);
    EXPECT_EQ(std::pair(size.widthPx, size.heightPx), std::pair(widthPx, heightPx)) << text;
  }
  const std::string form = "must be WIDTHxHEIGHT in pixels, for instance 480x480";
  const std::string numbers = "must be two whole numbers of pixels, for instance 480x480";
  const std::string range = "is out of range: each side is 1 to 8192 pixels";
  const std::pair<const char*, std::string> cases[] = {
      {"480", form},      {"480X480", form},   {"x480", numbers},  {"-5x5", numbers},
      {"4.5x5", numbers}, {" 5x5", numbers},   {"5x5x5", numbers}, {"0x10", range},
      {"8193x10", range}, {"10x99999", range}, {"123456x5", range}};
  for (const auto& [text, reason] : cases) {
    EXPECT_EQ(errorOf([&] { parseBitmapSize(text); }),
              "--size '" + std::string(text) + "' " + reason);
  }
}
