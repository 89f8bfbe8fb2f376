#include "plugin/state_chunk.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "model/field_access.h"
#include "plugin/state_bytes.h"

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

constexpr std::uint32_t kModeFlags = kOptionNormalizeOff | kOptionRelativeInfluence;

double sanitized(double value, const ValueRange& range) {
  if (!std::isfinite(value)) return range.fallback;
  return std::clamp(value, range.low, range.high);
}

void readReal(StateReader& reader, double& field, const ValueRange& range) {
  double value = 0.0;
  if (reader.readDouble(value)) field = sanitized(value, range);
}

// Each strip's fader mode is 0 or 1; no other bits are defined.
std::uint32_t knownOptions(std::uint32_t bits) {
  const std::uint32_t inputMode = (bits & kOptionInputFaderModeMask) != 0 ? 0x1 : 0;
  const std::uint32_t speakerMode = (bits & kOptionSpeakerFaderModeMask) != 0 ? 0x100 : 0;
  return (bits & kModeFlags) | inputMode | speakerMode;
}

// Clamped into the range, then down to a multiple of the field's step.
void readIntegers(StateReader& reader, const GlobalField& field, std::int32_t* values) {
  const auto low = static_cast<std::int32_t>(field.range.low);
  const auto high = static_cast<std::int32_t>(field.range.high);
  for (int k = 0; k < field.count; ++k) {
    std::int32_t value = 0;
    if (reader.readInt(value)) values[k] = std::clamp(value, low, high) / field.step * field.step;
  }
}

void readGlobal(StateReader& reader, const GlobalField& field, PannerPlugin& plugin) {
  switch (field.kind) {
    case GlobalKind::Real:
      readReal(reader, *globalReal(plugin, field.id), field.range);
      break;
    case GlobalKind::Integer:
      readIntegers(reader, field, globalIntegers(plugin, field.id));
      break;
    case GlobalKind::OptionBits:
      if (std::int32_t options = 0; reader.readInt(options)) {
        plugin.model.optionFlags = knownOptions(static_cast<std::uint32_t>(options));
      }
      break;
  }
}

