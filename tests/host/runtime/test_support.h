// Checks shared by the host toolkit's tests.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "host/runtime/host_error.h"

// The message of the HostError that `fn` throws, or "no error".
template <typename Fn>
std::string errorOf(Fn fn) {
  try {
    fn();
  } catch (const HostError& error) {
    return error.what();
  }
  return "no error";
}

inline bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Each key of `expected` is a JSON pointer into `actual` and the value found there.
inline void expectJsonAt(const nlohmann::json& actual, const nlohmann::json& expected) {
  for (const auto& [pointer, value] : expected.items()) {
    const nlohmann::json::json_pointer at(pointer);
    EXPECT_EQ(actual.contains(at) ? actual.at(at) : nlohmann::json(), value) << pointer;
  }
}
