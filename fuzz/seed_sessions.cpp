#include "fuzz/seed_sessions.h"

#include <cstring>
#include <limits>

#include "fuzz/dispatcher_stream.h"
#include "model/counts.h"
#include "model/layouts.h"
#include "platform/vst2.h"

namespace {

constexpr int kLastOpcode = 80;

class SessionWriter {
 public:
  SessionWriter& dispatch(int opcode, std::int32_t index = 0, std::int32_t value = 0,
                          float opt = 0.0f, std::uint8_t choice = 0) {
    return op(Operation::Dispatch)
        .u8(static_cast<std::uint8_t>(opcode))
        .i32(index)
        .i32(value)
        .f32(opt)
        .u8(choice);
  }
  SessionWriter& setParameter(std::uint16_t index, float value) {
    return op(Operation::SetParameter).u16(index).u8(0).f32(value);
  }
  SessionWriter& getParameter(std::uint16_t index) {
    return op(Operation::GetParameter).u16(index);
  }
  SessionWriter& process(std::uint16_t frames, std::uint8_t amplitude = 0) {
    return op(Operation::Process).u16(frames).u8(amplitude).u8(7);
  }
  SessionWriter& idle() { return op(Operation::Idle); }
  SessionWriter& setChunk(const Bytes& block) {
    op(Operation::SetChunk).u16(static_cast<std::uint16_t>(block.size()));
    bytes.insert(bytes.end(), block.begin(), block.end());
    return *this;
  }
  SessionWriter& getChunk() { return op(Operation::GetChunk); }
  SessionWriter& recreate(std::int32_t channels) { return op(Operation::Recreate).i32(channels); }
  SessionWriter& channelChange(bool standard, std::int32_t channels) {
    return op(Operation::HostChannelChange).u8(standard ? 0 : 1).i32(channels);
  }
  Bytes bytes;

 private:
  SessionWriter& op(Operation operation) { return u8(static_cast<std::uint8_t>(operation)); }
  SessionWriter& u8(std::uint8_t value) { return append(value, 1); }
  SessionWriter& u16(std::uint16_t value) { return append(value, 2); }
  SessionWriter& i32(std::int32_t value) { return append(static_cast<std::uint32_t>(value), 4); }
  SessionWriter& f32(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return append(bits, 4);
  }
  SessionWriter& append(std::uint32_t bits, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
    return *this;
  }
};

// Parameter indexes are drawn as raw % (numParams + 2 margins) - margin: this is index `i`.
std::uint16_t parameter(int i) {
  return static_cast<std::uint16_t>(i + kIndexMargin);
}

Bytes automationAndAudio() {
  SessionWriter s;
  s.dispatch(effOpen).dispatch(effMainsChanged, 0, 1).process(256);
  for (const int index : {0, 3, 4, 5, 6, 12, 13, 24, 30})
    s.setParameter(parameter(index), 0.3f).process(64);
  return s.getParameter(parameter(5)).process(512, 3).idle().getChunk().bytes;
}

Bytes hostileParameters() {
  const float inf = std::numeric_limits<float>::infinity();
  SessionWriter s;
  for (const float value :
       {std::numeric_limits<float>::quiet_NaN(), inf, -inf, 1e30f, -1e30f, -0.5f, 1.5f, 0.0f, 1.0f})
    s.setParameter(parameter(0), value).setParameter(parameter(9), value).process(32);
  return s.getChunk().bytes;
}

Bytes channelCountChanges() {
  SessionWriter s;
  s.channelChange(true, 6).idle().process(128).getParameter(parameter(40));
  s.channelChange(false, 8).idle().channelChange(true, 12);
  return s.process(128, 2).getChunk().bytes;
}

Bytes stateBlocksOfEveryVersion() {
  PannerPlugin plugin;
  setInputCount(plugin, 3);
  applyLayoutPreset(plugin, kLayoutQuadraphonic);
  SessionWriter s;
  for (int version = 0; version <= 4; ++version)
    s.setChunk(blockOfVersion(plugin, version)).process(64).getChunk();
  return s.channelChange(true, 8).idle().bytes;
}

Bytes everyOpcode() {
  SessionWriter s;
  for (int opcode = 0; opcode <= kLastOpcode; ++opcode) {
    if (opcode != effClose && opcode != effSetChunk) s.dispatch(opcode, 1, 0, 0.0f, 2);
  }
  s.dispatch(effVendorSpecific, 0, 5, 0.25f, 2).dispatch(effVendorSpecific, 0, 3, 0.0f, 6);
  return s.dispatch(effCanDo, 0, 0, 0.0f, 2).bytes;
}

Bytes recreatedInstances() {
  SessionWriter s;
  for (const std::int32_t channels : {1, 8, 63, 64, 0, -3})
    s.recreate(channels).process(100).dispatch(effGetParamName, 4, 0, 0.0f, 2).getChunk();
  return s.bytes;
}

}  // namespace

std::vector<NamedBytes> seedSessions() {
  return {{"automation-and-audio", automationAndAudio()},
          {"hostile-parameters", hostileParameters()},
          {"channel-count-changes", channelCountChanges()},
          {"state-blocks-of-every-version", stateBlocksOfEveryVersion()},
          {"every-opcode", everyOpcode()},
          {"recreated-instances", recreatedInstances()}};
}