// A field that the block's version lacks takes its default; nothing is read for it.
void resetGlobal(const GlobalField& field, PannerPlugin& plugin) {
  switch (field.kind) {
    case GlobalKind::Real:
      *globalReal(plugin, field.id) = field.range.fallback;
      break;
    case GlobalKind::Integer:
      std::fill_n(globalIntegers(plugin, field.id), field.count,
                  static_cast<std::int32_t>(field.range.fallback));
      break;
    case GlobalKind::OptionBits:
      plugin.model.optionFlags = static_cast<std::uint32_t>(field.range.fallback);
      break;
  }
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
  for (const GlobalField& field : kGlobalFields) {
    if (version < field.sinceVersion) {
      resetGlobal(field, plugin);
    } else {
      readGlobal(reader, field, plugin);
    }
  }
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

// A record holds its reals in table order, then its flags as one word, then its name.
template <typename Record, std::size_t N>
bool readRecord(StateReader& reader, std::int32_t version, const RecordField<Record> (&fields)[N],
                Record& record) {
  for (const RecordField<Record>& field : fields) {
    if (field.real == nullptr) continue;
    if (version < field.sinceVersion) {
      record.*field.real = field.range.fallback;
    } else {
      readReal(reader, record.*field.real, field.range);
    }
  }
  if (std::int32_t flags = 0; reader.readInt(flags)) {
    int bit = 0;
    for (const RecordField<Record>& field : fields) {
      if (field.flag != nullptr) record.*field.flag = (flags >> bit++) & 1;
    }
  }
  return readName(reader, record.name);
}

// Records past the kept ones are parsed only to find where the next kind starts. Once fewer bytes
// remain than the smallest field, no later record can move the position.
bool nothingLeftToFind(const StateReader& reader, std::int32_t record, int kept) {
  return record >= kept && reader.remaining() < 4;
}

void readInputs(StateReader& reader, std::int32_t version, PannerPlugin& plugin,
                std::int32_t count) {
  const bool keep = plugin.editor.lockInputs == 0;
  if (keep) {
    plugin.model.inputs.resize(keptCount(count));
    plugin.model.inputs.clearToZero();
  }
  const int kept = keep ? plugin.inputCount() : 0;
  for (std::int32_t i = 0; i < count && !nothingLeftToFind(reader, i, kept); ++i) {
    InputChannel scratch{};
    if (!readRecord(reader, version, kInputFields, scratch)) return;
    if (i < kept) plugin.model.inputs[i] = scratch;
  }
}

void readSpeakers(StateReader& reader, std::int32_t version, PannerPlugin& plugin,
                  std::int32_t count) {
  plugin.model.speakers.resize(keptCount(count));
  plugin.model.speakers.clearToZero();
  const int kept = plugin.speakerCount();
  for (std::int32_t i = 0; i < count && !nothingLeftToFind(reader, i, kept); ++i) {
    Speaker dropped{};
    Speaker& speaker = i < kept ? plugin.model.speakers[i] : dropped;
    if (!readRecord(reader, version, kSpeakerFields, speaker)) {
      speaker.name[0] = '\0';
      return;
    }
  }
}

void finishLoading(PannerPlugin& plugin) {
  for (auto& peak : plugin.mix.inputPeaks) peak.store(0.0, std::memory_order_relaxed);
  for (auto& peak : plugin.mix.speakerPeaks) peak.store(0.0, std::memory_order_relaxed);
  plugin.model.gainRows = -1;
  plugin.model.gainCols = -1;
  plugin.model.changeFlags.fetch_or(kChangeAll);
  plugin.host.effect.numInputs = plugin.inputCount();
  plugin.host.effect.numOutputs = plugin.speakerCount();
  plugin.host.effect.numParams = parameterCountFor(plugin.inputCount(), plugin.speakerCount());
  plugin.host.stateLoaded.store(true);
}

void writeName(StateWriter& writer, const char* name) {
  const auto length = static_cast<std::int32_t>(strnlen(name, kNameCapacity - 1));
  writer.writeInt(length);
  writer.writeBytes(name, length);
}

void writeHeader(StateWriter& writer, const PannerPlugin& plugin) {
  writer.writeInt(kStateChunkVersion);
  for (const GlobalField& field : kGlobalFields) {
    if (field.kind == GlobalKind::Real) writer.writeDouble(*globalReal(plugin, field.id));
    if (field.kind == GlobalKind::OptionBits) {
      writer.writeInt(static_cast<std::int32_t>(plugin.model.optionFlags));
    }
    if (field.kind == GlobalKind::Integer) {
      const std::int32_t* values = globalIntegers(plugin, field.id);
      for (int k = 0; k < field.count; ++k) writer.writeInt(values[k]);
    }
  }
  writer.writeInt(plugin.inputCount());
  writer.writeInt(plugin.speakerCount());
}

template <typename Record, std::size_t N>
void writeRecord(StateWriter& writer, const RecordField<Record> (&fields)[N],
                 const Record& record) {
  std::int32_t flags = 0;
  int bit = 0;
  for (const RecordField<Record>& field : fields) {
    if (field.real != nullptr) writer.writeDouble(record.*field.real);
    if (field.flag != nullptr) flags |= (record.*field.flag != 0 ? 1 : 0) << bit++;
  }
  writer.writeInt(flags);
  writeName(writer, record.name);
}

}  // namespace

std::int32_t writeStateChunk(PannerPlugin& plugin, void** data) {
  ModelLock lock(plugin);
  StateWriter writer(plugin.host.stateChunkBuffer);
  writeHeader(writer, plugin);
  for (const InputChannel& input : plugin.model.inputs) writeRecord(writer, kInputFields, input);
  for (const Speaker& speaker : plugin.model.speakers) writeRecord(writer, kSpeakerFields, speaker);
  if (data != nullptr) *data = plugin.host.stateChunkBuffer.data();
  return plugin.host.stateChunkBuffer.size();
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
