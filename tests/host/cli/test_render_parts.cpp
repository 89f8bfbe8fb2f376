// The parts of a render that need no plug-in: its options, when it calls the plug-in, the file's
// channel order, and the space it needs. The level meter is the streams' test.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <tuple>

#include "host/cli/channel_layout.h"
#include "host/cli/output_checks.h"
#include "host/cli/render.h"
#include "host/cli/render_schedule.h"
#include "host/runtime/host_error.h"
#include "tests/host/runtime/test_support.h"

namespace {

// Each segment as (start, frames, changes applied before it); a schedule that never ends fails
// at once instead of hanging.
using Step = std::tuple<std::int64_t, int, int>;
std::vector<Step> stepsOf(RenderSchedule schedule) {
  std::vector<Step> steps;
  Segment segment;
  while (steps.size() < 100 && schedule.next(segment)) {
    steps.emplace_back(segment.start, segment.frames,
                       static_cast<int>(segment.endChange - segment.firstChange));
  }
  return steps;
}

}  // namespace

TEST(RenderOptions, BlockAndGlideAreCheckedAtBothEnds) {
  const std::string block = "--block must be between 1 and 65536 samples",
                    glide = "--glide must be between 0 and 250 milliseconds";
  const struct {
    int blockSize;
    double glideMs;
    std::string error;
  } cases[] = {{1, 0.0, "no error"}, {65536, 250.0, "no error"}, {0, 10.0, block},
               {65537, 10.0, block}, {64, -0.01, glide},         {64, 250.01, glide},
               {64, NAN, glide}};
  for (const auto& c : cases) {
    RenderOptions options;
    options.blockSize = c.blockSize;
    options.glideMs = c.glideMs;
    EXPECT_EQ(errorOf([&] { checkRenderOptions(options); }), c.error)
        << c.blockSize << " " << c.glideMs;
  }
}

TEST(RenderSchedule, AfterAChangeOneBlockOfTheGlideElseTheBlockSize) {
  const std::vector<ParameterChange> changes = {{100, 0, 1.0f}, {100, 1, 0.0f}, {130, 0, 0.5f}};
  const struct {
    int block, glide;
    std::int64_t total;
    std::vector<Step> expected;
  } cases[] = {
      // A glide of its own: 48 frames after the change, cut short by the next change.
      {64,
       48,
       250,
       {{0, 64, 0}, {64, 36, 0}, {100, 30, 2}, {130, 48, 1}, {178, 64, 0}, {242, 8, 0}}},
      // Longer than a block, and the same with another block size.
      {16,
       48,
       200,
       {{0, 16, 0},
        {16, 16, 0},
        {32, 16, 0},
        {48, 16, 0},
        {64, 16, 0},
        {80, 16, 0},
        {96, 4, 0},
        {100, 30, 2},
        {130, 48, 1},
        {178, 16, 0},
        {194, 6, 0}}},
      // Glide 0: the grid of the block size; a change glides over the rest of its block.
      {64, 0, 200, {{0, 64, 0}, {64, 36, 0}, {100, 28, 2}, {128, 2, 0}, {130, 62, 1}, {192, 8, 0}}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(stepsOf(RenderSchedule(changes, c.block, c.glide, c.total)), c.expected)
        << c.block << "/" << c.glide;
  }
  EXPECT_EQ(RenderSchedule({}, 16, 48, 1).largestBlock(), 48);
}

// A line that ends on a step has no point of its own there: the change is that point.
TEST(RenderSchedule, InterpolationDrawsStraightLinesPerParameter) {
  const std::vector<ParameterChange> lines = interpolateChanges(
      {{0, 3, 0.0f}, {20, 5, 1.0f}, {50, 4, 1.0f}, {100, 3, 1.0f}, {100, 5, 0.0f}}, 40);
  std::vector<std::tuple<std::int64_t, int, float>> points;
  for (const ParameterChange& c : lines) points.emplace_back(c.sample, c.parameter, c.value);
  EXPECT_EQ(points, (std::vector<std::tuple<std::int64_t, int, float>>{{0, 3, 0.0f},
                                                                       {20, 5, 1.0f},
                                                                       {40, 3, 0.4f},
                                                                       {50, 4, 1.0f},
                                                                       {60, 5, 0.5f},
                                                                       {80, 3, 0.8f},
                                                                       {100, 3, 1.0f},
                                                                       {100, 5, 0.0f}}));
}

// WAVE order and its positions are the 7.1 render's test; here the plug-in's order on request, and
// names that are no standard position.
TEST(ChannelLayout, ThePluginsOrderOnRequestOrForUnknownNames) {
  const FileChannels asIs = fileChannelsFor({"front left", "front right", "front center", "LFE",
                                             "side left", "side right", "back left", "back right"},
                                            8, ChannelOrder::Plugin);
  const FileChannels user = fileChannelsFor({"speaker A", "speaker B"}, 2, ChannelOrder::Wave);
  EXPECT_EQ(
      std::tuple(asIs.pluginOutput, asIs.positions.empty(), user.pluginOutput,
                 user.positions.empty()),
      std::tuple(std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}, true, std::vector<int>{0, 1}, true));
}

TEST(FreeSpace, ARenderLargerThanItsDiskIsRefusedWithBothSizes) {
  const std::string out = testing::TempDir() + "out.wav";
  EXPECT_NO_THROW(checkFreeSpace(out, 1000));
  const std::string message = errorOf([&] { checkFreeSpace(out, std::int64_t{54} << 50); });
  EXPECT_TRUE(message.starts_with("not enough space for " + out +
                                  ": it needs about 60798.6 TB, and its disk has "))
      << message;
  const std::pair<std::int64_t, const char*> sizes[] = {
      {999, "999 bytes"}, {1000, "1.0 kB"}, {1240000, "1.2 MB"}, {54'000'000'000, "54.0 GB"}};
  for (const auto& [bytes, text] : sizes) EXPECT_EQ(formatBytes(bytes), text);
}
