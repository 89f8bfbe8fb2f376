// The snapshot command's parsers and the inline view's information block as the plug-in reads it.
#include <gtest/gtest.h>

#include <cstring>
#include <iterator>

#include "host/cli/inline_view_call.h"
#include "host/cli/snapshot.h"
#include "host/core/host_error.h"

namespace {

std::string sizeErrorOf(const std::string& text) {
  try {
    parseBitmapSize(text);
  } catch (const HostError& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

TEST(SnapshotSize, AcceptsWholePixelsWithinTheLimit) {
  const struct {
    const char* text;
    int widthPx, heightPx;
  } cases[] = {{"480x480", 480, 480},
               {"1x1", 1, 1},
               {"640x360", 640, 360},
               {"8192x8192", 8192, 8192},
               {"007x09", 7, 9}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const BitmapSize size = parseBitmapSize(c.text);
    EXPECT_EQ(size.widthPx, c.widthPx);
    EXPECT_EQ(size.heightPx, c.heightPx);
  }
}

TEST(SnapshotSize, RefusesOtherTextsSayingWhy) {
  const std::string form = "must be WIDTHxHEIGHT in pixels, for instance 480x480";
  const std::string numbers = "must be two whole numbers of pixels, for instance 480x480";
  const std::string range = "is out of range: each side is 1 to 8192 pixels";
  const struct {
    const char* text;
    std::string reason;
  } cases[] = {{"480", form},      {"", form},         {"480*480", form},   {"480X480", form},
               {"x480", numbers},  {"480x", numbers},  {"-5x5", numbers},   {"4.5x5", numbers},
               {"5x5x5", numbers}, {" 5x5", numbers},  {"123456x5", range}, {"0x10", range},
               {"10x0", range},    {"8193x10", range}, {"10x99999", range}};
  for (const auto& c : cases) {
    EXPECT_EQ(sizeErrorOf(c.text), "--size '" + std::string(c.text) + "' " + c.reason);
  }
}

TEST(SnapshotScale, OnlyTheHostsThreeScales) {
  for (const int accepted : {256, 384, 512}) EXPECT_EQ(checkedAdvisoryScale(accepted), accepted);
  for (const int refused : {0, -256, 100, 255, 257, 320, 768, 1024}) {
    try {
      checkedAdvisoryScale(refused);
      ADD_FAILURE() << refused << " accepted";
    } catch (const HostError& error) {
      EXPECT_EQ(std::string(error.what()),
                "--scale " + std::to_string(refused) +
                    " is not a display scale: use 256 (100 %), 384 (150 %) or 512 (200 %)");
    }
  }
}

TEST(InlineDrawInfoBlock, CarriesTheSizeAtItsOffsetsAndNothingElse) {
  InlineDrawInfo info(480, 270);
  const auto* bytes = static_cast<const unsigned char*>(info.data());
  std::int32_t words[InlineDrawInfo::kBytes / 4];
  std::memcpy(words, bytes, sizeof words);
  for (int i = 0; i < static_cast<int>(std::size(words)); ++i) {
    const int offset = 4 * i;
    const std::int32_t expected = offset == 20 ? 480 : offset == 24 ? 270 : 0;  // flags 36: 0
    EXPECT_EQ(words[i], expected) << "offset " << offset;
  }
}
