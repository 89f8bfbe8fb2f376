// The panning law: reference values and the behaviour at its edges on every kernel path, and every
// path against the scalar law on random rooms.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <random>

#include "engine/denormal_guard.h"
#include "engine/gain_law.h"
#include "engine/gain_law_kernels.h"
#include "engine/gain_law_scalar.h"
#include "engine_fixture.h"

namespace {

std::vector<double> targetRow(const PannerPlugin& plugin, int input) {
  const double* first = plugin.mix.targetGains.data() + input * plugin.model.gainCols;
  return {first, first + plugin.model.gainCols};
}

std::vector<double> scalarRow(const PannerPlugin& plugin, int input) {
  std::vector<double> row(static_cast<std::size_t>(plugin.speakerCount()));
  scalarInputGains(plugin, input, row.data());
  return row;
}

// A kernel's row agrees with the scalar law within 1e-12 of the row's sum of magnitudes.
void expectAgreement(const std::vector<double>& actual, const std::vector<double>& reference) {
  double scale = 0.0;
  for (double g : reference) scale += std::fabs(g);
  ASSERT_EQ(actual.size(), reference.size());
  for (std::size_t s = 0; s < reference.size(); ++s)
    ASSERT_NEAR(actual[s], reference[s], 1e-12 * scale) << "speaker " << s;
}

void sizeMatrices(PannerPlugin& plugin) {
  plugin.model.gainRows = plugin.inputCount();
  plugin.model.gainCols = plugin.speakerCount();
  plugin.mix.targetGains.resize(plugin.model.gainRows * plugin.model.gainCols);
}

class GainLaw : public ::testing::Test {
 protected:
  RecordingHost host;
  std::unique_ptr<PannerPlugin> plugin = makeEngineInstance(1);
  ~GainLaw() override { destroyEngine(*plugin); }

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
  // Row 0 on every path this processor runs, each checked against the scalar law; returns the
  // widest path's, the one a new instance uses.
  std::vector<double> row() {
    sizeMatrices(*plugin);
    const std::vector<double> reference = scalarRow(*plugin, 0);
    for (MixPath path : supportedPaths()) {
      SCOPED_TRACE(gainLawKernelsFor(path).name);
      forceMixPath(*plugin, path);
      computeInputGains(*plugin, 0);
      expectAgreement(targetRow(*plugin, 0), reference);
    }
    forceMixPath(*plugin, bestMixKernels().path);
    computeInputGains(*plugin, 0);
    return targetRow(*plugin, 0);
  }
  double absoluteGain(double distance) { return 1.0 - (distance - 0.02) / 0.98; }
};

// Distance from the edge of the dead zone, in the law's units.
double lawDistance(Position3 a, Position3 b) {
  return (std::hypot(a.x - b.x, a.y - b.y, a.z - b.z) - 0.02) / 0.98;
}

void expectRelative(double actual, double expected) {
  EXPECT_NEAR(actual, expected, std::fabs(expected) * 1e-15) << "expected " << expected;
}

// Absolute unnormalised, absolute normalised, relative.
const std::uint32_t kModes[] = {kOptionNormalizeOff, 0u, kOptionRelativeInfluence};

}  // namespace

TEST_F(GainLaw, StereoReferenceValuesInEachMode) {
  placeInput(-0.25, 0.25);
  const double expected[][2] = {{0.21370467852847463, 0.0},  // a new instance's mode
                                {1.0, 0.0},
                                {0.7973549540520413, 0.20264504594795882}};
  for (int mode = 0; mode < 3; ++mode) {
    plugin->model.optionFlags = kModes[mode];
    const auto gains = row();
    for (int s = 0; s < 2; ++s) expectRelative(gains[s], expected[mode][s]);
  }
}

