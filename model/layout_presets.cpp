#include "model/count_change.h"
#include "model/counts.h"
#include "model/layouts.h"

const char* const kLayoutPresetNames[kLayoutPresetCount] = {
    "user setup",   "stereo",       "quadraphonic", "octophonic", "octophonic box", "5.1 surround",
    "7.1 surround", "9.1 surround", "5.1 ITU-R",    "7.1 ITU-R",  "9.1 ITU-R"};

namespace {

struct PresetSpeaker {
  const char* name;
  double x;
  double y;
  double z;
  bool isLfe;
};

struct LayoutPreset {
  const PresetSpeaker* speakers;
  int count;
  double influence;
};

constexpr PresetSpeaker kStereo[] = {{"left", -1, 0, 0, false}, {"right", 1, 0, 0, false}};

constexpr PresetSpeaker kQuadBox[] = {
    {"front left", -1, 1, 0, false},        {"front right", 1, 1, 0, false},
    {"back left", -1, -1, 0, false},        {"back right", 1, -1, 0, false},
    {"front left height", -1, 1, 1, false}, {"front right height", 1, 1, 1, false},
    {"back left height", -1, -1, 1, false}, {"back right height", 1, -1, 1, false}};

// Clockwise round the square from front left.
constexpr PresetSpeaker kOctophonic[] = {
    {"front left", -1, 1, 0, false}, {"front center", 0, 1, 0, false},
    {"front right", 1, 1, 0, false}, {"side right", 1, 0, 0, false},
    {"back right", 1, -1, 0, false}, {"back center", 0, -1, 0, false},
    {"back left", -1, -1, 0, false}, {"side left", -1, 0, 0, false}};

constexpr PresetSpeaker kSurround51[] = {
    {"front left", -1, 1, 0, false},  {"front right", 1, 1, 0, false},
    {"front center", 0, 1, 0, false}, {"LFE", 0, 0, 0, true},
    {"back left", -1, -1, 0, false},  {"back right", 1, -1, 0, false}};

constexpr PresetSpeaker kSurround91[] = {
    {"front left", -1, 1, 0, false},      {"front right", 1, 1, 0, false},
    {"front center", 0, 1, 0, false},     {"LFE", 0, 0, 0, true},
    {"side left", -1, 0, 0, false},       {"side right", 1, 0, 0, false},
    {"back left", -1, -1, 0, false},      {"back right", 1, -1, 0, false},
    {"left height", -1, 0.5, 0.5, false}, {"right height", 1, 0.5, 0.5, false}};

// Azimuths 30, 110 and 150 degrees on the unit circle (x = sin, y = cos), heights at 45 degrees.
constexpr PresetSpeaker kItu[] = {
    {"front left", -0.49999999999999994, 0.8660254037844387, 0, false},
    {"front right", 0.49999999999999994, 0.8660254037844387, 0, false},
    {"front center", 0, 1, 0, false},
    {"LFE", 0, 0, 0, true},
    {"side left", -0.9396926207859084, -0.3420201433256685, 0, false},
    {"side right", 0.9396926207859084, -0.3420201433256685, 0, false},
    {"back left", -0.49999999999999994, -0.8660254037844387, 0, false},
    {"back right", 0.49999999999999994, -0.8660254037844387, 0, false},
    {"left height", -0.5, 0.5000000000000001, 0.7071067811865476, false},
    {"right height", 0.5, 0.5000000000000001, 0.7071067811865476, false}};

constexpr LayoutPreset kPresets[kLayoutPresetCount] = {
    {nullptr, 0, 1.0},  {kStereo, 2, 1.0},     {kQuadBox, 4, 1.0},    {kOctophonic, 8, 0.875},
    {kQuadBox, 8, 1.0}, {kSurround51, 6, 1.0}, {kSurround91, 8, 1.0}, {kSurround91, 10, 1.0},
    {kItu, 6, 0.875},   {kItu, 8, 0.875},      {kItu, 10, 0.875}};

const LayoutPreset& presetFor(int index) {
  return index > 0 && index < kLayoutPresetCount ? kPresets[index] : kPresets[0];
}

}  // namespace

void setSpeaker(PannerPlugin& plugin, int index, const char* name, double x, double y, double z,
                double influence) {
  if (index < 0 || index >= plugin.speakerCount()) return;
  Speaker& speaker = plugin.model.speakers[index];
  speaker = Speaker{};
  copyChannelName(speaker.name, name);
  speaker.x = x;
  speaker.y = y;
  speaker.z = z;
  speaker.influence = influence;
  speaker.gain = 1.0;
}

void applyLayoutPreset(PannerPlugin& plugin, int index) {
  const LayoutPreset& preset = presetFor(index);
  CountChange change{CountKind::Speakers, 0, 0, 0};
  {
    ModelLock lock(plugin);
    plugin.editor.speakerFaderOffset = 0;
    change.oldCount = plugin.speakerCount();
    if (!plugin.model.speakers.resize(preset.count)) return;
    for (int i = 0; i < preset.count; ++i) {
      const PresetSpeaker& s = preset.speakers[i];
      setSpeaker(plugin, i, s.name, s.x, s.y, s.z, preset.influence);
      plugin.model.speakers[i].isLfe = s.isLfe ? 1 : 0;
    }
    plugin.model.layoutPreset = preset.count > 0 ? index : -1;
    change.newCount = preset.count;
    change.inputCount = plugin.inputCount();
    finishCountChange(plugin, change);
  }
  notifyCountChange(plugin, change);
}

int layoutPresetForHostChannels(int channelCount) {
  if (channelCount <= 2) return kLayoutStereo;
  if (channelCount <= 4) return kLayoutQuadraphonic;
  if (channelCount <= 6) return kLayoutSurround51;
  if (channelCount <= 8) return kLayoutSurround71;
  return kLayoutSurround91;
}

void applyDefaultLayout(PannerPlugin& plugin, int channelCount) {
  if (channelCount > 10) {
    setSpeakerCount(plugin, channelCount);
  } else {
    applyLayoutPreset(plugin, layoutPresetForHostChannels(channelCount));
  }
}
