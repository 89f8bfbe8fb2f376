// The host's fader law: positions 0..1000 against dB.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/services/fader_law.h"

TEST(FaderLaw, EndpointsAndUnity) {
  EXPECT_EQ(faderPositionToDb(0.0), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(faderPositionToDb(-5.0), -std::numeric_limits<double>::infinity());
  EXPECT_DOUBLE_EQ(faderPositionToDb(1000.0), 12.0);
  EXPECT_DOUBLE_EQ(faderPositionToDb(1500.0), 12.0);
  EXPECT_DOUBLE_EQ(dbToFaderPosition(-std::numeric_limits<double>::infinity()), 0.0);
  EXPECT_DOUBLE_EQ(dbToFaderPosition(std::nan("")), 0.0);
  EXPECT_DOUBLE_EQ(dbToFaderPosition(12.0), 1000.0);
  EXPECT_DOUBLE_EQ(dbToFaderPosition(40.0), 1000.0);
  // 0 dB sits at 1000 * 10^(-12/80), about 70.8 % of the travel.
  EXPECT_NEAR(dbToFaderPosition(0.0), 707.9458, 1e-4);
  EXPECT_NEAR(faderPositionToDb(500.0), 12.0 + 80.0 * std::log10(0.5), 1e-12);
  EXPECT_NEAR(faderPositionToDb(100.0), -68.0, 1e-12);
}

TEST(FaderLaw, RoundTripsBothWaysAndRisesStrictly) {
  double previousDb = -std::numeric_limits<double>::infinity();
  for (int position = 1; position <= 1000; ++position) {
    const double levelDb = faderPositionToDb(position);
    EXPECT_GT(levelDb, previousDb) << "position " << position;
    EXPECT_NEAR(dbToFaderPosition(levelDb), position, 1e-9) << "position " << position;
    previousDb = levelDb;
  }
  for (double levelDb = -140.0; levelDb <= 12.0; levelDb += 0.5)
    EXPECT_NEAR(faderPositionToDb(dbToFaderPosition(levelDb)), levelDb, 1e-9) << levelDb;
}
