#include "model/counts.h"

#include <cstdio>

#include "model/count_change.h"
#include "model/host_link.h"
#include "model/layouts.h"
#include "platform/win32_types.h"

namespace {

constexpr int kDefaultPlaces = 16;
constexpr int kRingMinimum = 32;

struct FloorPlace {
  double x;
  double y;
};

// Follows the usual surround channel order: left, right, centre, LFE, surrounds.
constexpr FloorPlace kInputPlaces[kDefaultPlaces] = {
    {-0.25, 0.25}, {0.25, 0.25}, {0, 0.125},     {0, 0},        {-0.25, -0.25},  {0.25, -0.25},
    {-0.25, 0},    {0.25, 0},    {-0.25, 0.125}, {0.25, 0.125}, {-0.25, -0.125}, {0.25, -0.125},
    {0, 0},        {0, 0},       {0, 0},         {0, 0}};

// Row 15 repeats row 13: that is where a sixteenth custom speaker has always started.
constexpr FloorPlace kSpeakerPlaces[kDefaultPlaces] = {
    {-0.5, 0.5},  {0.5, 0.5},  {-0.5, -0.5},  {0.5, -0.5}, {0, 0.5},      {-0.5, 0},
    {0.5, 0},     {0, -0.5},   {-0.25, 0.5},  {0.25, 0.5}, {-0.25, -0.5}, {0.25, -0.5},
    {-0.5, 0.25}, {0.5, 0.25}, {-0.5, -0.25}, {0.5, 0.25}};

int clampCount(int n) {
  return n < 0 ? 0 : (n > kMaxInputs ? kMaxInputs : n);
}

// Asked before modelMutex is taken: the key state comes from the host's window layer.
bool ringModeWanted(int n) {
  return clampCount(n) >= kRingMinimum && isKeyHeld(VK_SHIFT);
}

void initialiseInput(InputChannel& input, const char* name, double x, double y, double z) {
  input = InputChannel{};
  copyChannelName(input.name, name);
  input.gain = 1.0;
  input.x = x;
  input.y = y;
  input.z = z;
}

void fillInputs(PannerPlugin& plugin, int oldCount, const Position3* ring) {
  char name[kNameCapacity];
  for (int i = 0; i < plugin.inputCount(); ++i) {
    InputChannel& input = plugin.model.inputs[i];
    std::snprintf(name, sizeof name, "channel %d", i + 1);
    if (ring != nullptr) {
      initialiseInput(input, name, ring[i].x, ring[i].y, ring[i].z);
    } else if (i < oldCount) {
      if (input.name[0] == '\0') copyChannelName(input.name, name);
    } else {
      const FloorPlace place = i < kDefaultPlaces ? kInputPlaces[i] : FloorPlace{0, 0};
      initialiseInput(input, name, place.x, place.y, 0.0);
    }
  }
}

bool isItuPreset(int preset) {
  return preset >= 8 && preset <= 10;
}

void fillSpeakers(PannerPlugin& plugin, int oldCount, int oldPreset, const Position3* ring) {
  const double newInfluence = isItuPreset(oldPreset) ? 0.875 : 1.0;
  char name[kNameCapacity];
  for (int i = 0; i < plugin.speakerCount(); ++i) {
    speakerNameFor(i, name, sizeof name);
    if (ring != nullptr) {
      setSpeaker(plugin, i, name, ring[i].x, ring[i].y, ring[i].z, 0.5);
    } else if (i >= oldCount) {
      const FloorPlace place = i < kDefaultPlaces ? kSpeakerPlaces[i] : FloorPlace{0, 0};
      setSpeaker(plugin, i, name, place.x, place.y, 0.0, newInfluence);
    } else if (oldPreset != kLayoutUserSetup) {
      copyChannelName(plugin.model.speakers[i].name, name);
    }
  }
}

}  // namespace

void markInputsDirty(PannerPlugin& plugin, int target) {
  const int count = plugin.inputCount();
  const std::uint64_t all = count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
  if (target >= 0) {
    if (target < count) plugin.model.dirtyInputs |= std::uint64_t{1} << target;
  } else if (target == kDirtyAllInputs) {
    plugin.model.dirtyInputs |= all;
  } else if (target == kDirtySelectedInputs) {
    for (int i = 0; i < count; ++i) {
      if (plugin.model.inputs[i].selected) plugin.model.dirtyInputs |= std::uint64_t{1} << i;
    }
  }
}

void setLockInputs(PannerPlugin& plugin, bool on) {
  plugin.editor.lockInputs = on ? 1 : 0;
  if (plugin.host.editorWindow != nullptr && onLockInputsChanged != nullptr)
    onLockInputsChanged(plugin);
}

void setInputCount(PannerPlugin& plugin, int n) {
  setLockInputs(plugin, false);
  const bool ringWanted = ringModeWanted(n);
  CountChange change{CountKind::Inputs, 0, 0, 0};
  {
    ModelLock lock(plugin);
    change.oldCount = plugin.inputCount();
    plugin.model.inputs.resize(clampCount(n));
    change.newCount = plugin.inputCount();
    Position3 ring[kMaxInputs];
    const bool useRing = ringWanted && change.newCount >= kRingMinimum;
    if (useRing) computeRingPositions(change.newCount, ring);
    fillInputs(plugin, change.oldCount, useRing ? ring : nullptr);
    change.inputCount = change.newCount;
    finishCountChange(plugin, change);
  }
  notifyCountChange(plugin, change);
}

void setSpeakerCount(PannerPlugin& plugin, int n) {
  const bool ringWanted = ringModeWanted(n);
  CountChange change{CountKind::Speakers, 0, 0, 0};
  {
    ModelLock lock(plugin);
    const int oldPreset = plugin.model.layoutPreset;
    change.oldCount = plugin.speakerCount();
    plugin.model.layoutPreset = kLayoutUserSetup;
    plugin.model.userSpeakerCount = clampCount(n);
    plugin.model.speakers.resize(clampCount(n));
    change.newCount = plugin.speakerCount();
    Position3 ring[kMaxSpeakers];
    const bool useRing = ringWanted && change.newCount >= kRingMinimum;
    if (useRing) computeRingPositions(change.newCount, ring);
    fillSpeakers(plugin, change.oldCount, oldPreset, useRing ? ring : nullptr);
    change.inputCount = plugin.inputCount();
    finishCountChange(plugin, change);
  }
  notifyCountChange(plugin, change);
}
