// The host's fader law: positions 0..1000 against dB.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/services/fader_law.h"

TEST(FaderLaw, EndpointsAndUnity) {
  const double inf = std::numeric_limits<double>::infinity();
  for (const auto& [position, levelDb] :
       {std::pair{0.0, -inf}, {-5.0, -inf}, {1000.0, 12.0}, {1500.0, 12.0}, {100.0, -68.0}})
    EXPECT_DOUBLE_EQ(faderPositionToDb(position), levelDb) << position;
  for (const auto& [levelDb, position] :
       {std::pair{-inf, 0.0}, {std::nan(""), 0.0}, {40.0, 1000.0}})
    EXPECT_DOUBLE_EQ(dbToFaderPosition(levelDb), position) << levelDb;
  // 0 dB sits at 1000 * 10^(-12/80), about 70.8 % of the travel.
  EXPECT_NEAR(dbToFaderPosition(0.0), 707.9458, 1e-4);
}

TEST(FaderLaw, RoundTripsAndRisesStrictly) {
  double previousDb = -std::numeric_limits<double>::infinity();
  for (double position : {1.0, 2.0, 10.0, 333.0, 707.0, 999.0, 1000.0}) {
    const double levelDb = faderPositionToDb(position);
    EXPECT_GT(levelDb, previousDb) << position;
    EXPECT_NEAR(dbToFaderPosition(levelDb), position, 1e-9) << position;
    previousDb = levelDb;
  }
  for (double levelDb : {-140.0, -60.5, 0.0, 11.5})
    EXPECT_NEAR(faderPositionToDb(dbToFaderPosition(levelDb)), levelDb, 1e-9) << levelDb;
}
