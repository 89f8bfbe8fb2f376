// The one error type of the host toolkit: its message is shown to the user as it stands, so it
// names the file or the place that failed.
#pragma once

#include <stdexcept>
#include <string>

class HostError : public std::runtime_error {
 public:
  explicit HostError(const std::string& message) : std::runtime_error(message) {}
};

// A wrong command line: an option value that no file and no plug-in could make right. The program
// exits with status 2 for it, 1 for any other HostError.
class UsageError : public HostError {
 public:
  using HostError::HostError;
};
