// The position readout of the info label: its text and the label and timer calls it makes.
#include <cstring>

#include "editor/view/position_readout.h"
#include "space_mouse_fixture.h"

namespace {

TEST(ReadoutText, PercentAndDegreesWithoutTheLastSeparator) {
  const struct {
    double x, y, z;
    const char* text;
  } cases[] = {{0.5, 0.5, 0.0, "50%R  50%F  (45 deg)"},
               {-0.25, 0.0, 0.0, "25%L"},
               {0.0, -1.0, 0.0, "100%B"},
               {0.0, 0.0, 0.0, ""},
               {-0.5, -0.5, 0.0, "50%L  50%B  (-135 deg)"},
               {0.0, 0.0, -0.3, "-30%H  (-90 deg)"},
               {0.3, 0.4, 0.5, "30%R  40%F  (37 deg)  50%H  (45 deg)"},
               {0.001, 0.0, 0.0, "0%R"}};
  for (const auto& c : cases) {
    char text[kReadoutCapacity];
    std::memset(text, 'x', sizeof text);
    formatPosition(text, kReadoutCapacity, c.x, c.y, c.z);
    EXPECT_STREQ(text, c.text);
  }
}

class PositionReadout : public ::testing::Test {
 protected:
  void SetUp() override {
    plugin_->model.inputs[0].x = -0.25;
    plugin_->model.inputs[0].y = 0.0;
    plugin_->model.spaceScaleX = 2.0;  // the readout shows model values, not the scaled room
    plugin_->host.editorWindow = InfoLabelRecorder::editor();
  }
  std::unique_ptr<PannerPlugin> plugin_ = makeUserSetup({{0.5, 0.0, 0.25}});
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
  showPositionReadout(*plugin_, 1, -1);  // past the inputs
  plugin_->model.inputs[0].x = 0.0;
  showPositionReadout(*plugin_, 0, -1);  // at the centre
  EXPECT_EQ(label_.calls(),
            (std::vector<std::string>{"kill 10", "text 1287 ", "kill 10", "text 1287 "}));
}

TEST_F(PositionReadout, NothingWhileTheEditorIsClosed) {
  plugin_->host.editorWindow = nullptr;
  showPositionReadout(*plugin_, 0, -1);
  setInfoText(*plugin_, "text");
  EXPECT_TRUE(label_.calls().empty());
}

}  // namespace
