#include "fuzz/model_invariants.h"

#include <cmath>
#include <cstring>

#include "fuzz/fuzz_check.h"
#include "plugin/state_chunk.h"
#include "plugin/state_limits.h"

namespace {

void checkReal(double value, const ValueRange& range, bool savedRanges) {
  FUZZ_CHECK(std::isfinite(value));
  if (savedRanges) FUZZ_CHECK(value >= range.low && value <= range.high);
}

void checkName(const char (&name)[kNameCapacity]) {
  FUZZ_CHECK(std::memchr(name, '\0', kNameCapacity) != nullptr);
}

void checkFlag(std::uint8_t flag) {
  FUZZ_CHECK(flag == 0 || flag == 1);
}

void checkInput(const InputChannel& input, bool savedRanges) {
  checkReal(input.gain, kLevelRange, savedRanges);
  checkReal(input.lfeSend, kSendRange, savedRanges);
  for (const double position : {input.x, input.y, input.z})
    checkReal(position, kPositionRange, savedRanges);
  checkReal(input.diffuse, kDiffuseRange, savedRanges);
  checkReal(input.diffuseBias, kSignedRange, savedRanges);
  checkReal(input.diffuseAngle, kSignedRange, savedRanges);
  for (const std::uint8_t flag : {input.mute, input.solo, input.selected, input.reverse})
    checkFlag(flag);
  checkName(input.name);
}

void checkSpeaker(const Speaker& speaker, bool savedRanges) {
  checkReal(speaker.gain, kLevelRange, savedRanges);
  for (const double position : {speaker.x, speaker.y, speaker.z})
    checkReal(position, kPositionRange, savedRanges);
  checkReal(speaker.influence, kInfluenceRange, savedRanges);
  for (const std::uint8_t flag : {speaker.isLfe, speaker.mute, speaker.solo}) checkFlag(flag);
  checkName(speaker.name);
}

void checkGlobals(const PannerPlugin& plugin, bool savedRanges) {
  checkReal(plugin.centerTrim, kLevelRange, savedRanges);
  checkReal(plugin.zoom, kZoomRange, savedRanges);
  for (const double scale : {plugin.spaceScaleX, plugin.spaceScaleY, plugin.spaceScaleZ})
    checkReal(scale, kRoomScaleRange, savedRanges);
  FUZZ_CHECK(plugin.layoutPreset >= -1 && plugin.layoutPreset <= 10);
  FUZZ_CHECK(plugin.userSpeakerCount >= 0 && plugin.userSpeakerCount <= kMaxSpeakers);
  for (const std::int32_t offset : {plugin.inputFaderOffset, plugin.speakerFaderOffset})
    FUZZ_CHECK(offset >= 0 && offset <= kMaxFaderOffset);
  for (const std::int32_t mode : plugin.groupKnobModes)
    FUZZ_CHECK(mode >= 0 && mode <= kMaxGroupMode);
}

}  // namespace

void checkModelInvariants(const PannerPlugin& plugin, bool savedRanges) {
  const int inputs = plugin.inputCount();
  const int speakers = plugin.speakerCount();
  FUZZ_CHECK(inputs >= 0 && inputs <= kMaxInputs);
  FUZZ_CHECK(speakers >= 0 && speakers <= kMaxSpeakers);
  FUZZ_CHECK(plugin.effect.numParams == 4 + 10 * inputs + 7 * speakers);
  checkGlobals(plugin, savedRanges);
  for (const InputChannel& input : plugin.inputs) checkInput(input, savedRanges);
  for (const Speaker& speaker : plugin.speakers) checkSpeaker(speaker, savedRanges);
}

Bytes savedBlock(PannerPlugin& plugin) {
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(plugin, &data);
  FUZZ_CHECK(length >= 0 && (length == 0 || data != nullptr));
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  return Bytes(bytes, bytes + length);
}

void checkStableRoundTrip(PannerPlugin& plugin, const Bytes& block) {
  readStateChunk(plugin, block.data(), static_cast<std::int32_t>(block.size()));
  checkModelInvariants(plugin, true);
  FUZZ_CHECK(savedBlock(plugin) == block);
}
