// Arbitrary bytes as a saved state block: whatever a project file holds, the reader leaves a model
// within its limits, and what it then saves reads back to the very same bytes. With the inputs
// locked, the block must not touch them.
#include <cstring>

#include "fuzz/fuzz_check.h"
#include "fuzz/model_invariants.h"
#include "model/counts.h"
#include "plugin/state_chunk.h"

namespace {

constexpr int kLockedInputs = 3;

void loadBlock(PannerPlugin& plugin, const std::uint8_t* data, std::size_t size) {
  readStateChunk(plugin, data, static_cast<std::int32_t>(size));
}

void checkLoadAndRoundTrip(const std::uint8_t* data, std::size_t size) {
  PannerPlugin loaded;
  loadBlock(loaded, data, size);
  checkModelInvariants(loaded, true);
  FUZZ_CHECK(loaded.host.effect.numInputs == loaded.inputCount());
  FUZZ_CHECK(loaded.host.effect.numOutputs == loaded.speakerCount());
  const Bytes saved = savedBlock(loaded);
  PannerPlugin reloaded;
  checkStableRoundTrip(reloaded, saved);
}

void checkLockedInputsKept(const std::uint8_t* data, std::size_t size) {
  PannerPlugin plugin;
  setInputCount(plugin, kLockedInputs);
  plugin.model.inputs[1].gain = 2.5;
  plugin.editor.lockInputs = 1;
  const Bytes before(reinterpret_cast<const std::uint8_t*>(plugin.model.inputs.data()),
                     reinterpret_cast<const std::uint8_t*>(plugin.model.inputs.end()));
  loadBlock(plugin, data, size);
  checkModelInvariants(plugin, false);
  FUZZ_CHECK(plugin.inputCount() == kLockedInputs);
  FUZZ_CHECK(plugin.host.effect.numInputs == kLockedInputs);
  FUZZ_CHECK(std::memcmp(before.data(), plugin.model.inputs.data(), before.size()) == 0);
}

}  // namespace

// [fuzz] One block, loaded into a fresh instance and into one with locked inputs.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > INT32_MAX) return 0;
  checkLoadAndRoundTrip(data, size);
  checkLockedInputsKept(data, size);
  return 0;
}
