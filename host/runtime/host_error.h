// The one error type of the host toolkit: its message is shown to the user as it stands, so it
// names the file or the place that failed.
#pragma once

#include <stdexcept>
#include <string>

class HostError : public std::runtime_error {
 public:
  explicit HostError(const std::string& message) : std::runtime_error(message) {}
};
