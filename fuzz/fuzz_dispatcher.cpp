// A byte stream as a host session: dispatcher opcodes, parameter changes and reads, audio blocks,
// state blocks and track channel-count changes on an instance made through VSTPluginMain, with
// well-formed pointers and buffers. After every call the model keeps its promises, texts are
// terminated, the answers the host relies on hold, and finite input gives finite output.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "fuzz/byte_stream.h"
#include "fuzz/dispatcher_stream.h"
#include "fuzz/fuzz_check.h"
#include "fuzz/model_invariants.h"
#include "model/field_table.h"
#include "platform/host_functions.h"
#include "tests/plugin/host_double.h"

extern "C" AEffect* VSTPluginMain(audioMasterCallback callback) noexcept;

namespace {

constexpr int kMaxParameterDelta =
    parameterCountFor(kMaxInputs, kMaxSpeakers) - kGlobalParameterCount;

std::int32_t trackChannels = 2;  // what the host reports for the track at creation

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

// [fuzz] An instance made the way a host makes one; the entry point must not refuse.
AEffect* createInstance(std::int32_t channels) {
  trackChannels = channels;
  AEffect* effect = VSTPluginMain(&answer);
  FUZZ_CHECK(effect != nullptr && effect->object != nullptr);
  return effect;
}

constexpr std::size_t kTextBytes = 256;
constexpr char kUnwritten = 0x7f;
constexpr int kLastOpcode = 80;
constexpr int kMaxFrames = 128;        // long enough for every kernel tile and ramp
constexpr int kMaxBlocksPerInput = 8;  // keeps one input fast whatever its length
constexpr double kAmplitudes[] = {1.0, 0.0, 1e-300, 1e6};
const std::int32_t kVendorIndexes[] = {static_cast<std::int32_t>(0xdeadbef0u), effGetParamDisplay,
                                       effString2Parameter, effSetSpeakerArrangement, effEditDraw};

struct Session {
  AEffect* effect = nullptr;
  int blocks = 0;
  PannerPlugin& plugin() const { return *static_cast<PannerPlugin*>(effect->object); }
  VstIntPtr call(std::int32_t opcode, std::int32_t index, VstIntPtr value, void* ptr, float opt) {
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
  }
};

// A parameter index near the list: mostly inside it, sometimes just outside either end.
std::int32_t nearbyIndex(const Session& session, std::uint32_t raw) {
  const std::uint32_t span =
      static_cast<std::uint32_t>(session.effect->numParams) + 2 * kIndexMargin;
  return static_cast<std::int32_t>(raw % span) - kIndexMargin;
}

void checkText(const std::vector<char>& text) {
  const bool written =
      std::any_of(text.begin(), text.end(), [](char c) { return c != kUnwritten; });
  if (written) FUZZ_CHECK(std::memchr(text.data(), '\0', text.size()) != nullptr);
}

Bytes savedThroughDispatcher(Session& session) {
  void* data = nullptr;
  const auto length = static_cast<std::int32_t>(session.call(effGetChunk, 0, 0, &data, 0.0f));
  FUZZ_CHECK(length >= 0 && (length == 0 || data != nullptr));
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  return Bytes(bytes, bytes + length);
}

// What the instance saves must load into a fresh model and save back unchanged.
void getChunk(Session& session) {
  const Bytes block = savedThroughDispatcher(session);
  PannerPlugin copy;
  checkStableRoundTrip(copy, block);
  FUZZ_CHECK(copy.inputCount() == session.plugin().inputCount());
  FUZZ_CHECK(copy.speakerCount() == session.plugin().speakerCount());
}

void setChunk(Session& session, ByteStream& in) {
  Bytes block = in.bytes(in.u16());
  const auto length = static_cast<VstIntPtr>(block.size());
  FUZZ_CHECK(session.call(effSetChunk, 0, length, block.empty() ? nullptr : block.data(), 0.0f) ==
             0);
  FUZZ_CHECK(session.effect->numInputs == session.plugin().inputCount());
  FUZZ_CHECK(session.effect->numOutputs == session.plugin().speakerCount());
}

void standardArrangement(Session& session, std::int32_t channels) {
  VstSpeakerArrangement inputs{};
  VstSpeakerArrangement outputs{};
  outputs.numChannels = channels;
  const auto inputPointer = reinterpret_cast<VstIntPtr>(&inputs);
  FUZZ_CHECK(session.call(effSetSpeakerArrangement, 0, inputPointer, &outputs, 0.0f) == 0);
}

void vendorSpecific(Session& session, std::int32_t index, VstIntPtr value, float opt,
                    std::uint8_t choice) {
  const std::size_t pick = (choice >> 1) % (std::size(kVendorIndexes) + 1);
  const std::int32_t vendorIndex = pick < std::size(kVendorIndexes) ? kVendorIndexes[pick] : index;
  if (vendorIndex == effGetParamDisplay)
    value = nearbyIndex(session, static_cast<std::uint32_t>(value));
  std::vector<char> text(kTextBytes, kUnwritten);
  session.call(effVendorSpecific, vendorIndex, value, (choice & 1) ? nullptr : text.data(), opt);
  checkText(text);
}

// Any other opcode, with a text buffer (or none) as its pointer.
void textCall(Session& session, int opcode, std::int32_t index, VstIntPtr value, float opt,
              std::uint8_t choice) {
  std::vector<char> text(kTextBytes, kUnwritten);
  void* ptr = (choice & 1) || opcode == effEditOpen ? nullptr : text.data();
  if ((choice & 2) == 0) index = nearbyIndex(session, static_cast<std::uint32_t>(index));
  const VstIntPtr answer = session.call(opcode, index, value, ptr, opt);
  if (opcode == effCanBeAutomated)
    FUZZ_CHECK(answer == (index >= 0 && index < session.effect->numParams ? 1 : 0));
  checkText(text);
}

void recreate(Session& session, std::int32_t channels) {
  session.call(effClose, 0, 0, nullptr, 0.0f);
  session.effect = createInstance(channels);
  const int expected = channels >= 1 && channels <= 63 ? channels : 2;
  FUZZ_CHECK(session.plugin().inputCount() == expected);
  FUZZ_CHECK(session.effect->numInputs == expected && session.effect->numOutputs == expected);
}

void dispatchOpcode(Session& session, ByteStream& in) {
  const int opcode = in.u8() % (kLastOpcode + 1);
  const std::int32_t index = in.i32();
  const VstIntPtr value = in.i32();
  const float opt = in.f32();
  const std::uint8_t choice = in.u8();
  switch (opcode) {
    case effClose:
      return recreate(session, session.plugin().inputCount());
    case effGetChunk:
      return getChunk(session);
    case effSetChunk:
      return setChunk(session, in);
    case effSetSpeakerArrangement:
      return standardArrangement(session, index);
    case effCanDo:  // its fixed answers need a terminated text: the dispatcher test asks them
    case effEditGetRect:
      return;
    case effVendorSpecific:
      return vendorSpecific(session, index, value, opt, choice);
    default:
      return textCall(session, opcode, index, value, opt, choice);
  }
}

void setParameter(Session& session, ByteStream& in) {
  const std::int32_t index = nearbyIndex(session, in.u16());
  const auto kind = static_cast<ValueKind>(in.u8() % 2);
  const float value = kind == ValueKind::Raw ? in.f32() : in.u16() / 50000.0f - 0.1f;
  const float before = session.effect->getParameter(session.effect, index);
  session.effect->setParameter(session.effect, index, value);
  const float after = session.effect->getParameter(session.effect, index);
  const bool ignored =
      !std::isfinite(value) || session.plugin().host.pendingArrangement.load() != 0;
  if (ignored) FUZZ_CHECK(after == before);
  if (!ignored && index >= 0 && index < session.effect->numParams)
    FUZZ_CHECK(after >= 0.0f && after <= 1.0f);  // clamped into the list's range
}

void getParameter(Session& session, ByteStream& in) {
  const std::int32_t index = nearbyIndex(session, in.u16());
  const float value = session.effect->getParameter(session.effect, index);
  FUZZ_CHECK(std::isfinite(value));
  if (index < 0 || index >= session.effect->numParams) FUZZ_CHECK(value == 0.0f);
}

// One block with as many buffers as the effect announces, each its own allocation of exactly
// `frames`, so that the sanitizer sees a write past any one of them.
void runBlock(Session& session, int frames, double amplitude, std::uint32_t seed) {
  const std::size_t length = static_cast<std::size_t>(frames);
  std::vector<std::vector<double>> inputs(static_cast<std::size_t>(session.effect->numInputs),
                                          std::vector<double>(length));
  std::vector<std::vector<double>> outputs(static_cast<std::size_t>(session.effect->numOutputs),
                                           std::vector<double>(length));
  std::vector<double*> ins;
  std::vector<double*> outs;
  for (auto& channel : inputs) {
    for (double& sample : channel) {
      seed = seed * 1664525u + 1013904223u;
      sample = amplitude * (static_cast<double>(seed >> 8) / (1u << 23) - 1.0);
    }
    ins.push_back(channel.data());
  }
  for (auto& channel : outputs) outs.push_back(channel.data());
  session.effect->processDoubleReplacing(session.effect, ins.data(), outs.data(), frames);
  for (const auto& channel : outputs)
    FUZZ_CHECK(
        std::all_of(channel.begin(), channel.end(), [](double s) { return std::isfinite(s); }));
}

void process(Session& session, ByteStream& in) {
  const int frames = in.u16() % (kMaxFrames + 1);
  const double amplitude = kAmplitudes[in.u8() % std::size(kAmplitudes)];
  const std::uint32_t seed = in.u8();
  if (++session.blocks <= kMaxBlocksPerInput) runBlock(session, frames, amplitude, seed);
}

void hostChannelChange(Session& session, ByteStream& in) {
  const bool standard = in.u8() % 2 == 0;
  const std::int32_t channels = in.i32();
  if (standard) return standardArrangement(session, channels);
  FUZZ_CHECK(session.call(effVendorSpecific, effSetSpeakerArrangement, channels, nullptr, 0.0f) ==
             0);
}

void perform(Session& session, Operation operation, ByteStream& in) {
  switch (operation) {
    case Operation::Dispatch:
      return dispatchOpcode(session, in);
    case Operation::SetParameter:
      return setParameter(session, in);
    case Operation::GetParameter:
      return getParameter(session, in);
    case Operation::Process:
      return process(session, in);
    case Operation::Idle:
      FUZZ_CHECK(session.call(effIdle, 0, 0, nullptr, 0.0f) == 1);
      return;
    case Operation::SetChunk:
      return setChunk(session, in);
    case Operation::GetChunk:
      return getChunk(session);
    case Operation::Recreate:
      return recreate(session, in.i32());
    default:
      return hostChannelChange(session, in);
  }
}

void checkInstance(const Session& session) {
  checkModelInvariants(session.plugin(), true);
  FUZZ_CHECK(session.effect->numInputs >= 0 && session.effect->numInputs <= kMaxInputs);
  FUZZ_CHECK(session.effect->numOutputs >= 0 && session.effect->numOutputs <= kMaxSpeakers);
}

}  // namespace

// [fuzz] One session: a stereo track's instance, the decoded calls, then effClose.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ByteStream in(data, size);
  Session session;
  session.effect = createInstance(2);
  while (!in.empty()) {
    perform(session, static_cast<Operation>(in.u8() % kOperationCount), in);
    checkInstance(session);
  }
  session.call(effClose, 0, 0, nullptr, 0.0f);
  return 0;
}
