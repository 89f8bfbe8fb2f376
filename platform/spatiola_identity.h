// Who the plug-in is: reported by the plug-in, recognised by the host.
#pragma once

#include <cstdint>

#include "platform/vst2.h"

constexpr std::int32_t kSpatiolaUniqueId = fourCharCode('p', 'k', 'o', 'w');
// The first character in the most significant byte: the bytes in memory read "wokp".
static_assert(kSpatiolaUniqueId == 0x706B6F77);
constexpr std::int32_t kSpatiolaVersion = 1100;
constexpr const char* kSpatiolaEffectName = "Spatiola";
constexpr const char* kSpatiolaProductName = "Spatiola";
constexpr const char* kSpatiolaVendor = "Tolvek";
