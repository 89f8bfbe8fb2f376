// spatiola bench for long runs: reproducible block sizes, the output checksum and the soak report.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/cli/bench_soak.h"
#include "tests/host/command_runner.h"
#include "tests/host/temp_config.h"

namespace {

const std::string kSpatiola = SPATIOLA_EXE;
const std::string kPlugin = SPATIOLA_PLUGIN;

std::vector<int> sizes(BlockSizer sizer, int count) {
  std::vector<int> drawn;
  for (int n = 0; n < count; ++n) drawn.push_back(sizer.next());
  return drawn;
}

TEST(BlockSizer, TheSameSeedGivesTheSameSizesWithinTheRange) {
  const std::vector<int> first = sizes(BlockSizer(64, 7, true), 2000);
  EXPECT_EQ(first, sizes(BlockSizer(64, 7, true), 2000));
  EXPECT_NE(first, sizes(BlockSizer(64, 8, true), 2000));
  bool sawZero = false;
  bool sawLargest = false;
  for (int size : first) {
    ASSERT_GE(size, 0);
    ASSERT_LE(size, 64);
    sawZero = sawZero || size == 0;
    sawLargest = sawLargest || size == 64;
  }
  EXPECT_TRUE(sawZero);
  EXPECT_TRUE(sawLargest);
  EXPECT_EQ(sizes(BlockSizer(512, 7, false), 3), (std::vector<int>{512, 512, 512}));
}

TEST(OutputChecksum, ChangesWithAnyBitOfAnySample) {
  const double samples[] = {0.5, -0.25, 1e-300};
  OutputChecksum reference;
  reference.add(samples, 3);
  OutputChecksum same;
  same.add(samples, 2);
  same.add(samples + 2, 1);
  EXPECT_EQ(reference.value(), same.value());  // block boundaries do not matter

  const double negativeZero[] = {0.5, -0.25, -0.0};
  const double positiveZero[] = {0.5, -0.25, 0.0};
  OutputChecksum a;
  OutputChecksum b;
  a.add(negativeZero, 3);
  b.add(positiveZero, 3);
  EXPECT_NE(a.value(), b.value());
  EXPECT_NE(reference.value(), OutputChecksum().value());
}

TEST(SoakRecorder, ClosesAnIntervalEveryPeriodOfWallTime) {
  SoakRecorder recorder(60.0);
  EXPECT_FALSE(recorder.addBlock(100, 0.001, 0.1, 10.0));
  EXPECT_FALSE(recorder.addBlock(300, 0.004, 0.2, 59.0));
  EXPECT_TRUE(recorder.addBlock(200, 0.002, 0.3, 61.0));
  EXPECT_FALSE(recorder.addBlock(50, 0.001, 0.4, 100.0));
  recorder.finish(0.4, 101.0);
  ASSERT_EQ(recorder.intervals().size(), 2u);
  const SoakInterval& first = recorder.intervals()[0];
  EXPECT_EQ(first.blocks, 3);
  EXPECT_EQ(first.frames, 600);
  EXPECT_DOUBLE_EQ(first.worstBlockSeconds, 0.004);
  EXPECT_NEAR(first.meanBlockMicroseconds(), 7000.0 / 3.0, 1e-9);
  EXPECT_NEAR(first.nanosecondsPerFrame(), 7e6 / 600.0, 1e-6);
  EXPECT_TRUE(first.complete);
  EXPECT_GT(first.residentBytes, 0);
  EXPECT_EQ(recorder.intervals()[1].blocks, 1);
  EXPECT_FALSE(recorder.intervals()[1].complete);
}

class BenchCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kPlugin)) GTEST_SKIP() << "spatiola.so is not built";
  }
  CommandResult bench(std::vector<std::string> args) {
    args.insert(args.begin(), {kSpatiola, "bench", "--inputs", "6", "--outputs", "8", "--moving",
                               "--block", "256", "--seconds", "0.3", "--repeat", "1"});
    return runCommand(args);
  }
  static std::string checksumOf(const CommandResult& run) {
    const auto at = run.out.find("checksum    ");
    return at == std::string::npos ? "" : run.out.substr(at, 28);
  }

  TempConfig config_;
};

TEST_F(BenchCommand, TheSameSeedGivesTheSameOutputBitForBit) {
  const CommandResult first = bench({"--random-blocks", "--seed", "5"});
  const CommandResult again = bench({"--random-blocks", "--seed", "5"});
  const CommandResult other = bench({"--random-blocks", "--seed", "6"});
  ASSERT_EQ(first.exitCode, 0) << first.err;
  EXPECT_NE(first.out.find("shape       6 in -> 8 out, block 0..256,"), std::string::npos)
      << first.out;
  ASSERT_FALSE(checksumOf(first).empty()) << first.out;
  EXPECT_EQ(checksumOf(first), checksumOf(again));
  EXPECT_NE(checksumOf(first), checksumOf(other));
}

TEST_F(BenchCommand, ASoakReportsIntervalsAndComparesLastWithFirst) {
  const CommandResult run = bench({"--report", "0.000001"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find(" min  audio "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(" MB "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("soak        last/first: cost per frame x"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("(median of 1 runs)"), std::string::npos) << run.out;
  const CommandResult refused = bench({"--report", "-1"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.err.find("--report must be 0 or more seconds"), std::string::npos)
      << refused.err;
}

}  // namespace
