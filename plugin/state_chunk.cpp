#include "plugin/state_chunk.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "plugin/state_bytes.h"
#include "plugin/state_limits.h"

// Blocks come from project files of any origin. The reader never reads past the block, never writes
// past what it sized, and leaves the model within its limits:
//  - a negative count reads as 0; of a count above 64 the first 64 records are kept and the rest is
//    parsed and dropped, so that the speakers are still found; parsing stops at the end of the
//    data, so a huge count costs no more than the bytes that are there;
//  - records the data cannot hold stay zero-filled (with the version's defaults);
//  - a non-finite real takes the field's default, and a finite one is clamped to the field's range
//    (positions to +-4.8, the farthest the editor can place anything: 0.48 / its smallest zoom
//    0.1);
//  - header integers are clamped to what the editor can show; names are always terminated.
// Everything the plug-in itself writes is inside these ranges, so its own blocks load unchanged.

namespace {

constexpr int kMinVersionWithGain = 3;
constexpr int kMinVersionWithInfluence = 2;
constexpr int kMinVersionWithOptions = 3;
constexpr int kMinVersionWithOffsets = 4;
constexpr std::uint32_t kModeFlags = kOptionNormalizeOff | kOptionRelativeInfluence;

double sanitized(double value, const ValueRange& range) {
  if (!std::isfinite(value)) return range.fallback;
  return std::clamp(value, range.low, range.high);
}

void readReal(StateReader& reader, double& field, const ValueRange& range) {
  double value = 0.0;
  if (reader.readDouble(value)) field = sanitized(value, range);
}

void readClampedInt(StateReader& reader, std::int32_t& field, int low, int high) {
  std::int32_t value = 0;
  if (reader.readInt(value)) field = std::clamp(value, low, high);
}

void readFaderOffset(StateReader& reader, std::int32_t& field) {
  std::int32_t value = 0;
  if (reader.readInt(value)) field = std::clamp(value, 0, kMaxFaderOffset) / 4 * 4;
}

// Each strip's fader mode is 0 or 1; no other bits are defined.
std::uint32_t knownOptions(std::uint32_t bits) {
  const std::uint32_t inputMode = (bits & kOptionInputFaderModeMask) != 0 ? 0x1 : 0;
  const std::uint32_t speakerMode = (bits & kOptionSpeakerFaderModeMask) != 0 ? 0x100 : 0;
  return (bits & kModeFlags) | inputMode | speakerMode;
}

struct Counts {
  std::int32_t inputs = 0;
  std::int32_t speakers = 0;
};

int keptCount(std::int32_t count) {
  return std::clamp(count, 0, kMaxInputs);
}

std::int32_t readHeader(StateReader& reader, PannerPlugin& plugin, Counts& counts) {
  std::int32_t version = 0;
  reader.readInt(version);
  readClampedInt(reader, plugin.layoutPreset, -1, 10);
  readClampedInt(reader, plugin.userSpeakerCount, 0, kMaxSpeakers);
  if (version < kMinVersionWithOffsets) {
    plugin.inputFaderOffset = 0;
    plugin.speakerFaderOffset = 0;
  } else {
    readFaderOffset(reader, plugin.inputFaderOffset);
    readFaderOffset(reader, plugin.speakerFaderOffset);
  }
  for (std::int32_t& mode : plugin.groupKnobModes) readClampedInt(reader, mode, 0, kMaxGroupMode);
  if (version < kMinVersionWithOptions) {
    plugin.optionFlags = 0;
  } else if (std::int32_t options = 0; reader.readInt(options)) {
    plugin.optionFlags = knownOptions(static_cast<std::uint32_t>(options));
  }
  readReal(reader, plugin.centerTrim, kLevelRange);
  readReal(reader, plugin.zoom, kZoomRange);
  readReal(reader, plugin.spaceScaleX, kRoomScaleRange);
  readReal(reader, plugin.spaceScaleY, kRoomScaleRange);
  readReal(reader, plugin.spaceScaleZ, kRoomScaleRange);
  if (reader.readInt(counts.inputs)) reader.readInt(counts.speakers);
  counts.inputs = std::max(counts.inputs, 0);
  counts.speakers = std::max(counts.speakers, 0);
  return version;
}

// Copies the record's name; answers false for a length the block cannot hold.
bool readName(StateReader& reader, char* name) {
  std::int32_t length = 0;
  reader.readInt(length);
  if (length < 0 || length > reader.remaining()) return false;
  const int kept = std::min(length, kNameCapacity - 1);
  std::memcpy(name, reader.position(), static_cast<std::size_t>(kept));
  name[kept] = '\0';
  reader.skip(length);
  return true;
}

bool readInputRecord(StateReader& reader, std::int32_t version, InputChannel& input) {
  if (version < kMinVersionWithGain) {
    input.gain = 1.0;
  } else {
    readReal(reader, input.gain, kLevelRange);
  }
  readReal(reader, input.lfeSend, kSendRange);
  readReal(reader, input.x, kPositionRange);
  readReal(reader, input.y, kPositionRange);
  readReal(reader, input.z, kPositionRange);
  readReal(reader, input.diffuse, kDiffuseRange);
  readReal(reader, input.diffuseBias, kSignedRange);
  readReal(reader, input.diffuseAngle, kSignedRange);
  std::int32_t flags = 0;
  if (reader.readInt(flags)) {
    input.mute = flags & 1;
    input.solo = (flags >> 1) & 1;
    input.selected = (flags >> 2) & 1;
    input.reverse = (flags >> 3) & 1;
  }
  return readName(reader, input.name);
}

bool readSpeakerRecord(StateReader& reader, std::int32_t version, Speaker& speaker) {
  if (version < kMinVersionWithGain) {
    speaker.gain = 1.0;
  } else {
    readReal(reader, speaker.gain, kLevelRange);
  }
  readReal(reader, speaker.x, kPositionRange);
  readReal(reader, speaker.y, kPositionRange);
  readReal(reader, speaker.z, kPositionRange);
  if (version < kMinVersionWithInfluence) {
    speaker.influence = 1.0;
  } else {
    readReal(reader, speaker.influence, kInfluenceRange);
  }
  std::int32_t flags = 0;
  if (reader.readInt(flags)) {
    speaker.mute = flags & 1;
    speaker.solo = (flags >> 1) & 1;
    speaker.isLfe = (flags >> 2) & 1;
  }
  return readName(reader, speaker.name);
}

// Records past the kept ones are parsed only to find where the next kind starts. Once fewer bytes
// remain than the smallest field, no later record can move the position.
bool nothingLeftToFind(const StateReader& reader, std::int32_t record, int kept) {
  return record >= kept && reader.remaining() < 4;
}

void readInputs(StateReader& reader, std::int32_t version, PannerPlugin& plugin,
                std::int32_t count) {
  const bool keep = plugin.lockInputs == 0;
  if (keep) {
    plugin.inputs.resize(keptCount(count));
    plugin.inputs.clearToZero();
  }
  const int kept = keep ? plugin.inputCount() : 0;
  for (std::int32_t i = 0; i < count && !nothingLeftToFind(reader, i, kept); ++i) {
    InputChannel scratch{};
    if (!readInputRecord(reader, version, scratch)) return;
    if (i < kept) plugin.inputs[i] = scratch;
  }
}

void readSpeakers(StateReader& reader, std::int32_t version, PannerPlugin& plugin,
                  std::int32_t count) {
  plugin.speakers.resize(keptCount(count));
  plugin.speakers.clearToZero();
  const int kept = plugin.speakerCount();
  for (std::int32_t i = 0; i < count && !nothingLeftToFind(reader, i, kept); ++i) {
    Speaker dropped{};
    Speaker& speaker = i < kept ? plugin.speakers[i] : dropped;
    if (!readSpeakerRecord(reader, version, speaker)) {
      speaker.name[0] = '\0';
      return;
    }
  }
}

void finishLoading(PannerPlugin& plugin) {
  for (auto& peak : plugin.inputPeaks) peak.store(0.0, std::memory_order_relaxed);
  for (auto& peak : plugin.speakerPeaks) peak.store(0.0, std::memory_order_relaxed);
  plugin.gainRows = -1;
  plugin.gainCols = -1;
  plugin.changeFlags.fetch_or(kChangeAll);
  plugin.effect.numInputs = plugin.inputCount();
  plugin.effect.numOutputs = plugin.speakerCount();
  plugin.effect.numParams = parameterCountFor(plugin.inputCount(), plugin.speakerCount());
  plugin.stateLoaded.store(true);
}

std::int32_t flagBits(std::uint8_t bit0, std::uint8_t bit1, std::uint8_t bit2, std::uint8_t bit3) {
  return (bit0 != 0 ? 1 : 0) | (bit1 != 0 ? 2 : 0) | (bit2 != 0 ? 4 : 0) | (bit3 != 0 ? 8 : 0);
}

void writeName(StateWriter& writer, const char* name) {
  const auto length = static_cast<std::int32_t>(strnlen(name, kNameCapacity - 1));
  writer.writeInt(length);
  writer.writeBytes(name, length);
}

void writeHeader(StateWriter& writer, const PannerPlugin& plugin) {
  writer.writeInt(kStateChunkVersion);
  writer.writeInt(plugin.layoutPreset);
  writer.writeInt(plugin.userSpeakerCount);
  writer.writeInt(plugin.inputFaderOffset);
  writer.writeInt(plugin.speakerFaderOffset);
  for (const std::int32_t mode : plugin.groupKnobModes) writer.writeInt(mode);
  writer.writeInt(static_cast<std::int32_t>(plugin.optionFlags));
  writer.writeDouble(plugin.centerTrim);
  writer.writeDouble(plugin.zoom);
  writer.writeDouble(plugin.spaceScaleX);
  writer.writeDouble(plugin.spaceScaleY);
  writer.writeDouble(plugin.spaceScaleZ);
  writer.writeInt(plugin.inputCount());
  writer.writeInt(plugin.speakerCount());
}

void writeInput(StateWriter& writer, const InputChannel& input) {
  for (const double value : {input.gain, input.lfeSend, input.x, input.y, input.z, input.diffuse,
                             input.diffuseBias, input.diffuseAngle}) {
    writer.writeDouble(value);
  }
  writer.writeInt(flagBits(input.mute, input.solo, input.selected, input.reverse));
  writeName(writer, input.name);
}

void writeSpeaker(StateWriter& writer, const Speaker& speaker) {
  for (const double value : {speaker.gain, speaker.x, speaker.y, speaker.z, speaker.influence}) {
    writer.writeDouble(value);
  }
  writer.writeInt(flagBits(speaker.mute, speaker.solo, speaker.isLfe, 0));
  writeName(writer, speaker.name);
}

}  // namespace

std::int32_t writeStateChunk(PannerPlugin& plugin, void** data) {
  ModelLock lock(plugin);
  StateWriter writer(plugin.stateChunkBuffer);
  writeHeader(writer, plugin);
  for (const InputChannel& input : plugin.inputs) writeInput(writer, input);
  for (const Speaker& speaker : plugin.speakers) writeSpeaker(writer, speaker);
  if (data != nullptr) *data = plugin.stateChunkBuffer.data();
  return plugin.stateChunkBuffer.size();
}

void readStateChunk(PannerPlugin& plugin, const void* data, std::int32_t length) {
  ModelLock lock(plugin);
  StateReader reader(data, length);
  Counts counts;
  const std::int32_t version = readHeader(reader, plugin, counts);
  readInputs(reader, version, plugin, counts.inputs);
  readSpeakers(reader, version, plugin, counts.speakers);
  finishLoading(plugin);
}
