// spatiola bench for long runs: reproducible runs whose output checksums and soak report the
// command prints.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/host/spatiola/command_fixture.h"

namespace {

const std::string kPlugin = SPATIOLA_PLUGIN;

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