TEST_F(GainLaw, OnAFrontSpeakerOnlyItSoundsAndTheLfeSendScalesWithGainsButNeverWithTheRowsTotal) {
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
  placeInput(-1, 1);  // the speaker's and the input's gains scale the row, the send too
  plugin->model.speakers[0].gain = plugin->model.speakers[3].gain = 0.5;
  plugin->model.inputs[0].gain = 3.0;
  const auto gains = row();
  EXPECT_EQ(gains[0], 1.5);
  EXPECT_EQ(gains[3], 0.5 * 3.0 * 2.0 * 0.25);
}

TEST_F(GainLaw, AbsoluteLawFromTheDeadZoneToTheEdgeOfReach) {
  speakersAt({{0, 0, 0}, {1, 0, 0}, {0.01, 0, 0}});
  placeInput(0, 0);
  // At the input's point, at the edge of reach (1 - (1 - 0.02) / 0.98), inside the dead zone.
  EXPECT_EQ(row(), (std::vector<double>{1.0, 0.0, 1.0}));
  speakersAt({{-0.1, 0, 0}, {0.1, 0, 0}});  // without normalisation the sum may exceed 1
  const auto gains = row();
  expectRelative(gains[0], 1 - 0.08 / 0.98);
  EXPECT_GT(gains[0] + gains[1], 1.8);
  plugin->model.optionFlags = 0;
  const auto normalised = row();
  EXPECT_DOUBLE_EQ(normalised[0] + normalised[1], 1.0);
}

TEST_F(GainLaw, InfluenceAndRoomScaleStretchTheDistances) {
  speakersAt({{0.5, 0, 0}, {0, 0.25, 0}, {0, 0, 0.25}});
  placeInput(0, 0);
  plugin->model.speakers[0].influence = 2.0;
  plugin->model.spaceScaleX = 0.8;  // the speakers move, the input stays
  plugin->model.spaceScaleY = 2.0;
  plugin->model.spaceScaleZ = 3.0;
  const auto gains = row();
  expectRelative(gains[0], 1 - (0.4 - 0.02) / 0.98 / 2.0);
  expectRelative(gains[1], absoluteGain(0.5));
  expectRelative(gains[2], absoluteGain(0.75));
}

TEST_F(GainLaw, RelativeLawFadesFarSpeakersNearAnother) {
  plugin->model.optionFlags = kOptionRelativeInfluence | kOptionNormalizeOff;
  speakersAt({{0, 0, 0}, {0, 0.5, 0}});
  placeInput(0.05, 0);
  const auto gains = row();
  const double dmin = (0.05 - 0.02) / 0.98;
  const double dFar = (std::sqrt(0.05 * 0.05 + 0.25) - 0.02) / 0.98;
  const double wNear = 1.0 / std::exp2(4 * dmin);
  const double wFar = (dmin / 0.1) / std::exp2(4 * dFar);
  expectRelative(gains[0], wNear / (wNear + wFar));  // relative mode always normalises
  expectRelative(gains[1], wFar / (wNear + wFar));
  placeInput(0.2, 0);  // no speaker within 0.1: none fades
  const double w0 = std::exp2(-4 * lawDistance({0, 0, 0}, {0.2, 0, 0}));
  const double w1 = std::exp2(-4 * lawDistance({0, 0.5, 0}, {0.2, 0, 0}));
  const auto apart = row();
  expectRelative(apart[0], w0 / (w0 + w1));
  expectRelative(apart[1], w1 / (w0 + w1));
}

