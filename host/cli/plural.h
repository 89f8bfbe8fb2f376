// Counts in messages: "1 input", "2 inputs".
#pragma once

#include <cstdint>
#include <string>

inline std::string counted(std::int64_t count, const std::string& singular) {
  return std::to_string(count) + " " + singular + (count == 1 ? "" : "s");
}
