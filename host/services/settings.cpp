#include "host/services/settings.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <mutex>

#include "host/services/ini_file.h"

namespace {

constexpr const char* kSafeModeSection = "safemode";
constexpr const char* kDisplaySection = "display";
constexpr int kMinScale256 = 64;
constexpr int kMaxScale256 = 1024;
constexpr int kUnityScale256 = 256;

// Read-modify-write of the file by several plug-in calls must not interleave.
std::mutex settingsMutex;
std::atomic<int> scaleOverride{0};

// Keys may hold any path; '=' would end the key and a leading '[' would open a section.
std::string escapedKey(const std::string& path) {
  std::string key;
  for (const char c : path) {
    if (c == '%' || c == '=' || c == '[' || c == '\n' || c == '\r' || c == ';') {
      constexpr const char* kHex = "0123456789ABCDEF";
      key += '%';
      key += kHex[(static_cast<unsigned char>(c) >> 4) & 15];
      key += kHex[static_cast<unsigned char>(c) & 15];
    } else {
      key += c;
    }
  }
  return key;
}

int parsedInt(const std::string& text, int fallback) {
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 0);
  return end == text.c_str() ? fallback : static_cast<int>(value);
}

}  // namespace

std::string settingsDirectory() {
  const char* xdg = std::getenv("XDG_CONFIG_HOME");
  if (xdg != nullptr && xdg[0] == '/') return std::string(xdg) + "/spatiola";
  const char* home = std::getenv("HOME");
  return std::string(home != nullptr ? home : "") + "/.config/spatiola";
}

std::string settingsFilePath() {
  return settingsDirectory() + "/spatiola.ini";
}

int safeModeFlags(const std::string& pluginPath) {
  const std::lock_guard lock(settingsMutex);
  const auto stored =
      IniFile::load(settingsFilePath()).value(kSafeModeSection, escapedKey(pluginPath));
  return stored ? parsedInt(*stored, 0) : 0;
}

bool setSafeModeFlags(const std::string& pluginPath, int flags) {
  const std::lock_guard lock(settingsMutex);
  const std::string path = settingsFilePath();
  IniFile file = IniFile::load(path);
  file.setValue(kSafeModeSection, escapedKey(pluginPath), std::to_string(flags));
  return file.save(path);
}

int displayScale256() {
  int scale = scaleOverride.load();
  if (scale == 0) {
    const std::lock_guard lock(settingsMutex);
    const auto stored = IniFile::load(settingsFilePath()).value(kDisplaySection, "scale256");
    scale = stored ? parsedInt(*stored, kUnityScale256) : kUnityScale256;
  }
  return std::clamp(scale, kMinScale256, kMaxScale256);
}

void setDisplayScaleOverride(int scale256) {
  scaleOverride.store(scale256);
}
