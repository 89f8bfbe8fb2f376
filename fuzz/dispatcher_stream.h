// The encoding of fuzz_dispatcher's inputs and of its seed sessions: a sequence of
// operations, each one byte (taken modulo kOperationCount) followed by its fields, little-endian.
#pragma once

#include <cstdint>

enum class Operation : std::uint8_t {
  Dispatch,           // u8 opcode, i32 index, i32 value, f32 opt, u8 pointer choice
  SetParameter,       // u16 index, u8 value kind, then f32 raw or u16 fraction
  GetParameter,       // u16 index
  Process,            // u16 frames, u8 amplitude kind, u8 sample seed
  Idle,               // -
  SetChunk,           // u16 length, then that many bytes
  GetChunk,           // -
  Recreate,           // i32 host channel count
  HostChannelChange,  // u8 form (even: standard call, odd: vendor-specific 42), i32 count
  kCount,
};

constexpr int kOperationCount = static_cast<int>(Operation::kCount);

// SetParameter value kinds: a raw float (NaN, infinities, huge values), or a fraction of 0..1 that
// reaches a little past both ends.
enum class ValueKind : std::uint8_t { Raw, Fraction };

// Parameter indexes are drawn from -kIndexMargin .. numParams + kIndexMargin - 1.
constexpr int kIndexMargin = 8;
