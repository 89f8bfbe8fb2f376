// Group editing of the selected inputs: the knob's step and border in every mode, Reset and
// Invert, and what the host and the editor hear afterwards.
#include <functional>

#include "editor/group_edit.h"
#include "space_mouse_fixture.h"

namespace {

constexpr Place kBystander{0.1, 0.2, 0.3};  // an input that is never selected

struct Member {
  Place at;
  bool reverse;
  Place after;
};

// The members selected, then the bystander; speakers: an LFE, "front" (0, 1, 0) for mode 10 and
// "side" (1, 0, 0.5) for mode 11.
std::unique_ptr<PannerPlugin> makeGroup(const std::vector<Member>& members, double zoom) {
  std::vector<Place> places;
  for (const Member& member : members) places.push_back(member.at);
  places.push_back(kBystander);
  auto plugin = makeRoom(places);
  setSpeakerCount(*plugin, 3);
  setSpeaker(*plugin, 0, "LFE", 0.0, 0.0, 0.0, 1.0);
  plugin->model.speakers[0].isLfe = 1;
  setSpeaker(*plugin, 1, "front", 0.0, 1.0, 0.0, 1.0);
  setSpeaker(*plugin, 2, "side", 1.0, 0.0, 0.5, 1.0);
  plugin->view.zoom = zoom;
  for (std::size_t i = 0; i < members.size(); ++i) {
    plugin->model.inputs[static_cast<int>(i)].selected = 1;
    plugin->model.inputs[static_cast<int>(i)].reverse = members[i].reverse ? 1 : 0;
  }
  return plugin;
}

TEST(GroupKnob, MovesTheSelectionAsOneWithinTheBorder) {
  const struct {
    const char* what;
    int mode;
    double zoom, d;
    std::vector<Member> members;
  } cases[] = {
      // clang-format off
    {"x stops at L = 1, all move by 0.05", 0, 0.48, 0.1, {{{0.95, 0, 0}, false, {1.0, 0, 0}},
     {{0, 0.5, 0}, false, {0.05, 0.5, 0}}, {{0.2, 0, 0}, true, {0.15, 0, 0}}}},
    {"y: reversed moves back", 1, 0.48, 0.01,
     {{{0, 0.5, 0}, false, {0, 0.51, 0}}, {{0, 0.5, 0}, true, {0, 0.49, 0}}}},
    {"reversed stops at -L = -0.5", 2, 0.96, 0.1,
     {{{0, 0, -0.45}, true, {0, 0, -0.5}}, {{0, 0, 0}, false, {0, 0, 0.05}}}},
    {"(1, 1): x then y shrink the step", 3, 0.48, 0.1,
     {{{0.95, 0, 0}, false, {0.98, 0.03, 0}}, {{0, 0.97, 0}, false, {0.03, 1.0, 0}}}},
    // The step shrunk at a reversed input's border takes q * (f - Y) without its sign: the
    // selection then moves along (1, 1).
    {"(1, -1): reversed at the front", 4, 0.48, 0.1,
     {{{0, 0, 0}, false, {-0.05, -0.05, 0}}, {{0.5, 0.95, 0}, true, {0.55, 1.0, 0}}}},
    {"expand stops at the front", 5, 0.48, 0.5, {{{0.6, 0.8, 0}, false, {0.75, 1.0, 0}},
     {{-0.3, 0, 0.2}, false, {-0.55, 0, 0.2}}, {{0, -0.5, 0}, true, {0, -0.25, 0}}}},
    {"reversed stops expand at the left", 5, 0.48, -0.2,
     {{{-0.9, 0, 0}, true, {-1.0, 0, 0}}, {{0, 0.5, 0}, false, {0, 0.4, 0}}}},
    {"contract stops off the centre", 5, 0.48, -0.5, {{{0.3, 0.4, 0}, false, {6e-7, 8e-7, 0}},
     {{0, -0.8, 0}, false, {0, -0.300001, 0}}, {{-0.5, 0, 0}, true, {-0.999999, 0, 0}}}},
    {"rotate a quarter turn clockwise", 6, 0.48, 0.25, {{{0, 1, 0.3}, false, {1, 0, 0.3}},
     {{0.5, 0, 0}, false, {0, -0.5, 0}}, {{0.5, 0, 0}, true, {0, 0.5, 0}}}},
    {"rotate knows no border", 6, 0.48, 0.125,
     {{{0.9, 0.9, 0}, false, {1.2727922061357855, 0, 0}}}},
    {"to side: onto it, not past; away to the border", 11, 0.48, 0.6,
     {{{0.5, 0, 0.5}, false, {1, 0, 0.5}}, {{0, 0, 0.5}, false, {0.6, 0, 0.5}},
      {{0.2, 0, 0.5}, true, {-0.4, 0, 0.5}}, {{-0.8, 0, 0.5}, true, {-1, 0, 0.5}}}},
    {"to front: back along the line to x = L, to z = L", 10, 0.48, 1.0,
     {{{0.6, 0.2, 0}, true, {1, -1.0 / 3, 0}}, {{0, 0.6, 0.4}, true, {0, 0, 1}}}},
    {"to side beyond L straight ahead: stays", 11, 0.96, 0.1,
     {{{1, -0.2, 0.5}, false, {1, -0.2, 0.5}}, {{0.4, 0, 0.5}, false, {0.5, 0, 0.5}}}},
    {"to a third speaker: none", 12, 0.48, 0.1, {{{0.3, 0.3, 0}, false, {0.3, 0.3, 0}}}},
      // clang-format on
  };
  for (const auto& c : cases) {
    auto plugin = makeGroup(c.members, c.zoom);
    groupKnob(*plugin, c.mode, c.d, false);
    for (std::size_t i = 0; i < c.members.size(); ++i) {
      expectPlace(plugin->model.inputs[static_cast<int>(i)], c.members[i].after,
                  std::string(c.what) + ", input " + std::to_string(i));
    }
    expectPlace(plugin->model.inputs[plugin->inputCount() - 1], kBystander, c.what);
  }
}

TEST(GroupKnob, DiffusionClampsLevelAndBiasAndWrapsTheRotation) {
  double InputChannel::*const fields[] = {&InputChannel::diffuse, &InputChannel::diffuseBias,
                                          &InputChannel::diffuseAngle};
  const struct {
    int mode;
    double before;
    bool reverse;
    double after;
  } cases[] = {{7, 0.95, false, 1.0},  {7, 0.05, true, 0.0},   {7, 0.5, true, 0.4},
               {8, 0.95, false, 1.0},  {8, -0.95, true, -1.0}, {9, 0.95, false, -0.95},
               {9, -0.95, true, 0.95}, {9, 0.5, false, 0.6}};
  for (const auto& c : cases) {
    auto plugin = makeGroup({{{0, 0, 0}, c.reverse, {}}}, 0.48);
    double& value = plugin->model.inputs[0].*fields[c.mode - kGroupDiffusionLevel];
    value = c.before;
    groupKnob(*plugin, c.mode, 0.1, false);
    EXPECT_NEAR(value, c.after, kPlaceTolerance) << c.mode << " " << c.before;
  }
}

struct Values {
  double x, y, z, diffuse, bias, angle;
};

TEST(GroupResetAndInvert, ChangeEachModesFieldsWhateverTheReverse) {
  const Values start{0.6, -0.8, 0.5, 0.2, -0.4, 0.7};
  const struct {
    int mode;
    Values reset, invert;
  } cases[] = {
      {0, {0, -0.8, 0.5, 0.2, -0.4, 0.7}, {-0.6, -0.8, 0.5, 0.2, -0.4, 0.7}},
      {1, {0.6, 0, 0.5, 0.2, -0.4, 0.7}, {0.6, 0.8, 0.5, 0.2, -0.4, 0.7}},
      {2, {0.6, -0.8, 0, 0.2, -0.4, 0.7}, {0.6, -0.8, -0.5, 0.2, -0.4, 0.7}},
      {3, {-0.1, -0.1, 0.5, 0.2, -0.4, 0.7}, {-0.8, 0.6, 0.5, 0.2, -0.4, 0.7}},
      {4, {0.1, 0.1, 0.5, 0.2, -0.4, 0.7}, {0.8, -0.6, 0.5, 0.2, -0.4, 0.7}},
      {5, {0.3, -0.4, 0.5, 0.2, -0.4, 0.7}, {6e-7, -8e-7, 0.5, 0.2, -0.4, 0.7}},
      {6, {6.123233995736766e-17, 1, 0.5, 0.2, -0.4, 0.7}, {-0.6, 0.8, 0.5, 0.2, -0.4, 0.7}},
      {7, {0.6, -0.8, 0.5, 0, -0.4, 0.7}, {0.6, -0.8, 0.5, 0.3, -0.4, 0.7}},
      {8, {0.6, -0.8, 0.5, 0.2, 0, 0.7}, {0.6, -0.8, 0.5, 0.2, 0.4, 0.7}},
      {9, {0.6, -0.8, 0.5, 0.2, -0.4, 0}, {0.6, -0.8, 0.5, 0.2, -0.4, -0.7}},
      {10, start, start},
  };
  for (const auto& c : cases) {
    for (const bool invert : {false, true}) {
      auto plugin = makeGroup({{{start.x, start.y, start.z}, true, {}}}, 0.48);
      InputChannel& input = plugin->model.inputs[0];
      input.diffuse = start.diffuse;
      input.diffuseBias = start.bias;
      input.diffuseAngle = start.angle;
      invert ? groupInvert(*plugin, c.mode) : groupReset(*plugin, c.mode);
      const Values& want = invert ? c.invert : c.reset;
      const std::string what = (invert ? "invert " : "reset ") + std::to_string(c.mode);
      expectPlace(input, {want.x, want.y, want.z}, what);
      EXPECT_NEAR(input.diffuse, want.diffuse, kPlaceTolerance) << what;
      EXPECT_NEAR(input.diffuseBias, want.bias, kPlaceTolerance) << what;
      EXPECT_NEAR(input.diffuseAngle, want.angle, kPlaceTolerance) << what;
      expectPlace(plugin->model.inputs[1], kBystander, what);
    }
  }
}

// Inputs 0 (0.2, 0.4, 0) and 2 (0, -0.6, 0.2), both with rotation 0.3; input 1
// apart.
std::unique_ptr<PannerPlugin> makeReportRoom(const std::vector<int>& selected) {
  auto plugin = makeRoom({{0.2, 0.4, 0.0}, {-0.5, 0.0, 0.0}, {0.0, -0.6, 0.2}});
  for (const int i : {0, 2}) plugin->model.inputs[i].diffuseAngle = 0.3;
  selectInputs(*plugin, selected);
  return plugin;
}

TEST(GroupEditReports, TheEditedParametersEndedOnlyAtTheEndOfTheGesture) {
  const struct {
    const char* what;
    std::vector<int> selected;
    std::function<void(PannerPlugin&)> edit;
    std::vector<Report> reports;
  } cases[] = {
      {"knob in a gesture",
       {0, 2},
       [](PannerPlugin& p) { groupKnob(p, 2, 0.1, false); },
       {automate(5, 0.2), automate(6, 0.4), automate(7, 0.1), automate(25, 0.0), automate(26, -0.6),
        automate(27, 0.3)}},
      {"knob at its end",
       {2},
       [](PannerPlugin& p) { groupKnob(p, 2, 0.1, true); },
       {automate(25, 0.0), endEdit(25), automate(26, -0.6), endEdit(26), automate(27, 0.3),
        endEdit(27)}},
      {"rotation inverted below 0",
       {0},
       [](PannerPlugin& p) { groupInvert(p, 9); },
       {{audioMasterAutomate, 11, -0.3f}, endEdit(11)}},
  };
  for (const auto& c : cases) {
    auto plugin = makeReportRoom(c.selected);
    RecordingHost host;
    c.edit(*plugin);
    EXPECT_EQ(reportsOf(host), c.reports) << c.what;
    std::uint64_t rows = 0;
    for (const int i : c.selected) rows |= std::uint64_t{1} << i;
    EXPECT_EQ(plugin->model.dirtyInputs, rows) << c.what;
    EXPECT_EQ(plugin->model.changeFlags.load(), kChangeInputs) << c.what;
  }
}

TEST(GroupEditReports, WithNothingSelectedNothingMovesOrIsReported) {
  auto plugin = makeReportRoom({});
  for (const int mode : {0, 3, 5, 6, 9, 10}) {
    RecordingHost host;
    groupKnob(*plugin, mode, 0.1, true);
    groupReset(*plugin, mode);
    groupInvert(*plugin, mode);
    EXPECT_TRUE(host.calls().empty()) << mode;
  }
  expectPlace(plugin->model.inputs[0], {0.2, 0.4, 0.0}, "input 0");
  expectPlace(plugin->model.inputs[2], {0.0, -0.6, 0.2}, "input 2");
  EXPECT_EQ(plugin->model.inputs[2].diffuseAngle, 0.3);
  EXPECT_EQ(plugin->model.dirtyInputs, 0u);
  EXPECT_EQ(plugin->model.changeFlags.load(), kChangeInputs);
}

}  // namespace
