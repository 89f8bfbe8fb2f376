#include "fuzz/seed_blocks.h"

#include <cstring>

#include "fuzz/fuzz_check.h"
#include "model/counts.h"
#include "model/layouts.h"

namespace {

constexpr int kNewestVersion = 4;
constexpr int kFutureVersion = 9;  // read as the newest

class BlockWriter {
 public:
  void i32(std::int32_t value) { append(static_cast<std::uint32_t>(value), 4); }
  void f64(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    append(bits, 8);
  }
  void name(const char* text) {
    const auto length = static_cast<std::int32_t>(strnlen(text, kNameCapacity - 1));
    i32(length);
    bytes.insert(bytes.end(), text, text + length);
  }
  Bytes bytes;

 private:
  void append(std::uint64_t bits, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
  }
};

void writeHeader(BlockWriter& out, const PannerPlugin& plugin, int version) {
  out.i32(version);
  out.i32(plugin.model.layoutPreset);
  out.i32(plugin.model.userSpeakerCount);
  if (version >= 4) {
    out.i32(plugin.editor.inputFaderOffset);
    out.i32(plugin.editor.speakerFaderOffset);
  }
  for (const std::int32_t mode : plugin.editor.groupKnobModes) out.i32(mode);
  if (version >= 3) out.i32(static_cast<std::int32_t>(plugin.model.optionFlags));
  for (const double value : {plugin.model.centerTrim, plugin.view.zoom, plugin.model.spaceScaleX,
                             plugin.model.spaceScaleY, plugin.model.spaceScaleZ})
    out.f64(value);
  out.i32(plugin.inputCount());
  out.i32(plugin.speakerCount());
}

void writeInput(BlockWriter& out, const InputChannel& input, int version) {
  if (version >= 3) out.f64(input.gain);
  for (const double value : {input.lfeSend, input.x, input.y, input.z, input.diffuse,
                             input.diffuseBias, input.diffuseAngle})
    out.f64(value);
  out.i32(input.mute | input.solo << 1 | input.selected << 2 | input.reverse << 3);
  out.name(input.name);
}

void writeSpeaker(BlockWriter& out, const Speaker& speaker, int version) {
  if (version >= 3) out.f64(speaker.gain);
  for (const double value : {speaker.x, speaker.y, speaker.z}) out.f64(value);
  if (version >= 2) out.f64(speaker.influence);
  out.i32(speaker.mute | speaker.solo << 1 | speaker.isLfe << 2);
  out.name(speaker.name);
}

void stereo(PannerPlugin& plugin) {
  setInputCount(plugin, 2);
  applyLayoutPreset(plugin, kLayoutStereo);
}

// Every field away from its default, flags on, a name of the longest length.
void editedSurround(PannerPlugin& plugin) {
  setInputCount(plugin, 6);
  applyLayoutPreset(plugin, kLayoutSurround51);
  for (int i = 0; i < plugin.inputCount(); ++i) {
    InputChannel& input = plugin.model.inputs[i];
    input = InputChannel{2.0 - 0.25 * i,
                         0.125 * i,
                         -0.9 + 0.3 * i,
                         0.5 - 0.2 * i,
                         0.1 * i,
                         0.15 * i,
                         -0.5,
                         0.15 * i,
                         std::uint8_t(i == 1),
                         std::uint8_t(i == 2),
                         std::uint8_t(i % 2),
                         std::uint8_t(i == 5),
                         {}};
    std::snprintf(input.name, sizeof input.name, "input %d", i + 1);
  }
  copyChannelName(
      plugin.model.inputs[0].name,
      "a name longer than sixty-three characters, cut to the longest that a record keeps");
  plugin.model.speakers[1].mute = 1;
  plugin.model.speakers[2].solo = 1;
  plugin.model.speakers[0].gain = 3.5;
  plugin.model.speakers[4].influence = 1.75;
  plugin.model.optionFlags = kOptionRelativeInfluence | 0x101;
  plugin.model.centerTrim = 0.5;
  plugin.view.zoom = 0.9;
  plugin.model.spaceScaleX = 1.5;
  plugin.model.spaceScaleY = 0.75;
  plugin.model.spaceScaleZ = 2e-6;
  plugin.editor.groupKnobModes[0] = 3;
  plugin.editor.groupKnobModes[2] = 12;
}

void surround91(PannerPlugin& plugin) {
  setInputCount(plugin, 8);
  applyLayoutPreset(plugin, kLayoutSurround91);
  for (InputChannel& input : plugin.model.inputs) input.lfeSend = 0.5;
}

void largest(PannerPlugin& plugin) {
  setInputCount(plugin, kMaxInputs);
  setSpeakerCount(plugin, kMaxSpeakers);
  plugin.editor.inputFaderOffset = 48;
  plugin.editor.speakerFaderOffset = 60;
}

void empty(PannerPlugin& plugin) {
  setInputCount(plugin, 0);
  applyLayoutPreset(plugin, kLayoutUserSetup);
}

struct Setup {
  const char* name;
  void (*make)(PannerPlugin&);
};

const Setup kSetups[] = {{"stereo", stereo},
                         {"surround51-edited", editedSurround},
                         {"surround91-lfe", surround91},
                         {"largest-64x64", largest},
                         {"empty", empty}};

}  // namespace

Bytes blockOfVersion(const PannerPlugin& plugin, int version) {
  const int layout = version > kNewestVersion ? kNewestVersion : version;
  BlockWriter out;
  writeHeader(out, plugin, version);
  for (const InputChannel& input : plugin.model.inputs) writeInput(out, input, layout);
  for (const Speaker& speaker : plugin.model.speakers) writeSpeaker(out, speaker, layout);
  return out.bytes;
}

std::vector<NamedBytes> seedStateBlocks() {
  std::vector<NamedBytes> seeds;
  for (const Setup& setup : kSetups) {
    PannerPlugin plugin;
    setup.make(plugin);
    FUZZ_CHECK(blockOfVersion(plugin, kNewestVersion) == savedBlock(plugin));
    for (const int version : {0, 1, 2, 3, 4, kFutureVersion}) {
      seeds.push_back({std::string(setup.name) + "-v" + std::to_string(version) + ".bin",
                       blockOfVersion(plugin, version)});
    }
  }
  return seeds;
}
