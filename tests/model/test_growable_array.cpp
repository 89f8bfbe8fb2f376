// The model's growable arrays: zeroed growth, kept contents, memory policy.
#include <gtest/gtest.h>

#include "model/growable_array.h"

TEST(GrowableArray, ReGrownElementsAreZeroAgain) {
  GrowableArray<double> values;
  ASSERT_TRUE(values.resize(1000));
  values[1] = 7.5;
  values[999] = 1.0;
  ASSERT_TRUE(values.resize(2));
  ASSERT_TRUE(values.resize(1000));  // zero, not the old values still in the buffer
  EXPECT_EQ(values[999], 0.0);
  EXPECT_EQ(values[1], 7.5);
  EXPECT_FALSE(values.resize(-1));
  EXPECT_EQ(values.size(), 1000);
}

TEST(GrowableArray, GivesMemoryBackOnlyWhenShortenedWellBelowCapacity) {
  GrowableArray<unsigned char> bytes;
  ASSERT_TRUE(bytes.resize(40000));
  const std::size_t full = bytes.capacityBytes();
  ASSERT_TRUE(bytes.resize(30000));
  EXPECT_EQ(bytes.capacityBytes(), full);
  ASSERT_TRUE(bytes.resize(100));
  EXPECT_LT(bytes.capacityBytes(), full);

  // A buffer emptied and filled again in small steps keeps its memory and its address.
  ASSERT_TRUE(bytes.resize(40000));
  const unsigned char* address = bytes.data();
  const std::size_t kept = bytes.capacityBytes();
  bytes.clear();
  EXPECT_EQ(bytes.size(), 0);
  for (int length = 4; length <= 40000; length += 4) ASSERT_TRUE(bytes.resize(length));
  EXPECT_EQ(bytes.capacityBytes(), kept);
  EXPECT_EQ(bytes.data(), address);
}
