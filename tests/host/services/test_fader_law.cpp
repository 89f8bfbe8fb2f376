// The host's fader law: positions 0..1000 against dB.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/services/fader_law.h"

TEST(FaderLaw, EndpointsUnityAndStrictlyRisingRoundTrips) {
  const double inf = std::numeric_limits<double>::infinity();
  for (const auto& [position, levelDb] :
       {std::pair{0.0, -inf}, {-5.0, -inf}, {1000.0, 12.0}, {1500.0, 12.0}, {100.0, -68.0}})
    EXPECT_DOUBLE_EQ(faderPositionToDb(position), levelDb) << position;
  EXPECT_EQ(std::pair(dbToFaderPosition(std::nan("")), dbToFaderPosition(40.0)),
            std::pair(0.0, 1000.0));
  // 0 dB sits at 1000 * 10^(-12/80), about 70.8 % of the travel.
  EXPECT_NEAR(dbToFaderPosition(0.0), 707.9458, 1e-4);
  double previousDb = -inf;
  for (double position : {1.0, 10.0, 333.0, 999.0}) {
    EXPECT_GT(faderPositionToDb(position), previousDb) << position;
    previousDb = faderPositionToDb(position);
    EXPECT_NEAR(dbToFaderPosition(previousDb), position, 1e-9) << position;
  }
}
