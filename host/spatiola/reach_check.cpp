#include "host/spatiola/reach_check.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "engine/gain_law.h"
#include "model/panner_plugin.h"

namespace {

constexpr int kPlacedUserSpeakers = 16;  // a user setup gives only these a place of their own
constexpr int kRingMinimum = 32;
constexpr double kMaxInfluence = 2.0;
constexpr double kDeadZone = 0.02;
constexpr double kDeadZoneDivisor = 0.98;

template <typename Channel>
bool anySolo(const GrowableArray<Channel>& channels) {
  return std::any_of(channels.begin(), channels.end(), [](const Channel& c) { return c.solo; });
}

template <typename Channel>
bool sounds(const GrowableArray<Channel>& channels, const Channel& channel) {
  return channel.gain > 0.0 && (channel.solo || (!anySolo(channels) && !channel.mute));
}

// Row `input` of the gain matrix as the engine computes it for this setup.
std::vector<double> gainRow(PannerPlugin& model, int input) {
  const int speakers = model.speakerCount();
  model.mix.targetGains.resize(model.inputCount() * speakers);
  model.model.gainRows = model.inputCount();
  model.model.gainCols = speakers;
  computeInputGains(model, input);
  const double* row = model.mix.targetGains.data() + static_cast<std::size_t>(input) * speakers;
  return {row, row + speakers};
}

bool reachesASpeaker(PannerPlugin& model, int input) {
  const std::vector<double> row = gainRow(model, input);
  for (int s = 0; s < model.speakerCount(); ++s) {
    if (row[s] != 0.0 && sounds(model.model.speakers, model.model.speakers[s])) return true;
  }
  return false;
}

bool reachesInOtherMode(PannerPlugin& model, int input) {
  model.model.optionFlags ^= kOptionRelativeInfluence;
  const bool reaches = reachesASpeaker(model, input);
  model.model.optionFlags ^= kOptionRelativeInfluence;
  return reaches;
}

struct Nearest {
  int speaker = -1;
  double distance = std::numeric_limits<double>::infinity();  // in the room, after scaling
};

Nearest nearestSpeaker(const PannerPlugin& model, const InputChannel& input) {
  Nearest nearest;
  for (int s = 0; s < model.speakerCount(); ++s) {
    const Speaker& speaker = model.model.speakers[s];
    if (speaker.isLfe || !sounds(model.model.speakers, speaker)) continue;
    const double distance = std::hypot(speaker.x * model.model.spaceScaleX - input.x,
                                       speaker.y * model.model.spaceScaleY - input.y,
                                       speaker.z * model.model.spaceScaleZ - input.z);
    if (distance < nearest.distance) nearest = {s, distance};
  }
  return nearest;
}

std::string format(const char* pattern, double a, double b = 0.0, double c = 0.0) {
  char text[64];
  std::snprintf(text, sizeof text, pattern, a, b, c);
  return text;
}

// The remedies for an Absolute-mode input: Relative mode, a move, a larger influence.
std::string absoluteRemedies(PannerPlugin& model, int input, const Nearest& nearest) {
  const Speaker& speaker = model.model.speakers[nearest.speaker];
  const double reach = speaker.influence * kDeadZoneDivisor + kDeadZone;
  const double neededInfluence = (nearest.distance - kDeadZone) / kDeadZoneDivisor;
  std::vector<std::string> remedies;
  if (reachesInOtherMode(model, input)) remedies.emplace_back("in Relative influence mode");
  remedies.push_back("moved within " + format("%.2f", reach) + " of \"" + speaker.name + "\"");
  if (neededInfluence < kMaxInfluence) {
    remedies.push_back("with --set \"" + std::string(speaker.name) + " influence=" +
                       format("%.3f", std::min(1.0, (neededInfluence + 0.01) / kMaxInfluence)) +
                       "\"");
  }
  std::string text = "; the nearest speaker, \"" + std::string(speaker.name) + "\", is " +
                     format("%.2f", nearest.distance) + " away and reaches " +
                     format("%.2f", reach) + ". It would reach one ";
  for (std::size_t k = 0; k < remedies.size(); ++k) {
    text += (k == 0 ? "" : k + 1 == remedies.size() ? ", or " : ", ") + remedies[k];
  }
  return text;
}

std::string unreachedInput(PannerPlugin& model, int input) {
  const InputChannel& channel = model.model.inputs[input];
  const bool relative = (model.model.optionFlags & kOptionRelativeInfluence) != 0;
  std::string text = "input " + std::to_string(input + 1) + " (\"" + channel.name + "\") at " +
                     format("(%g, %g, %g)", channel.x, channel.y, channel.z) +
                     " reaches no speaker in " + (relative ? "Relative" : "Absolute") +
                     " influence mode";
  const Nearest nearest = nearestSpeaker(model, channel);
  if (nearest.speaker < 0) return text;
  if (relative) {
    return text + ": it sits against a wall opposite every speaker; move it into the room";
  }
  return text + absoluteRemedies(model, input, nearest);
}

// Speakers past the 16th of a user setup that still sit where new speakers start.
std::string centredUserSpeakers(const PannerPlugin& model) {
  const int count = model.speakerCount();
  if (model.model.layoutPreset != 0 || count <= kPlacedUserSpeakers) return {};
  for (int s = kPlacedUserSpeakers; s < count; ++s) {
    const Speaker& speaker = model.model.speakers[s];
    if (speaker.x != 0.0 || speaker.y != 0.0 || speaker.z != 0.0) return {};
  }
  std::string text = "speakers " + std::to_string(kPlacedUserSpeakers + 1) + ".." +
                     std::to_string(count) +
                     " of the user setup all sit at the centre: a user setup places only its "
                     "first 16";
  if (count >= kRingMinimum) {
    text += "; --layout \"" + std::to_string(count) + " ring\" spreads them all on a sphere";
  }
  return text;
}

}  // namespace

std::vector<std::string> reachWarnings(PannerPlugin& model) {
  std::vector<std::string> warnings;
  if (const std::string centred = centredUserSpeakers(model); !centred.empty()) {
    warnings.push_back(centred);
  }
  const bool anySpeakerSounds =
      std::any_of(model.model.speakers.begin(), model.model.speakers.end(),
                  [&model](const Speaker& s) { return sounds(model.model.speakers, s); });
  if (!anySpeakerSounds) return warnings;
  for (int i = 0; i < model.inputCount(); ++i) {
    if (sounds(model.model.inputs, model.model.inputs[i]) && !reachesASpeaker(model, i)) {
      warnings.push_back(unreachedInput(model, i));
    }
  }
  return warnings;
}
