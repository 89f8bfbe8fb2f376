// The automation file parser: what it accepts, in which order, and how it names bad lines.
#include <gtest/gtest.h>

#include <sstream>

#include "host/cli/automation_csv.h"
#include "tests/host/test_support.h"

namespace {

std::vector<AutomationPoint> parse(const std::string& text) {
  std::istringstream in(text);
  return parseAutomationCsv(in, "moves.csv");
}

std::string parseError(const std::string& text) {
  return errorOf([&] { parse(text); });
}

}  // namespace

TEST(AutomationCsv, ReadsPointsSortedByTimeKeepingFileOrderForTies) {
  const auto points = parse(
      "time,parameter,value\n"
      "# comment\n"
      "\n"
      "2.5, in 1 X ,0.25\n"
      "0,12,1\n"
      "2.5,\"front left, height gain\",0.5\r\n"
      "1e-1,\"say \"\"hi\"\"\",0\n");
  ASSERT_EQ(points.size(), 4u);
  EXPECT_DOUBLE_EQ(points[0].seconds, 0.0);
  EXPECT_EQ(points[0].parameter, "12");
  EXPECT_FLOAT_EQ(points[0].value, 1.0f);
  EXPECT_EQ(points[0].line, 5);
  EXPECT_DOUBLE_EQ(points[1].seconds, 0.1);
  EXPECT_EQ(points[1].parameter, "say \"hi\"");
  EXPECT_EQ(points[2].parameter, "in 1 X");
  EXPECT_EQ(points[3].parameter, "front left, height gain");
  EXPECT_EQ(points[3].line, 6);
}

TEST(AutomationCsv, EmptyFilesAndHeaderOnlyGiveNoPoints) {
  EXPECT_TRUE(parse("").empty());
  EXPECT_TRUE(parse("time,parameter,value\n# nothing yet\n").empty());
}

TEST(AutomationCsv, BadLinesNameFileLineAndField) {
  struct Case {
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {"0,gain\n", "moves.csv:1: expected 3 fields (time, parameter, value), found 2"},
      {"0,gain,0.5,extra\n", "moves.csv:1: expected 3 fields (time, parameter, value), found 4"},
      {"# c\nsoon,gain,0.5\n", "moves.csv:2: time 'soon' is not a number of seconds >= 0"},
      {"-1,gain,0.5\n", "moves.csv:1: time '-1' is not a number of seconds >= 0"},
      {"inf,gain,0.5\n", "moves.csv:1: time 'inf' is not a number of seconds >= 0"},
      {"0, ,0.5\n", "moves.csv:1: the parameter is empty"},
      {"0,gain,loud\n", "moves.csv:1: value 'loud' is not a number"},
      {"0,gain,1.5\n", "moves.csv:1: value 1.5 is outside 0..1"},
      {"0,gain,-0.01\n", "moves.csv:1: value -0.01 is outside 0..1"},
      {"0,\"gain,0.5\n", "moves.csv:1: a quote is not closed"},
      {"time,parameter,value\ntime,parameter,value\n",
       "moves.csv:2: time 'time' is not a number of seconds >= 0"},
  };
  for (const Case& c : cases) EXPECT_EQ(parseError(c.text), c.message) << c.text;
}

TEST(AutomationCsv, SecondsBecomeTheNearestSample) {
  EXPECT_EQ(samplePositionOf(0.0, 48000.0), 0);
  EXPECT_EQ(samplePositionOf(1.0, 48000.0), 48000);
  EXPECT_EQ(samplePositionOf(0.1, 44100.0), 4410);
  EXPECT_EQ(samplePositionOf(1.0 / 3.0, 48000.0), 16000);
}
