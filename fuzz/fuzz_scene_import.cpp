// Arbitrary bytes as a scene file: the import either refuses it with an error that names the place
// (HostError, nothing else), or makes a state block that the plug-in loads within its limits and
// that survives export and import byte for byte.
#include <string>

#include "fuzz/fuzz_check.h"
#include "fuzz/model_invariants.h"
#include "host/runtime/host_error.h"
#include "host/spatiola/scene_json.h"

namespace {

bool imported(const std::string& text, Bytes& block) {
  try {
    block = importScene(text, "fuzz.json");
    return true;
  } catch (const HostError& error) {
    FUZZ_CHECK(std::string(error.what()).size() > 0);
    return false;
  }
}

void checkBlock(const Bytes& block) {
  FUZZ_CHECK(isCanonicalStateBlock(block));
  PannerPlugin plugin;
  checkStableRoundTrip(plugin, block);
  Bytes again;
  FUZZ_CHECK(imported(exportScene(block), again));
  FUZZ_CHECK(again == block);
}

}  // namespace

// [fuzz] One scene text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  Bytes block;
  if (imported(text, block)) checkBlock(block);
  return 0;
}
