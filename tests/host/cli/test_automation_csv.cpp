// The automation file parser: what it accepts, in which order, and how it names bad lines; the
// sample each point lands on is checked on rendered files.
#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "host/cli/automation_csv.h"
#include "host/live/automation_recorder.h"
#include "tests/host/runtime/test_support.h"

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
  std::vector<std::tuple<double, std::string, float, int>> read;
  for (const AutomationPoint& p : points)
    read.emplace_back(p.seconds, p.parameter, p.value, p.line);
  EXPECT_EQ(read, (std::vector<std::tuple<double, std::string, float, int>>{
                      {0.0, "12", 1.0f, 5},
                      {0.1, "say \"hi\"", 0.0f, 7},
                      {2.5, "in 1 X", 0.25f, 4},
                      {2.5, "front left, height gain", 0.5f, 6}}));
  EXPECT_TRUE(parse("time,parameter,value\n# nothing yet\n").empty());
}

TEST(AutomationCsv, BadLinesNameFileLineAndField) {
  const std::pair<const char*, const char*> cases[] = {
      {"0,gain\n", "moves.csv:1: expected 3 fields (time, parameter, value), found 2"},
      {"# c\nsoon,gain,0.5\n", "moves.csv:2: time 'soon' is not a number of seconds >= 0"},
      {"0, ,0.5\n", "moves.csv:1: the parameter is empty"},
      {"0,gain,1.5\n", "moves.csv:1: value 1.5 is outside 0..1"},
      {"0,gain,-0.01\n", "moves.csv:1: value -0.01 is outside 0..1"},
      {"0,gain,0,5\n", "moves.csv:1: expected 3 fields (time, parameter, value), found 4"},
      {"-0.5,gain,0.5\n", "moves.csv:1: time '-0.5' is not a number of seconds >= 0"},
      {"inf,gain,0.5\n", "moves.csv:1: time 'inf' is not a number of seconds >= 0"},
      {"0,gain,nan\n", "moves.csv:1: value 'nan' is not a number"},
      {"0,gain,0.5x\n", "moves.csv:1: value '0.5x' is not a number"},
      {"0,gain,\n", "moves.csv:1: value '' is not a number"},
      {"tempo,gain,0.5\n", "moves.csv:1: time 'tempo' is not a number of seconds >= 0"},
      {"0,\"gain,0.5\n", "moves.csv:1: a quote is not closed"},
      {"time,parameter,value\ntime,parameter,value\n",
       "moves.csv:2: time 'time' is not a number of seconds >= 0"},
  };
  for (const auto& [text, message] : cases) EXPECT_EQ(parseError(text), message) << text;
  EXPECT_EQ(errorOf([] { loadAutomationCsv("/no/such/moves.csv"); }),
            "cannot read the automation file /no/such/moves.csv");
}

TEST(AutomationCsv, TimesRoundToTheNearestSample) {
  const std::tuple<double, double, std::int64_t> cases[] = {
      {0.006, 44100, 265}, {0.01, 44100, 441}, {0.0125, 48000, 600}, {1.1e-5, 44100, 0}};
  for (const auto& [seconds, rate, sample] : cases)
    EXPECT_EQ(samplePositionOf(seconds, rate), sample) << seconds << " s at " << rate;
}

// What the recorder writes, read by the render's own parser, lands on the same sample with the
// same float.
TEST(LiveRecording, LinesReadBackByTheRenderToTheSample) {
  for (const double rate : {44100.0, 48000.0, 96000.0}) {
    const std::int64_t samples[] = {0, 256, 12345678};
    std::stringstream csv;
    csv << "time,parameter,value\n";
    for (const std::int64_t sample : samples) {
      csv << automationLine(sample, rate, 42, 0.1f + static_cast<float>(sample % 7) / 9.0f);
    }
    const std::vector<AutomationPoint> points = parseAutomationCsv(csv, "recorded.csv");
    ASSERT_EQ(points.size(), std::size(samples));
    for (std::size_t i = 0; i < points.size(); ++i) {
      EXPECT_EQ(samplePositionOf(points[i].seconds, rate), samples[i]) << rate;
      EXPECT_EQ(points[i].parameter, "42");
      EXPECT_EQ(points[i].value, 0.1f + static_cast<float>(samples[i] % 7) / 9.0f);
    }
  }
}
