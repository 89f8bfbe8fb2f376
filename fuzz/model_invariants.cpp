#include "fuzz/model_invariants.h"

#include <cmath>
#include <cstring>

#include "fuzz/fuzz_check.h"
#include "model/field_access.h"
#include "plugin/state_chunk.h"

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

template <typename Record, std::size_t N>
void checkRecord(const RecordField<Record> (&fields)[N], const Record& record, bool savedRanges) {
  for (const RecordField<Record>& field : fields) {
    if (field.real != nullptr) checkReal(record.*field.real, field.range, savedRanges);
    if (field.flag != nullptr) checkFlag(record.*field.flag);
  }
  checkName(record.name);
}

void checkGlobals(const PannerPlugin& plugin, bool savedRanges) {
  for (const GlobalField& field : kGlobalFields) {
    if (field.kind == GlobalKind::Real) {
      checkReal(*globalReal(plugin, field.id), field.range, savedRanges);
    }
    if (field.kind != GlobalKind::Integer) continue;
    const std::int32_t* values = globalIntegers(plugin, field.id);
    for (int k = 0; k < field.count; ++k) {
      FUZZ_CHECK(values[k] >= field.range.low && values[k] <= field.range.high);
    }
  }
}

}  // namespace

void checkModelInvariants(const PannerPlugin& plugin, bool savedRanges) {
  const int inputs = plugin.inputCount();
  const int speakers = plugin.speakerCount();
  FUZZ_CHECK(inputs >= 0 && inputs <= kMaxInputs);
  FUZZ_CHECK(speakers >= 0 && speakers <= kMaxSpeakers);
  FUZZ_CHECK(plugin.host.effect.numParams == parameterCountFor(inputs, speakers));
  checkGlobals(plugin, savedRanges);
  for (const InputChannel& input : plugin.model.inputs)
    checkRecord(kInputFields, input, savedRanges);
  for (const Speaker& speaker : plugin.model.speakers)
    checkRecord(kSpeakerFields, speaker, savedRanges);
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
