// The per-input and per-speaker records of the panner, and the model's limits.
#pragma once

#include <cstdint>
#include <cstring>

constexpr int kMaxInputs = 64;     // one bit per input in the dirty and audible masks
constexpr int kMaxSpeakers = 64;   // one bit per speaker in the audible mask
constexpr int kNameCapacity = 64;  // names hold at most 63 characters and a terminating zero
constexpr int kMeterSlots = 16;    // meters shown per editor strip

// Coordinates: x across (-1 left .. +1 right), y in depth (-1 back .. +1 front),
// z in height (-1 low .. +1 high). Levels are linear factors 0..4.
struct InputChannel {
  double gain;
  double lfeSend;
  double x;
  double y;
  double z;
  double diffuse;
  double diffuseBias;
  double diffuseAngle;  // the spread turns by diffuseAngle * pi radians
  std::uint8_t mute;
  std::uint8_t solo;
  std::uint8_t selected;
  std::uint8_t reverse;
  char name[kNameCapacity];
};

struct Speaker {
  double gain;
  double x;
  double y;
  double z;
  double influence;  // distances to this speaker are divided by it
  std::uint8_t isLfe;
  std::uint8_t mute;
  std::uint8_t solo;
  char name[kNameCapacity];
};

// Bits of PannerPlugin::optionFlags.
enum : std::uint32_t {
  kOptionInputFaderModeMask = 0x000000FF,    // 0 "Gain", 1 "LFE"
  kOptionSpeakerFaderModeMask = 0x0000FF00,  // 0 "Gain", 1 "Influence"
  kOptionNormalizeOff = 0x10000,             // Absolute mode only
  kOptionRelativeInfluence = 0x20000,
  kOptionDefaults = kOptionNormalizeOff,
};

// Bits of PannerPlugin::changeFlags: what the editor must refresh.
enum : std::uint32_t {
  kChangeCounts = 1,    // counts, layout preset, loaded state: relayout
  kChangeEditor = 2,    // editor-only changes (selection, names)
  kChangeLevels = 4,    // gains, trims, influence, mute/solo, room scale
  kChangeSpeakers = 8,  // speaker positions, influence, mute/solo, room scale
  kChangeInputs = 16,   // input positions, diffusion, mute/solo
  kChangeAll = 31,
};

// Copies a name into a record's field: at most 63 characters, always terminated.
inline void copyChannelName(char (&destination)[kNameCapacity], const char* source) {
  const std::size_t length = strnlen(source, kNameCapacity - 1);
  std::memcpy(destination, source, length);
  destination[length] = '\0';
}
