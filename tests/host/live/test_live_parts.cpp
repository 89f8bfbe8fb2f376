// The live session's parts that need no server: port names, connection patterns, and the rings
// between threads.
#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "host/live/live_ports.h"
#include "host/live/port_names.h"
#include "host/live/report_queue.h"
#include "host/live/spsc_ring.h"
#include "host/runtime/host_error.h"

namespace {

TEST(LivePortNames, SanitisedCutAndUnique) {
  struct Case {
    std::vector<std::string> channels;
    int count;
    std::size_t maxBytes;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {{"a:b", "tab\there", "   ", ""}, 4, 64, {"a_b", "tab_here", "in_3", "in_4"}},
      {{"side", "side", "side"}, 3, 64, {"side", "side 2", "side 3"}},
      {{"abcdefgh", "abcdefgh"}, 2, 6, {"abcdef", "abcd 2"}},
      // \xc3\xa9 is one character: never cut in half
      {{"ab\xc3\xa9"}, 1, 3, {"ab"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(portNamesFor(c.channels, c.count, "in_", c.maxBytes), c.expected)
        << c.channels.size() << " names, " << c.maxBytes << " bytes";
  }
}

TEST(LivePortNames, ConnectionPatterns) {
  EXPECT_EQ(connectionTarget("system:playback_%d", 3), "system:playback_3");
  EXPECT_EQ(connectionTarget("other:in %d", 12), "other:in 12");
  checkConnectionPattern("system:playback_%d", "--connect-outputs");
  for (const char* bad : {"system:playback_1", "a_%d_%d", "a_%s", "%"}) {
    EXPECT_THROW(checkConnectionPattern(bad, "--connect-outputs"), HostError) << bad;
  }
}

TEST(LiveRings, SampleRingWrapsAndDiscards) {
  SpscRing<float> ring(6);  // rounded up to 8
  EXPECT_EQ(ring.capacity(), 8u);
  std::vector<float> in(8);
  std::iota(in.begin(), in.end(), 1.0f);
  EXPECT_EQ(ring.write(in.data(), 5), 5u);
  EXPECT_EQ(ring.discard(2), 2u);
  EXPECT_EQ(ring.write(in.data() + 5, 3), 3u);
  EXPECT_EQ(ring.write(in.data(), 8), 2u);  // only what fits
  std::vector<float> out(10, 0.0f);
  EXPECT_EQ(ring.read(out.data(), 10), 8u);
  EXPECT_EQ(out, (std::vector<float>{3, 4, 5, 6, 7, 8, 1, 2, 0, 0}));
  EXPECT_EQ(ring.readable(), 0u);
}

TEST(LiveRings, ReportQueueIsBoundedAndOrdered) {
  ReportQueue<int> queue(3);  // rounded up to 4
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(queue.push(i));
  EXPECT_FALSE(queue.push(99));
  int item = -1;
  for (int i = 0; i < 4; ++i) {
    ASSERT_TRUE(queue.pop(item));
    EXPECT_EQ(item, i);
  }
  EXPECT_FALSE(queue.pop(item));
  EXPECT_TRUE(queue.push(7));  // the slots come round again
  ASSERT_TRUE(queue.pop(item));
  EXPECT_EQ(item, 7);
}

}  // namespace