TEST_F(GainLaw, RelativeLawFadesSpeakersAsTheInputReachesTheOppositeWall) {
  plugin->model.optionFlags = kOptionRelativeInfluence;
  // Table of e = |speaker - input| against the wall W = 2: full weight up to W - 0.1, then a
  // linear fade to none at W, on every axis.
  struct Case {
    Position3 speaker;
    Position3 input;
    double fade;
  };
  const Case cases[] = {{{-1, 0, 0}, {0.9, 0, 0}, 1.0},     {{-1, 0, 0}, {0.95, 0, 0}, 0.5},
                        {{0, 1, 0}, {0, -0.97, 0}, 0.3},    {{0, 0, -1}, {0, 0, 0.99}, 0.1},
                        {{-1, 0, 0}, {0.95, 0.96, 0}, 0.5}, {{1, 0, 0}, {-0.9, 0, 0}, 1.0},
                        {{-1, 0, 0}, {1, 0.3, 0}, 0.0}};
  for (const Case& c : cases) {
    speakersAt({c.speaker, {0.5, 0.5, 0.5}});  // the second speaker never fades
    placeInput(c.input.x, c.input.y, c.input.z);
    const double w0 = c.fade * std::exp2(-4 * lawDistance(c.speaker, c.input));
    const double w1 = std::exp2(-4 * lawDistance({0.5, 0.5, 0.5}, c.input));
    EXPECT_NEAR(row()[0], w0 / (w0 + w1), 1e-13) << c.input.x << " " << c.input.y;
  }
}

TEST_F(GainLaw, CentreTrimActsInsideTheCentreBandOnly) {
  speakersAt({{0, 0.5, 0}, {0.25, 0.5, 0}, {0.5, 0.5, 0}, {-0.25, 0.5, 0}});
  placeInput(0.25, 0.3);
  const auto plain = row();
  plugin->model.centerTrim = 2.0;
  const auto trimmed = row();
  expectRelative(trimmed[0], plain[0] * 2.0);
  expectRelative(trimmed[1], plain[1] * 1.5);
  EXPECT_EQ(trimmed[2], plain[2]);
  expectRelative(trimmed[3], plain[3] * 1.5);
  plugin->model.spaceScaleX = 0.25;  // the band is of the speaker's own x, not the scaled one
  plugin->model.centerTrim = 1.0;
  const auto narrow = row();
  plugin->model.centerTrim = 0.0;
  const auto silenced = row();
  EXPECT_EQ(silenced[0], 0.0);
  expectRelative(silenced[1], narrow[1] * 0.5);
  EXPECT_EQ(silenced[2], narrow[2]);
  plugin->model.optionFlags = 0;  // normalising spreads the trimmed weights over the rest
  const auto normalised = row();
  EXPECT_EQ(normalised[0], 0.0);
  EXPECT_NEAR(normalised[1] + normalised[2] + normalised[3], 1.0, 1e-15);
}

