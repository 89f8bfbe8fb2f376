// Reads a fuzzer's bytes as little-endian fields; once the bytes are spent every field reads 0, so
// any input decodes to a finite sequence of calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

class ByteStream {
 public:
  ByteStream(const std::uint8_t* data, std::size_t size) : data_(data), remaining_(size) {}

  bool empty() const { return remaining_ == 0; }
  std::uint8_t u8() { return static_cast<std::uint8_t>(take(1)); }
  std::uint16_t u16() { return static_cast<std::uint16_t>(take(2)); }
  std::uint32_t u32() { return static_cast<std::uint32_t>(take(4)); }
  std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
  float f32() {
    const std::uint32_t bits = u32();
    float value = 0.0f;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }
  // Up to `count` raw bytes, fewer when the stream ends first.
  std::vector<std::uint8_t> bytes(std::size_t count) {
    const std::size_t taken = count < remaining_ ? count : remaining_;
    std::vector<std::uint8_t> out(data_, data_ + taken);
    data_ += taken;
    remaining_ -= taken;
    return out;
  }

 private:
  std::uint64_t take(int size) {
    std::uint64_t bits = 0;
    for (int i = 0; i < size && remaining_ > 0; ++i, ++data_, --remaining_)
      bits |= std::uint64_t{*data_} << (8 * i);
    return bits;
  }

  const std::uint8_t* data_;
  std::size_t remaining_;
};
