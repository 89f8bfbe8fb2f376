#include "host/cli/repeatable_file.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <vector>

namespace {

constexpr std::size_t kHeaderBytes = 27;  // before the segment table
constexpr std::size_t kSerialOffset = 14;
constexpr std::size_t kChecksumOffset = 22;
constexpr std::size_t kSegmentCountOffset = 26;
constexpr std::uint32_t kUnknownSize = 0xFFFFFFFFu;  // RF64 keeps the real sizes elsewhere

constexpr std::array<std::uint32_t, 256> makeChecksumTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t r = i << 24;
    for (int bit = 0; bit < 8; ++bit) r = (r & 0x80000000u) ? (r << 1) ^ 0x04c11db7u : r << 1;
    table[i] = r;
  }
  return table;
}
constexpr std::array<std::uint32_t, 256> kChecksumTable = makeChecksumTable();

void putLittleEndian(unsigned char* at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) at[i] = static_cast<unsigned char>(value >> (8 * i));
}

// One page: header and segment table, then the body they announce.
bool readPage(std::fstream& file, std::vector<unsigned char>& page) {
  page.resize(kHeaderBytes);
  if (!file.read(reinterpret_cast<char*>(page.data()), kHeaderBytes)) return false;
  const std::size_t segments = page[kSegmentCountOffset];
  page.resize(kHeaderBytes + segments);
  if (!file.read(reinterpret_cast<char*>(page.data() + kHeaderBytes),
                 static_cast<std::streamsize>(segments))) {
    return false;
  }
  std::size_t body = 0;
  for (std::size_t s = 0; s < segments; ++s) body += page[kHeaderBytes + s];
  const std::size_t headerEnd = page.size();
  page.resize(headerEnd + body);
  return static_cast<bool>(file.read(reinterpret_cast<char*>(page.data() + headerEnd),
                                     static_cast<std::streamsize>(body)));
}

std::uint32_t readSize(const char* bytes, bool bigEndian) {
  std::uint32_t size = 0;
  for (int i = 0; i < 4; ++i) {
    const auto byte = static_cast<unsigned char>(bytes[bigEndian ? i : 3 - i]);
    size = (size << 8) | byte;
  }
  return size;
}

}  // namespace

bool clearPeakTime(const std::string& path) {
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  if (!file) return false;
  char header[12] = {};
  if (!file.read(header, sizeof header)) return true;  // too short to hold chunks
  const bool riff = std::memcmp(header, "RIFF", 4) == 0 || std::memcmp(header, "RF64", 4) == 0;
  const bool aiff = std::memcmp(header, "FORM", 4) == 0;
  if (!riff && !aiff) return true;
  // Chunks follow the 12-byte header until the samples, each an id, a size and its even-padded
  // body; PEAK holds a version and then the time.
  char chunk[8];
  while (file.read(chunk, sizeof chunk)) {
    const std::uint32_t size = readSize(chunk + 4, aiff);
    if (std::memcmp(chunk, "PEAK", 4) == 0) {
      const char zero[4] = {};
      file.seekp(file.tellg() + std::streamoff{4});
      return static_cast<bool>(file.write(zero, sizeof zero));
    }
    if (size == kUnknownSize || std::memcmp(chunk, "data", 4) == 0 ||
        std::memcmp(chunk, "SSND", 4) == 0) {
      return true;
    }
    file.seekg(static_cast<std::streamoff>(size + (size & 1u)), std::ios::cur);
  }
  return true;
}

std::uint32_t oggPageChecksum(const unsigned char* page, std::size_t length) {
  std::uint32_t crc = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const unsigned char byte = i >= kChecksumOffset && i < kChecksumOffset + 4 ? 0 : page[i];
    crc = (crc << 8) ^ kChecksumTable[((crc >> 24) ^ byte) & 0xFFu];
  }
  return crc;
}

bool setOggSerialNumber(const std::string& path, std::uint32_t serial) {
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  if (!file) return false;
  std::vector<unsigned char> page;
  for (;;) {
    const std::streamoff start = file.tellg();
    if (file.peek() == std::char_traits<char>::eof()) return true;
    if (!readPage(file, page) || std::memcmp(page.data(), "OggS", 4) != 0) {
      errno = EINVAL;
      return false;
    }
    putLittleEndian(page.data() + kSerialOffset, serial);
    putLittleEndian(page.data() + kChecksumOffset, oggPageChecksum(page.data(), page.size()));
    file.seekp(start);
    if (!file.write(reinterpret_cast<const char*>(page.data()), kChecksumOffset + 4)) return false;
    file.seekg(start + static_cast<std::streamoff>(page.size()));
  }
}
