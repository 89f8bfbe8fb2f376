// Files that are the same bytes for the same samples. libsndfile puts the clock into two places:
// the time of writing into PEAK chunks (WAVE, RF64, AIFF), and the serial number of each Ogg
// stream. Both are rewritten once the file is closed: the PEAK time becomes 0, the serial a fixed
// number (it only has to tell apart the streams of one file, and these files hold one).
#pragma once

#include <cstdint>
#include <string>

constexpr std::uint32_t kFixedOggSerial = 0x53504154;  // "SPAT"

// Sets the time stamp of the PEAK chunk of a WAVE, RF64 or AIFF file to 0; files without one stay
// as they are. False (errno set) when the file cannot be read or written back.
bool clearPeakTime(const std::string& path);

// Rewrites every page of the Ogg file at `path` to carry `serial`, with its checksum recomputed.
// False (errno set) when the file cannot be read or written back, or is not a sequence of pages.
bool setOggSerialNumber(const std::string& path, std::uint32_t serial);

// The checksum of an Ogg page: CRC-32 with polynomial 0x04c11db7, not reflected, starting at 0,
// taken over the page with its checksum field zeroed.
std::uint32_t oggPageChecksum(const unsigned char* page, std::size_t length);
