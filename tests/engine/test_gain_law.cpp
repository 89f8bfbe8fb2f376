// The panning law: reference values and the behaviour at its edges.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "../model/model_fixture.h"
#include "engine/gain_law.h"

namespace {

class GainLaw : public ::testing::Test {
 protected:
  RecordingHost host;
  std::unique_ptr<PannerPlugin> plugin = makeInstance(1);

  void placeInput(double x, double y, double z = 0.0) {
    plugin->model.inputs[0].x = x;
    plugin->model.inputs[0].y = y;
    plugin->model.inputs[0].z = z;
  }
  void speakersAt(std::initializer_list<Position3> places) {
    setSpeakerCount(*plugin, static_cast<int>(places.size()));
    int i = 0;
    for (const Position3& p : places) setSpeaker(*plugin, i++, "s", p.x, p.y, p.z, 1.0);
  }
  // Row 0 of targetGains, computed fresh.
  std::vector<double> row() {
    plugin->model.gainRows = plugin->inputCount();
    plugin->model.gainCols = plugin->speakerCount();
    plugin->mix.targetGains.resize(plugin->model.gainRows * plugin->model.gainCols);
    computeInputGains(*plugin, 0);
    return {plugin->mix.targetGains.data(),
            plugin->mix.targetGains.data() + plugin->model.gainCols};
  }
};

void expectRelative(double actual, double expected) {
  EXPECT_NEAR(actual, expected, std::fabs(expected) * 1e-15) << "expected " << expected;
}

// Absolute unnormalised, absolute normalised, relative.
const std::uint32_t kModes[] = {kOptionNormalizeOff, 0u, kOptionRelativeInfluence};

}  // namespace

TEST_F(GainLaw, StereoReferenceValuesInEachMode) {
  placeInput(-0.25, 0.25);
  auto gains = row();  // Absolute without normalisation: the default
  expectRelative(gains[0], 0.21370467852847463);
  EXPECT_EQ(gains[1], 0.0);
  plugin->model.optionFlags = 0;  // Absolute, normalised
  gains = row();
  EXPECT_EQ(gains[0], 1.0);
  EXPECT_EQ(gains[1], 0.0);
  plugin->model.optionFlags = kOptionRelativeInfluence;
  gains = row();
  expectRelative(gains[0], 0.7973549540520413);
  expectRelative(gains[1], 0.20264504594795882);
}

TEST_F(GainLaw, AbsoluteLawFromTheDeadZoneToTheEdgeOfReach) {
  speakersAt({{0, 0, 0}, {1, 0, 0}, {0.01, 0, 0}});
  placeInput(0, 0);
  // At the input's point, at the edge of reach (1 - (1 - 0.02) / 0.98), inside the dead zone.
  EXPECT_EQ(row(), (std::vector<double>{1.0, 0.0, 1.0}));
  plugin->model.speakers[1].influence = 2.0;  // twice the reach: half way to its edge
  EXPECT_EQ(row()[1], 0.5);
  speakersAt({{-0.1, 0, 0}, {0.1, 0, 0}});  // without normalisation the sum may exceed 1
  const auto gains = row();
  expectRelative(gains[0], 1 - 0.08 / 0.98);
  EXPECT_GT(gains[0] + gains[1], 1.8);
  plugin->model.optionFlags = 0;
  const auto normalised = row();
  EXPECT_DOUBLE_EQ(normalised[0] + normalised[1], 1.0);
}

TEST_F(GainLaw, RelativeLawFadesFarSpeakersNearAnother) {
  plugin->model.optionFlags = kOptionRelativeInfluence | kOptionNormalizeOff;
  speakersAt({{0, 0, 0}, {0, 0.5, 0}});
  placeInput(0.05, 0);
  plugin->model.spaceScaleX = 1.0;
  const auto gains = row();
  const double dmin = (0.05 - 0.02) / 0.98;
  const double dFar = (std::sqrt(0.05 * 0.05 + 0.25) - 0.02) / 0.98;
  const double wNear = 1.0 / std::exp2(4 * dmin);
  const double wFar = (dmin / 0.1) / std::exp2(4 * dFar);
  expectRelative(gains[0], wNear / (wNear + wFar));  // relative mode always normalises
  expectRelative(gains[1], wFar / (wNear + wFar));
}