// Where the nearest point of the diamond lies: a corner, the edge between them, or nowhere (the
// speaker is inside and only its height counts); biased and turned shapes; height always adds.
TEST_F(GainLaw, DiffusionSpreadsTheInputAsADiamond) {
  struct Case {
    const char* what;
    Position3 speaker;
    double diffuse, bias, angle;
    double distance;
  };
  const double h = std::sqrt(0.01 + 0.09);
  const Case cases[] = {
      {"on the axis past corner (b, 0)", {0.5, 0, 0}, 0.4, 0, 0, 0.1},
      {"past the corner, above it", {0.5, 0, 0.3}, 0.4, 0, 0, 0.1 + std::sqrt(0.34) - 0.5},
      {"corner (0, a)", {0.05, 0.6, 0}, 0.4, 0, 0, std::sqrt(0.05 * 0.05 + 0.2 * 0.2)},
      {"corner (b, 0)", {0.7, -0.05, 0}, 0.4, 0, 0, std::sqrt(0.3 * 0.3 + 0.05 * 0.05)},
      {"edge", {0.3, 0.3, 0}, 0.4, 0, 0, 0.2 / std::sqrt(2.0)},
      {"inside: height only", {0.1, 0, 0.3}, 0.4, 0, 0, h - 0.1},
      {"depth narrowed", {0, 0.5, 0}, 0.4, -0.5, 0, 0.3},
      {"depth a line", {0, -0.5, 0}, 0.4, -1, 0, 0.5 - 0.4e-6},
      {"across narrowed", {-0.5, 0, 0}, 0.4, 0.75, 0, 0.4},
      {"across a line", {0.5, 0, 0}, 0.4, 1, 0, 0.5 - 0.4e-6},
      {"turned an eighth: edge on", {0.5, 0, 0}, 0.4, 0, 0.25, 0.5 - 0.4 / std::sqrt(2.0)},
      {"turned a quarter: the narrow spread in depth", {0, 0.6, 0}, 0.4, 0.5, 0.5, 0.4},
      {"turned a quarter: the wide spread across", {0.6, 0, 0}, 0.4, 0.5, 0.5, 0.2},
      {"turned a half: the same diamond", {0.6, 0.1, 0}, 0.4, 0.5, 1.0, std::sqrt(0.17)},
      {"turned an eighth: long axis (1, 1)", {0.5, 0.5, 0}, 0.4, 0.5, 0.25, std::sqrt(0.5) - 0.4},
  };
  speakersAt({{0, 0, 0}});
  placeInput(0, 0);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    setSpeaker(*plugin, 0, "s", c.speaker.x, c.speaker.y, c.speaker.z, 1.0);
    plugin->model.inputs[0].diffuse = c.diffuse;
    plugin->model.inputs[0].diffuseBias = c.bias;
    plugin->model.inputs[0].diffuseAngle = c.angle;
    EXPECT_NEAR(row()[0], absoluteGain(c.distance), 1e-13);
  }
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
  plugin->model.speakers[1].influence = 1.0;  // the other one, in reach, takes it all
  plugin->model.optionFlags = kOptionRelativeInfluence;
  EXPECT_EQ(row(), (std::vector<double>{0.0, 1.0}));
  plugin->model.speakers[0].influence = 1.0;  // a gain no parameter reaches is silenced
  plugin->model.speakers[0].gain = HUGE_VAL;
  EXPECT_EQ(row()[0], 0.0);
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
}

TEST_F(GainLaw, MarkedRowsAreComputedAndNoOthers) {
  setInputCount(*plugin, 5);
  speakersAt({{-1, 0, 0}, {1, 0, 0}, {0, 1, 0}});
  sizeMatrices(*plugin);
  for (int i = 0; i < 5; ++i) plugin->model.inputs[i].x = 0.2 * i - 0.4;
  for (double& g : plugin->mix.targetGains) g = -1.0;
  computeMarkedInputGains(*plugin, 0b10110 | (std::uint64_t{1} << 63));
  for (int i = 0; i < 5; ++i) {
    const std::vector<double> expected =
        (0b10110 >> i) & 1 ? scalarRow(*plugin, i) : std::vector<double>(3, -1.0);
    expectAgreement(targetRow(*plugin, i), expected);
  }
}

