#include "engine/gain_law.h"

#include <cmath>

#include "engine/gain_law_kernels.h"
#include "engine/mix_engine.h"

namespace {

bool rowsAreSized(const PannerPlugin& plugin) {
  return plugin.speakerCount() > 0 && plugin.model.gainRows == plugin.inputCount() &&
         plugin.model.gainCols == plugin.speakerCount() &&
         plugin.mix.targetGains.size() >= plugin.model.gainRows * plugin.model.gainCols;
}

double centreTrimFactor(double centerTrim, double speakerX) {
  if (centerTrim == 1.0 || std::fabs(speakerX) >= kCentreBand) return 1.0;
  return 1.0 + (1.0 - 2.0 * std::fabs(speakerX)) * (centerTrim - 1.0);
}

void setLane(LawScene& scene, int s, const Speaker& speaker, const ModelState& model) {
  scene.x[s] = speaker.x * model.spaceScaleX;
  scene.y[s] = speaker.y * model.spaceScaleY;
  scene.z[s] = speaker.z * model.spaceScaleZ;
  scene.reach[s] = kDeadZoneDivisor * speaker.influence;
  scene.trim[s] = centreTrimFactor(model.centerTrim, speaker.x);
  scene.gain[s] = speaker.gain;
  scene.panned[s] = speaker.isLfe ? 0.0 : 1.0;
}

// Padding lanes are harmless numbers that take no part in the panning.
void setPadding(LawScene& scene, int s) {
  scene.x[s] = scene.y[s] = scene.z[s] = 0.0;
  scene.reach[s] = scene.trim[s] = 1.0;
  scene.gain[s] = scene.panned[s] = 0.0;
}

void prepareScene(const PannerPlugin& plugin, LawScene& scene) {
  const ModelState& model = plugin.model;
  scene.speakers = plugin.speakerCount();
  scene.relative = (model.optionFlags & kOptionRelativeInfluence) != 0;
  scene.normalises = scene.relative || (model.optionFlags & kOptionNormalizeOff) == 0;
  scene.walls[0] = 2.0 * model.spaceScaleX;
  scene.walls[1] = 2.0 * model.spaceScaleY;
  scene.walls[2] = 2.0 * model.spaceScaleZ;
  for (int s = 0; s < scene.speakers; ++s) setLane(scene, s, model.speakers[s], model);
  for (int s = scene.speakers; s < kMaxSpeakers; ++s) setPadding(scene, s);
}

LawInput prepareInput(const InputChannel& in) {
  LawInput law{};
  law.x = in.x;
  law.y = in.y;
  law.z = in.z;
  law.diffused = in.diffuse != 0.0;
  law.turned = in.diffuseAngle != 0.0;
  law.cosTurn = std::cos(in.diffuseAngle * kTurnPerAngle);
  law.sinTurn = std::sin(in.diffuseAngle * kTurnPerAngle);
  // A positive bias narrows the spread across, a negative one in depth.
  const double diffuse = in.diffuse;
  const double bias = in.diffuseBias;
  law.halfDepth = law.halfWidth = diffuse;
  if (bias > 0) law.halfWidth = bias >= 1 ? diffuse * kBiasFloor : diffuse * (1 - bias);
  if (bias < 0) law.halfDepth = bias <= -1 ? diffuse * kBiasFloor : diffuse * (1 + bias);
  law.inverseSpan = 1.0 / (law.halfWidth * law.halfWidth + law.halfDepth * law.halfDepth);
  law.lfeValue = kLfeFactor * in.lfeSend;
  law.gain = in.gain;
  return law;
}

const GainLawKernels& kernelsOf(const PannerPlugin& plugin) {
  const MixEngine* engine = plugin.mix.mixEngine;
  return engine != nullptr ? *engine->lawKernels : gainLawKernelsFor(bestMixKernels().path);
}

}  // namespace

void computeMarkedInputGains(PannerPlugin& plugin, std::uint64_t inputs) {
  if (!rowsAreSized(plugin)) return;
  LawScene scene;
  prepareScene(plugin, scene);
  const auto computeRow = kernelsOf(plugin).computeRow;
  for (int i = 0; i < plugin.inputCount() && i < 64; ++i) {
    if (((inputs >> i) & 1) == 0) continue;
    double* row = plugin.mix.targetGains.data() + static_cast<std::ptrdiff_t>(i) * scene.speakers;
    computeRow(scene, prepareInput(plugin.model.inputs[i]), row);
  }
}

void computeInputGains(PannerPlugin& plugin, int input) {
  if (input >= 0 && input < plugin.inputCount() && input < 64)
    computeMarkedInputGains(plugin, std::uint64_t{1} << input);
}

const GainLawKernels& gainLawKernelsFor(MixPath path) {
  return path == MixPath::Avx512 ? avx512GainLawKernels()
         : path == MixPath::Avx2 ? avx2GainLawKernels()
                                 : sse2GainLawKernels();
}