TEST_F(GainLaw, SpeakerAndInputGainsScaleTheRowAndTheLfeIsNeverNormalised) {
  applyLayoutPreset(*plugin, 5);
  plugin->model.optionFlags = 0;
  placeInput(-1, 1);
  plugin->model.inputs[0].lfeSend = 4.0;
  EXPECT_EQ(row()[3], 1.0);
  plugin->model.speakers[0].gain = plugin->model.speakers[3].gain = 0.5;
  plugin->model.inputs[0].gain = 3.0;
  const auto gains = row();
  EXPECT_EQ(gains[0], 1.5);
  EXPECT_EQ(gains[3], 1.5);
}

TEST_F(GainLaw, CentreTrimActsInsideTheCentreBandOnly) {
  speakersAt({{0, 0.5, 0}, {0.25, 0.5, 0}, {0.5, 0.5, 0}});
  placeInput(0.25, 0.3);
  const auto plain = row();
  plugin->model.centerTrim = 2.0;
  const auto trimmed = row();
  expectRelative(trimmed[0], plain[0] * 2.0);
  expectRelative(trimmed[1], plain[1] * 1.5);
  EXPECT_EQ(trimmed[2], plain[2]);
}

TEST_F(GainLaw, TinyDiffusionTakesTheDiamondPathContinuously) {
  speakersAt({{0.6, 0.2, 0.4}});
  placeInput(0.1, -0.1, 0.2);
  const double point = row()[0];
  plugin->model.inputs[0].diffuse = 1e-12;
  EXPECT_NEAR(row()[0], point, 1e-11);
}

TEST_F(GainLaw, NoReachAndNoWeightGiveZeroNotNaN) {
  speakersAt({{0, 0, 0}, {0.5, 0, 0}});
  placeInput(0, 0);
  plugin->model.speakers[0].influence = 0.0;  // and at distance 0: 0 / 0
  plugin->model.speakers[1].influence = 0.0;
  for (std::uint32_t flags : kModes) {
    plugin->model.optionFlags = flags;
    EXPECT_EQ(row(), (std::vector<double>{0.0, 0.0})) << flags;
  }
}

TEST_F(GainLaw, OnlyValidRowsOfASizedMatrixAreWritten) {
  plugin->model.gainRows = plugin->model.gainCols = 2;  // out of step with the counts
  plugin->mix.targetGains.resize(4);
  plugin->mix.targetGains[0] = 7.0;
  for (int row : {0, 5, -1}) computeInputGains(*plugin, row);
  EXPECT_EQ(plugin->mix.targetGains[0], 7.0);
  ASSERT_EQ(plugin->speakerCount(), 2);
  plugin->model.gainRows = 1;  // in step with the counts, but the matrix is short of a row
  plugin->mix.targetGains.resize(1);
  computeInputGains(*plugin, 0);
  EXPECT_EQ(plugin->mix.targetGains[0], 7.0);
  plugin->mix.targetGains.resize(4);  // in step, with room past the one row
  for (int k = 0; k < 4; ++k) plugin->mix.targetGains[k] = 7.0;
  computeInputGains(*plugin, 1);  // no such input
  EXPECT_EQ(plugin->mix.targetGains[2] + plugin->mix.targetGains[3], 14.0);
}