// Random rooms in every mode, inputs anywhere including on and past the (scaled) walls: every
// path agrees with the scalar law within 1e-12 of each row's sum, in the audio routine's
// floating-point state.
TEST(GainLawPaths, EveryPathAgreesWithTheScalarLawOnRandomRooms) {
  RecordingHost host;
  std::mt19937 random(1717);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const auto pick = [&](std::initializer_list<double> choices) {
    return *(choices.begin() + static_cast<int>(unit(random) * choices.size()));
  };
  const auto coordinate = [&] {
    return unit(random) < 0.15 ? pick({-1.0, 1.0}) : 2 * unit(random) - 1;
  };
  auto plugin = makeEngineInstance(8);
  const int kRooms = 120;
  for (int room = 0; room < kRooms; ++room) {
    setSpeakerCount(*plugin, 1 + static_cast<int>(unit(random) * 64));
    for (int s = 0; s < plugin->speakerCount(); ++s) {
      setSpeaker(*plugin, s, "s", coordinate(), coordinate(),
                 unit(random) < 0.5 ? 0.0 : coordinate(),
                 unit(random) < 0.05 ? 0.0 : 2 * unit(random));
      plugin->model.speakers[s].isLfe = unit(random) < 0.1;
      plugin->model.speakers[s].gain = unit(random) < 0.5 ? 1.0 : 4 * unit(random);
    }
    ModelState& model = plugin->model;
    model.optionFlags = kModes[static_cast<int>(unit(random) * 3)];
    model.centerTrim = unit(random) < 0.5 ? 1.0 : 4 * unit(random);
    model.spaceScaleX = pick({1.0, 0.5, 2.0, 0.1 + unit(random)});
    model.spaceScaleY = pick({1.0, 0.25, 1.5 + unit(random) / 2});
    model.spaceScaleZ = pick({1.0, 2e-6, 0.5 + unit(random)});
    for (InputChannel& in : model.inputs) {
      in.x = coordinate();
      in.y = coordinate();
      in.z = unit(random) < 0.5 ? 0.0 : coordinate();
      in.diffuse = pick({0.0, 1e-12, unit(random), unit(random) / 4});
      in.diffuseBias = pick({0.0, -1.0, 1.0, 2 * unit(random) - 1});
      in.diffuseAngle = pick({0.0, 2 * unit(random) - 1});
      in.lfeSend = 4 * unit(random);
      in.gain = pick({1.0, 4 * unit(random)});
    }
    sizeMatrices(*plugin);
    DenormalGuard audioState;
    std::vector<std::vector<double>> reference;
    for (int i = 0; i < plugin->inputCount(); ++i) reference.push_back(scalarRow(*plugin, i));
    for (MixPath path : supportedPaths()) {
      SCOPED_TRACE(testing::Message() << "room " << room << ", " << gainLawKernelsFor(path).name);
      ASSERT_TRUE(forceMixPath(*plugin, path));
      computeMarkedInputGains(*plugin, ~std::uint64_t{0});
      for (int i = 0; i < plugin->inputCount(); ++i) {
        SCOPED_TRACE(i);
        expectAgreement(targetRow(*plugin, i), reference[static_cast<std::size_t>(i)]);
      }
    }
  }
  destroyEngine(*plugin);
}

// 2^x as the relative law computes it: within 2 ulp where the result is a normal number, 0 below.
TEST(GainLawPaths, PowersOfTwoWithinAFewUlp) {
  std::vector<double> x = {0.0,   1.0,   -1.0,         0.5,    -0.5,   0.49999999999, -3.7,
                           -1021, -1022, -1022 + 1e-9, 1023.0, 700.25, -HUGE_VAL};
  std::mt19937 random(5);
  std::uniform_real_distribution<double> exponent(-1022.0, 1023.0);
  for (int k = 0; k < 2000; ++k) x.push_back(k < 1000 ? exponent(random) / 256 : exponent(random));
  const std::vector<double> below = {-1022.0000001, -1023, -1100, -1e300, -HUGE_VAL};
  for (MixPath path : supportedPaths()) {
    SCOPED_TRACE(gainLawKernelsFor(path).name);
    std::vector<double> result(x.size());
    gainLawKernelsFor(path).powersOfTwo(x.data(), result.data(), static_cast<int>(x.size()));
    for (std::size_t k = 0; k < x.size(); ++k) {
      const double expected = std::exp2(x[k]);
      if (expected < DBL_MIN) {
        EXPECT_EQ(result[k], 0.0) << x[k];
      } else {
        const double ulp = std::nextafter(expected, HUGE_VAL) - expected;
        ASSERT_LE(std::fabs(result[k] - expected), 2 * ulp) << "2^" << x[k];
      }
    }
    std::vector<double> zeros(below.size() + 1, -1.0);  // past the count: left alone
    gainLawKernelsFor(path).powersOfTwo(below.data(), zeros.data(), static_cast<int>(below.size()));
    EXPECT_EQ(zeros, (std::vector<double>{0.0, 0.0, 0.0, 0.0, 0.0, -1.0}));
  }
}
