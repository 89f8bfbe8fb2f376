// A private settings directory for one test: XDG_CONFIG_HOME points into a fresh temporary
// directory, removed with everything in it at the end.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

class TempConfig {
 public:
  TempConfig() {
    char pattern[] = "/tmp/spatiola-test-XXXXXX";
    dir_ = mkdtemp(pattern);
    setenv("XDG_CONFIG_HOME", dir_.c_str(), 1);
  }
  ~TempConfig() {
    std::error_code ignored;
    std::filesystem::remove_all(dir_, ignored);
    unsetenv("XDG_CONFIG_HOME");
  }
  TempConfig(const TempConfig&) = delete;
  TempConfig& operator=(const TempConfig&) = delete;

  const std::string& dir() const { return dir_; }

 private:
  std::string dir_;
};
