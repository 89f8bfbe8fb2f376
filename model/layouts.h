// Speaker layout presets, default layouts and the ring placement for large counts.
#pragma once

#include "model/panner_plugin.h"

constexpr int kLayoutPresetCount = 11;
constexpr int kLayoutUserSetup = 0;
constexpr int kLayoutStereo = 1;
constexpr int kLayoutQuadraphonic = 2;
constexpr int kLayoutSurround51 = 5;
constexpr int kLayoutSurround71 = 6;
constexpr int kLayoutSurround91 = 7;

// Names as the editor's layout list shows them, by preset index.
extern const char* const kLayoutPresetNames[kLayoutPresetCount];

struct Position3 {
  double x;
  double y;
  double z;
};

// [UI thread] Replaces every speaker by preset `index`; 0 or an unknown index leaves none.
void applyLayoutPreset(PannerPlugin& plugin, int index);

// Clears speaker `index` and gives it a name, position and influence (gain 1, no flags).
// The caller holds modelMutex; an index outside the speakers changes nothing.
void setSpeaker(PannerPlugin& plugin, int index, const char* name, double x, double y, double z,
                double influence);

// The default speakers of a fresh instance for a track of n channels (after setInputCount(n)).
void applyDefaultLayout(PannerPlugin& plugin, int channelCount);

// The preset a host channel-count change lays out for N channels.
int layoutPresetForHostChannels(int channelCount);

// n points (n <= 64) on a sphere of radius 0.5: equator, rings of layers, then the two poles.
void computeRingPositions(int n, Position3* out);
