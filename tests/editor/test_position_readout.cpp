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

// The model's values, not the scaled room's; an empty text clears the label and starts no timer;
// nothing while the editor is closed.
TEST(PositionReadout, ShowsAnInputOrASpeakerWhileTheEditorIsOpen) {
  auto plugin = makeUserSetup({{0.5, 0.0, 0.25}});
  plugin->model.inputs[0].x = -0.25;
  plugin->model.inputs[0].y = 0.0;
  plugin->model.spaceScaleX = 2.0;
  plugin->host.editorWindow = fake_window::kParent;
  const fake_window::Installed label;
  showPositionReadout(*plugin, 0, 0);
  showPositionReadout(*plugin, -1, 0);
  showPositionReadout(*plugin, 1, -1);  // past the inputs
  EXPECT_EQ(fake_window::calls,
            (std::vector<std::string>{"kill 10", "text 1287 25%L", "timer 10 2000", "kill 10",
                                      "text 1287 50%R  25%H  (27 deg)", "timer 10 2000", "kill 10",
                                      "text 1287 "}));
  fake_window::calls.clear();
  plugin->host.editorWindow = nullptr;
  showPositionReadout(*plugin, 0, -1);
  setInfoText(*plugin, "text");
  EXPECT_TRUE(fake_window::calls.empty());
}

}  // namespace
