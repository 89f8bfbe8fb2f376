// The fields behind each strip's mute, solo and reverse buttons, in button order; speakers have
// no reverse.
#pragma once

#include <cstdint>

#include "editor/control_list.h"
#include "model/channels.h"

inline constexpr std::uint8_t InputChannel::*kInputFlags[kStripFlagCount] = {
    &InputChannel::mute, &InputChannel::solo, &InputChannel::reverse};
inline constexpr std::uint8_t Speaker::*kSpeakerFlags[kStripFlagCount] = {&Speaker::mute,
                                                                          &Speaker::solo, nullptr};
