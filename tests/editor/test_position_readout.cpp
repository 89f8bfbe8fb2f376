// The position readout of the info label: its text, the bounded append, and the label and timer
// calls it makes.
#include <cstring>

#include "editor/view/position_readout.h"
#include "space_mouse_fixture.h"

namespace {

struct TextCase {
  double x;
  double y;
  double z;
  const char* text;
};

class ReadoutText : public ::testing::TestWithParam<TextCase> {};

TEST_P(ReadoutText, PercentAndDegreesWithoutTheLastSeparator) {
  const TextCase& c = GetParam();
  char text[kReadoutCapacity];
  std::memset(text, 'x', sizeof text);
  formatPosition(text, kReadoutCapacity, c.x, c.y, c.z);
  EXPECT_STREQ(text, c.text);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ReadoutText,
    ::testing::Values(TextCase{0.5, 0.5, 0.0, "50%R  50%F  (45 deg)"},
                      TextCase{-0.25, 0.0, 0.0, "25%L"}, TextCase{0.0, -1.0, 0.0, "100%B"},
                      TextCase{0.0, 0.0, 0.0, ""},
                      TextCase{-0.5, -0.5, 0.0, "50%L  50%B  (-135 deg)"},
                      TextCase{0.5, 0.0, 0.5, "50%R  50%H  (45 deg)"},
                      TextCase{0.0, 0.0, -0.3, "-30%H  (-90 deg)"},
                      TextCase{0.3, 0.4, 0.5, "30%R  40%F  (37 deg)  50%H  (45 deg)"},
                      TextCase{0.001, 0.0, 0.0, "0%R"}));

TEST(ReadoutText, CutsTheSeparatorOnlyFromTextsLongerThanTwo) {
  struct Case {
    const char* before;
    const char* after;
  };
  for (const Case& c :
       {Case{"ab", "ab"}, Case{"a", "a"}, Case{"", ""}, Case{"abc", "a"}, Case{"25%L  ", "25%L"}}) {
    char text[16];
    std::strcpy(text, c.before);
    cutTrailingSeparator(text);
    EXPECT_STREQ(text, c.after) << c.before;
  }
}

TEST(AppendFormat, AppendsWithinTheCapacityAndAlwaysTerminates) {
  struct Case {
    int capacity;
    const char* after;
  };
  for (const Case& c : {Case{8, "ab12345"}, Case{6, "ab123"}, Case{3, "ab"}}) {
    char text[8] = "ab";
    appendFormat(text, c.capacity, "%d", 12345);
    EXPECT_STREQ(text, c.after) << c.capacity;
  }
}

TEST(AppendFormat, LeavesAFullOrUnusableBufferAlone) {
  char full[4] = {'a', 'b', 'c', 'd'};
  appendFormat(full, 4, "%s", "e");
  EXPECT_EQ(std::string(full, 4), "abcd");

  char text[4] = "ab";
  appendFormat(text, 0, "%s", "e");
  appendFormat(text, -1, "%s", "e");
  EXPECT_STREQ(text, "ab");
}

class PositionReadout : public ::testing::Test {
 protected:
  void SetUp() override {
    plugin_ = makeUserSetup({{0.5, 0.0, 0.25}});
    plugin_->inputs[0].x = -0.25;
    plugin_->inputs[0].y = 0.0;
    plugin_->spaceScaleX = 2.0;  // the readout shows model values, not the scaled room
    plugin_->editorWindow = InfoLabelRecorder::editor();
  }
  std::unique_ptr<PannerPlugin> plugin_;
  InfoLabelRecorder label_;
};

TEST_F(PositionReadout, InputFirstThenSpeaker) {
  showPositionReadout(*plugin_, 0, 0);
  showPositionReadout(*plugin_, -1, 0);
  EXPECT_EQ(label_.calls(),
            (std::vector<std::string>{"kill 10", "text 1287 25%L", "timer 10 2000", "kill 10",
                                      "text 1287 50%R  25%H  (27 deg)", "timer 10 2000"}));
}

TEST_F(PositionReadout, EmptyTextClearsTheLabelAndStartsNoTimer) {
  showPositionReadout(*plugin_, -1, -1);
  showPositionReadout(*plugin_, 1, -1);  // past the inputs
  showPositionReadout(*plugin_, -1, 1);  // past the speakers
  plugin_->inputs[0].x = 0.0;
  showPositionReadout(*plugin_, 0, -1);  // at the centre
  const std::vector<std::string> cleared{"kill 10", "text 1287 "};
  std::vector<std::string> expected;
  for (int i = 0; i < 4; ++i) expected.insert(expected.end(), cleared.begin(), cleared.end());
  EXPECT_EQ(label_.calls(), expected);
}

TEST_F(PositionReadout, NothingWhileTheEditorIsClosed) {
  plugin_->editorWindow = nullptr;
  showPositionReadout(*plugin_, 0, -1);
  setInfoText(*plugin_, "text");
  EXPECT_TRUE(label_.calls().empty());
}

}  // namespace
