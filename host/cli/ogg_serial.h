// Ogg files with a serial number of our choosing. libsndfile draws each stream's serial number
// from the clock, so two renders of the same samples differ; the serial only has to tell apart
// the streams of one file, and our files hold one.
#pragma once

#include <cstdint>
#include <string>

constexpr std::uint32_t kFixedOggSerial = 0x53504154;  // "SPAT"

// Rewrites every page of the Ogg file at `path` to carry `serial`, with its checksum recomputed.
// False (errno set) when the file cannot be read or written back, or is not a sequence of pages.
bool setOggSerialNumber(const std::string& path, std::uint32_t serial);

// The checksum of an Ogg page: CRC-32 with polynomial 0x04c11db7, not reflected, starting at 0,
// taken over the page with its checksum field zeroed.
std::uint32_t oggPageChecksum(const unsigned char* page, std::size_t length);
