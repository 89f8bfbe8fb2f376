// The position readout of the info label: its text.
#include <cstring>

#include "editor/view/position_readout.h"
#include "space_mouse_fixture.h"

namespace {

TEST(ReadoutText, PercentAndDegreesWithoutTheLastSeparator) {
  const struct {
    double x, y, z;
    const char* text;
  } cases[] = {{0.5, 0.5, 0.0, "50%R  50%F  (45 deg)"},
               {-0.25, 0.0, 0.0, "25%L"},
               {0.0, -1.0, 0.0, "100%B"},
               {0.0, 0.0, 0.0, ""},
               {-0.5, -0.5, 0.0, "50%L  50%B  (-135 deg)"},
               {0.0, 0.0, -0.3, "-30%H  (-90 deg)"},
               {0.3, 0.4, 0.5, "30%R  40%F  (37 deg)  50%H  (45 deg)"},
               {0.001, 0.0, 0.0, "0%R"}};
  for (const auto& c : cases) {
    char text[kReadoutCapacity];
    std::memset(text, 'x', sizeof text);
    formatPosition(text, kReadoutCapacity, c.x, c.y, c.z);
    EXPECT_STREQ(text, c.text);
  }
}

}  // namespace
