// One edit the plug-in reported to the host: audioMasterAutomate with its value or
// audioMasterEndEdit, which carries 0.
#pragma once

#include <cmath>
#include <cstdint>
#include <ostream>

#include "platform/vst2.h"

struct Report {
  std::int32_t opcode, index;
  float value;
  // Positions reached by sums of pixel steps differ from the written decimals in the last bits.
  bool operator==(const Report& o) const {
    return opcode == o.opcode && index == o.index && std::fabs(value - o.value) < 1e-5f;
  }
};

inline void PrintTo(const Report& r, std::ostream* out) {
  *out << "{" << r.opcode << ", " << r.index << ", " << r.value << "}";
}

inline Report endEdit(int index) {
  return {audioMasterEndEdit, index, 0.0f};
}
