// The output file's channels: which plug-in output each one carries and where its speaker stands.
// Standard layouts are written in WAVE order, the order of the channel-mask bits, so that every
// player that reads the mask puts each channel on its speaker.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class ChannelOrder {
  Wave,    // standard positions in mask order, with their positions; others as the plug-in has them
  Plugin,  // the plug-in's order, no positions
};

struct FileChannels {
  std::vector<int> pluginOutput;  // per file channel, the plug-in's output (0-based)
  std::vector<int> positions;     // SF_CHANNEL_MAP_* per file channel; empty when not known
};

// `speakerNames` are the plug-in's outputs in its order (empty when it does not name them).
FileChannels fileChannelsFor(const std::vector<std::string>& speakerNames, int outputs,
                             ChannelOrder order);

// SF_CHANNEL_MAP_* of a speaker name ("front left", "LFE", "side right", "left height", ...);
// SF_CHANNEL_MAP_INVALID when the name is not a standard position. The front speakers are LEFT,
// RIGHT and CENTER: the only front positions libsndfile can put in a WAVE mask.
int channelPositionOfSpeaker(const std::string& name);
// A map for all names, or empty when one is not standard or two share a position.
std::vector<int> channelMapOfSpeakers(const std::vector<std::string>& names);

// The WAVE channel-mask bit of an SF_CHANNEL_MAP_* position, 0 for positions libsndfile does not
// write to WAVE files.
std::uint32_t waveSpeakerBit(int position);
// True when every position has a WAVE bit and the bits rise strictly, as the mask requires.
bool isWaveOrder(const std::vector<int>& map);
