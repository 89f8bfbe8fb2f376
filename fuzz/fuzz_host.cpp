#include "fuzz/fuzz_host.h"

#include <cstring>

#include "fuzz/fuzz_check.h"
#include "model/field_table.h"
#include "tests/plugin/host_double.h"

namespace {

constexpr int kMaxParameterDelta =
    parameterCountFor(kMaxInputs, kMaxSpeakers) - kGlobalParameterCount;

std::int32_t trackChannels = 2;

// The record must be readable and describe a range inside the largest parameter list.
void checkParameterListChange(const void* ptr) {
  FUZZ_CHECK(ptr != nullptr);
  ParameterListChange change{};
  std::memcpy(&change, ptr, sizeof change);
  FUZZ_CHECK(change.firstIndex >= kGlobalParameterCount &&
             change.firstIndex <= kGlobalParameterCount + kMaxParameterDelta);
  FUZZ_CHECK(change.delta >= -kMaxParameterDelta && change.delta <= kMaxParameterDelta);
}

VstIntPtr answer(AEffect* /*effect*/, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                 void* ptr, float /*opt*/) {
  if (const auto query = hostQueryAnswer(opcode, index, ptr, trackChannels)) return *query;
  FUZZ_CHECK(opcode != audioMasterAutomate);  // a host-side change is never reported back
  if (opcode == audioMasterVendorSpecific && index == kHostExtensionOpcode &&
      value == kHostNotifyParameterList) {
    checkParameterListChange(ptr);
  }
  return 0;
}

}  // namespace

void setFuzzHostChannels(std::int32_t channels) {
  trackChannels = channels;
}

AEffect* createFuzzInstance() {
  AEffect* effect = VSTPluginMain(&answer);
  FUZZ_CHECK(effect != nullptr && effect->object != nullptr);
  return effect;
}
