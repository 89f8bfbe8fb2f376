#include "host/cli/channel_layout.h"

#include <sndfile.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <numeric>
#include <set>

namespace {

std::string lowercase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

FileChannels pluginOrder(int outputs) {
  FileChannels channels;
  channels.pluginOutput.resize(static_cast<std::size_t>(outputs));
  std::iota(channels.pluginOutput.begin(), channels.pluginOutput.end(), 0);
  return channels;
}

}  // namespace

FileChannels fileChannelsFor(const std::vector<std::string>& speakerNames, int outputs,
                             ChannelOrder order) {
  FileChannels channels = pluginOrder(outputs);
  const std::vector<int> positions = channelMapOfSpeakers(speakerNames);
  if (order == ChannelOrder::Plugin || positions.size() != static_cast<std::size_t>(outputs)) {
    return channels;
  }
  for (const int position : positions) {
    if (waveSpeakerBit(position) == 0) return channels;
  }
  std::stable_sort(channels.pluginOutput.begin(), channels.pluginOutput.end(),
                   [&positions](int a, int b) {
                     return waveSpeakerBit(positions[a]) < waveSpeakerBit(positions[b]);
                   });
  for (const int output : channels.pluginOutput) channels.positions.push_back(positions[output]);
  return channels;
}

std::uint32_t waveSpeakerBit(int position) {
  struct WaveBit {
    int position;
    std::uint32_t bit;
  };
  static constexpr WaveBit kBits[] = {
      {SF_CHANNEL_MAP_LEFT, 0x1},
      {SF_CHANNEL_MAP_RIGHT, 0x2},
      {SF_CHANNEL_MAP_CENTER, 0x4},
      {SF_CHANNEL_MAP_LFE, 0x8},
      {SF_CHANNEL_MAP_REAR_LEFT, 0x10},
      {SF_CHANNEL_MAP_REAR_RIGHT, 0x20},
      {SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER, 0x40},
      {SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER, 0x80},
      {SF_CHANNEL_MAP_REAR_CENTER, 0x100},
      {SF_CHANNEL_MAP_SIDE_LEFT, 0x200},
      {SF_CHANNEL_MAP_SIDE_RIGHT, 0x400},
      {SF_CHANNEL_MAP_TOP_CENTER, 0x800},
      {SF_CHANNEL_MAP_TOP_FRONT_LEFT, 0x1000},
      {SF_CHANNEL_MAP_TOP_FRONT_CENTER, 0x2000},
      {SF_CHANNEL_MAP_TOP_FRONT_RIGHT, 0x4000},
      {SF_CHANNEL_MAP_TOP_REAR_LEFT, 0x8000},
      {SF_CHANNEL_MAP_TOP_REAR_CENTER, 0x10000},
      {SF_CHANNEL_MAP_TOP_REAR_RIGHT, 0x20000},
  };
  for (const WaveBit& entry : kBits) {
    if (entry.position == position) return entry.bit;
  }
  return 0;
}

bool isWaveOrder(const std::vector<int>& map) {
  std::uint32_t previous = 0;
  for (const int position : map) {
    const std::uint32_t bit = waveSpeakerBit(position);
    if (bit <= previous) return false;
    previous = bit;
  }
  return !map.empty();
}

int channelPositionOfSpeaker(const std::string& name) {
  static const std::map<std::string, int> kPositions = {
      {"left", SF_CHANNEL_MAP_LEFT},
      {"right", SF_CHANNEL_MAP_RIGHT},
      {"center", SF_CHANNEL_MAP_CENTER},
      {"front left", SF_CHANNEL_MAP_LEFT},
      {"front right", SF_CHANNEL_MAP_RIGHT},
      {"front center", SF_CHANNEL_MAP_CENTER},
      {"lfe", SF_CHANNEL_MAP_LFE},
      {"back left", SF_CHANNEL_MAP_REAR_LEFT},
      {"back right", SF_CHANNEL_MAP_REAR_RIGHT},
      {"back center", SF_CHANNEL_MAP_REAR_CENTER},
      {"side left", SF_CHANNEL_MAP_SIDE_LEFT},
      {"side right", SF_CHANNEL_MAP_SIDE_RIGHT},
      {"front left height", SF_CHANNEL_MAP_TOP_FRONT_LEFT},
      {"front right height", SF_CHANNEL_MAP_TOP_FRONT_RIGHT},
      {"left height", SF_CHANNEL_MAP_TOP_FRONT_LEFT},
      {"right height", SF_CHANNEL_MAP_TOP_FRONT_RIGHT},
      {"back left height", SF_CHANNEL_MAP_TOP_REAR_LEFT},
      {"back right height", SF_CHANNEL_MAP_TOP_REAR_RIGHT},
  };
  const auto found = kPositions.find(lowercase(name));
  return found == kPositions.end() ? SF_CHANNEL_MAP_INVALID : found->second;
}

std::vector<int> channelMapOfSpeakers(const std::vector<std::string>& names) {
  std::vector<int> map;
  std::set<int> used;
  for (const std::string& name : names) {
    const int position = channelPositionOfSpeaker(name);
    if (position == SF_CHANNEL_MAP_INVALID || !used.insert(position).second) return {};
    map.push_back(position);
  }
  return map;
}
