// Little-endian field access for the state block, independent of the machine's byte order.
#pragma once

#include <cstdint>
#include <cstring>

#include "model/growable_array.h"

class StateReader {
 public:
  StateReader(const void* data, std::int32_t length)
      : bytes_(static_cast<const unsigned char*>(data)),
        remaining_(length > 0 && data ? length : 0) {}

  std::int32_t remaining() const { return remaining_; }
  bool readInt(std::int32_t& value) {
    std::uint32_t bits = 0;
    if (!take(4, bits)) return false;
    value = static_cast<std::int32_t>(bits);
    return true;
  }
  bool readDouble(double& value) {
    std::uint64_t bits = 0;
    if (!take(8, bits)) return false;
    std::memcpy(&value, &bits, sizeof value);
    return true;
  }
  const unsigned char* position() const { return bytes_; }
  void skip(std::int32_t count) {
    bytes_ += count;
    remaining_ -= count;
  }

 private:
  template <typename Bits>
  bool take(int size, Bits& bits) {
    if (remaining_ < size) return false;
    bits = 0;
    for (int i = size - 1; i >= 0; --i) bits = static_cast<Bits>(bits << 8 | bytes_[i]);
    skip(size);
    return true;
  }

  const unsigned char* bytes_;
  std::int32_t remaining_;
};

class StateWriter {
 public:
  explicit StateWriter(GrowableArray<unsigned char>& buffer) : buffer_(buffer) { buffer_.clear(); }

  void writeInt(std::int32_t value) { append(static_cast<std::uint32_t>(value), 4); }
  void writeDouble(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    append(bits, 8);
  }
  void writeBytes(const char* text, int count) {
    const int start = buffer_.size();
    if (!buffer_.resize(start + count)) return;
    std::memcpy(buffer_.data() + start, text, static_cast<std::size_t>(count));
  }

 private:
  // A buffer that cannot grow leaves the value out.
  void append(std::uint64_t bits, int size) {
    const int start = buffer_.size();
    if (!buffer_.resize(start + size)) return;
    for (int i = 0; i < size; ++i) buffer_[start + i] = static_cast<unsigned char>(bits >> (8 * i));
  }

  GrowableArray<unsigned char>& buffer_;
};
