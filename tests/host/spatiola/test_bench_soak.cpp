// spatiola bench for long runs: reproducible block sizes, the output checksum and the soak report.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "host/cli/bench_soak.h"
#include "tests/host/spatiola/command_fixture.h"

namespace {

const std::string kPlugin = SPATIOLA_PLUGIN;

TEST(OutputChecksum, ChangesWithAnyBitOfAnySampleNotWithBlockBoundaries) {
  const double samples[] = {0.5, -0.25, -0.0}, positiveZero = 0.0;
  OutputChecksum whole, split, other;
  whole.add(samples, 3);
  split.add(samples, 2);
  split.add(samples + 2, 1);
  other.add(samples, 2);
  other.add(&positiveZero, 1);
  EXPECT_EQ(whole.value(), split.value());
  EXPECT_NE(whole.value(), other.value());
}

TEST(SoakRecorder, ClosesAnIntervalEveryPeriodOfWallTime) {
  SoakRecorder recorder(60.0);
  EXPECT_EQ(
      (std::array{
          recorder.addBlock(100, 0.001, 0.1, 10.0), recorder.addBlock(300, 0.004, 0.2, 59.0),
          recorder.addBlock(200, 0.002, 0.3, 61.0), recorder.addBlock(50, 0.001, 0.4, 100.0)}),
      (std::array{false, false, true, false}));
  recorder.finish(0.4, 101.0);
  ASSERT_EQ(recorder.intervals().size(), 2u);
  const SoakInterval& first = recorder.intervals()[0];
  EXPECT_EQ(std::tuple(first.blocks, first.frames, first.worstBlockSeconds, first.complete),
            std::tuple(3, 600, 0.004, true));
  EXPECT_NEAR(first.nanosecondsPerFrame(), 7e6 / 600.0, 1e-6);
  EXPECT_GT(first.residentBytes, 0);
  EXPECT_FALSE(recorder.intervals()[1].complete);
}

class BenchCommand : public CommandTest {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kPlugin)) GTEST_SKIP() << "spatiola.so is not built";
  }
  CommandResult bench(std::vector<std::string> args) {
    args.insert(args.begin(), {"bench", "--inputs", "6", "--outputs", "8", "--moving", "--block",
                               "256", "--seconds", "0.3", "--repeat", "1"});
    return spatiola(args);
  }
  static std::string checksumOf(const CommandResult& run) {
    const auto at = run.out.find("checksum    ");
    return at == std::string::npos ? "" : run.out.substr(at, 28);
  }
};

// The soak report rides along: intervals of a microsecond close at every block.
TEST_F(BenchCommand, TheSameSeedGivesTheSameOutputBitForBitAndASoakReportsIntervals) {
  const CommandResult first = bench({"--random-blocks", "--seed", "5", "--report", "0.000001"});
  const CommandResult again = bench({"--random-blocks", "--seed", "5"});
  const CommandResult other = bench({"--random-blocks", "--seed", "6"});
  ASSERT_EQ(first.exitCode, 0) << first.err;
  for (const char* part : {"shape       6 in -> 8 out, block 1..256, 0.3 s at 48000 Hz, moving",
                           "real time   x", "(median of 1 runs)", "per block   ", " min  audio ",
                           " MB ", "soak        last/first: cost per frame x"})
    EXPECT_NE(first.out.find(part), std::string::npos) << first.out;
  ASSERT_FALSE(checksumOf(first).empty()) << first.out;
  EXPECT_EQ(checksumOf(first), checksumOf(again));
  EXPECT_NE(checksumOf(first), checksumOf(other));
}

}  // namespace