TEST_F(GainLaw, DiffusionDiamondNarrowsWithBiasTurnsWithAngleAndHeightAdds) {
  speakersAt({{0.5, 0, 0}, {0, 0.5, 0}, {0.1, 0, 0.3}, {0, -0.1, -0.3}, {0.5, 0, 0.3}});
  placeInput(0, 0);
  plugin->model.inputs[0].diffuse = 0.4;
  // Planar distances to the first two speakers from the diamond's edge: bias > 0 narrows across
  // (x), bias < 0 in depth (y); two stand above and below a point inside the diamond, the last
  // above the first.
  const double inside = std::sqrt(0.01 + 0.09) - 0.1;
  const struct {
    double bias, acrossDistance, depthDistance;
  } cases[] = {{0.0, 0.1, 0.1},
               {0.5, 0.3, 0.1},
               {1.0, 0.5 - 0.4e-6, 0.1},
               {-0.5, 0.1, 0.3},
               {-1.0, 0.1, 0.5 - 0.4e-6}};
  for (const auto& c : cases) {
    plugin->model.inputs[0].diffuseBias = c.bias;
    const auto gains = row();
    EXPECT_NEAR(gains[0], 1 - (c.acrossDistance - 0.02) / 0.98, 1e-12) << c.bias;
    EXPECT_NEAR(gains[1], 1 - (c.depthDistance - 0.02) / 0.98, 1e-12) << c.bias;
    if (c.bias == 0.0) {
      EXPECT_NEAR(gains[2], 1 - (inside - 0.02) / 0.98, 1e-12);
      EXPECT_NEAR(gains[3], 1 - (inside - 0.02) / 0.98, 1e-12);
      EXPECT_NEAR(gains[4], 1 - (0.1 + std::sqrt(0.34) - 0.5 - 0.02) / 0.98, 1e-12);
    }
  }
  plugin->model.inputs[0].diffuseBias = 0.0;
  plugin->model.inputs[0].diffuseAngle = 0.25;     // turn by a quarter of pi: corners off the axes
  const double edge = 0.5 - 0.4 / std::sqrt(2.0);  // distance from a diamond edge's midpoint
  EXPECT_NEAR(row()[0], 1 - (edge - 0.02) / 0.98, 1e-12);
}

TEST_F(GainLaw, WallFadeRunsOverTheLastTenthOfTheRoomsSpan) {
  plugin->model.optionFlags = kOptionRelativeInfluence;
  speakersAt({{-1, 0, 0}, {1, 0, 0}});
  const struct {
    double scale, inputX, fade;  // of the far speaker, 2 * scale - 0.1 .. 2 * scale away
  } cases[] = {
      {1.0, 0.85, 1.0}, {1.0, 0.925, 0.75}, {1.0, 0.95, 0.5}, {0.5, 0.45, 0.5}, {1.0, 1.0, 0.0}};
  for (const auto& c : cases) {
    plugin->model.spaceScaleX = c.scale;
    placeInput(c.inputX, 0);
    const double dFar = (c.scale + c.inputX - 0.02) / 0.98;
    const double dNear = (c.scale - c.inputX - 0.02) / 0.98;
    const double wFar = std::min(1.0, dNear / 0.1) * c.fade / std::exp2(4 * dFar);
    const double wNear = 1.0 / std::exp2(4 * dNear);
    const auto gains = row();
    EXPECT_NEAR(gains[0], wFar / (wFar + wNear), 1e-12) << c.inputX << " at scale " << c.scale;
    EXPECT_NEAR(gains[0] + gains[1], 1.0, 1e-12);
  }
}

TEST_F(GainLaw, OnAFrontSpeakerOnlyItSoundsAndTheLfeSendIsNeverDividedByTheRowsTotal) {
  applyLayoutPreset(*plugin, 5);
  for (std::uint32_t flags : kModes) {
    plugin->model.optionFlags = flags;
    placeInput(-1, 1);
    plugin->model.inputs[0].lfeSend = 1.0;
    EXPECT_EQ(row(), (std::vector<double>{1.0, 0.0, 0.0, 0.25, 0.0, 0.0})) << flags;
    placeInput(0.1, -0.2);  // between speakers: the panned total is not 1 before normalising
    plugin->model.inputs[0].lfeSend = 2.0;
    EXPECT_EQ(row()[3], 0.5) << flags;
  }
}

TEST_F(GainLaw, RelativeRowNormalisesPastASpeakerWithoutReachOnTheInput) {
  plugin->model.optionFlags = kOptionRelativeInfluence;
  speakersAt({{0, 0, 0}, {0.3, 0, 0}});
  plugin->model.speakers[0].influence = 0.0;
  placeInput(0, 0);
  const auto gains = row();
  EXPECT_EQ(gains[0], 0.0);
  EXPECT_NEAR(gains[1], 1.0, 1e-15);
}
