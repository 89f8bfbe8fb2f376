#include "host/services/profile_files.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include "host/services/ini_file.h"
#include "host/services/settings.h"

namespace {

std::mutex profileMutex;

std::string resolvedPath(const char* file) {
  if (file == nullptr || file[0] == '\0') return settingsFilePath();
  if (std::strchr(file, '/') != nullptr) return file;
  return settingsDirectory() + "/" + file;
}

// Copies a zero-separated list; when it does not fit it is cut and still ends with two zeros,
// and the result is size - 2 as in Win32.
DWORD copyList(const std::vector<std::string>& items, char* out, DWORD size) {
  if (out == nullptr || size < 2) return 0;
  DWORD used = 0;
  for (const std::string& item : items) {
    if (used + item.size() + 2 > size) {
      out[size - 2] = '\0';
      out[size - 1] = '\0';
      return size - 2;
    }
    std::memcpy(out + used, item.c_str(), item.size() + 1);
    used += static_cast<DWORD>(item.size() + 1);
  }
  out[used] = '\0';
  if (used == 0) out[1] = '\0';
  return used;
}

DWORD copyString(const std::string& text, char* out, DWORD size) {
  if (out == nullptr || size == 0) return 0;
  const DWORD length = std::min<DWORD>(static_cast<DWORD>(text.size()), size - 1);
  std::memcpy(out, text.data(), length);
  out[length] = '\0';
  return length;
}

std::vector<std::string> keysOf(const IniFile& file, const std::string& section) {
  std::vector<std::string> keys;
  for (const auto& entry : file.entries(section)) keys.push_back(entry.first);
  return keys;
}

std::string hexOf(const unsigned char* bytes, UINT size) {
  constexpr const char* kHex = "0123456789ABCDEF";
  std::string text;
  unsigned checksum = 0;
  for (UINT i = 0; i <= size; ++i) {
    const unsigned byte = i < size ? bytes[i] : (checksum & 0xFFu);
    if (i < size) checksum += byte;
    text += kHex[byte >> 4];
    text += kHex[byte & 15u];
  }
  return text;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool decodeHex(const std::string& text, std::vector<unsigned char>& bytes) {
  if (text.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int high = hexDigit(text[i]);
    const int low = hexDigit(text[i + 1]);
    if (high < 0 || low < 0) return false;
    bytes.push_back(static_cast<unsigned char>(high * 16 + low));
  }
  return true;
}

}  // namespace

UINT profileGetInt(const char* section, const char* key, int fallback, const char* file) {
  if (section == nullptr || key == nullptr) return static_cast<UINT>(fallback);
  const std::lock_guard lock(profileMutex);
  const auto stored = IniFile::load(resolvedPath(file)).value(section, key);
  if (!stored) return static_cast<UINT>(fallback);
  return static_cast<UINT>(std::strtol(stored->c_str(), nullptr, 10));
}

DWORD profileGetString(const char* section, const char* key, const char* fallback, char* out,
                       DWORD size, const char* file) {
  const std::lock_guard lock(profileMutex);
  const IniFile ini = IniFile::load(resolvedPath(file));
  if (section == nullptr) return copyList(ini.sectionNames(), out, size);
  if (key == nullptr) return copyList(keysOf(ini, section), out, size);
  const auto stored = ini.value(section, key);
  return copyString(stored ? *stored : std::string(fallback != nullptr ? fallback : ""), out, size);
}

DWORD profileGetSection(const char* section, char* out, DWORD size, const char* file) {
  if (section == nullptr) return 0;
  const std::lock_guard lock(profileMutex);
  std::vector<std::string> lines;
  for (const auto& [key, value] : IniFile::load(resolvedPath(file)).entries(section)) {
    std::string line = key;
    line += '=';
    line += value;
    lines.push_back(std::move(line));
  }
  return copyList(lines, out, size);
}

BOOL profileGetStruct(const char* section, const char* key, void* out, UINT size,
                      const char* file) {
  if (section == nullptr || key == nullptr || out == nullptr) return 0;
  const std::lock_guard lock(profileMutex);
  const auto stored = IniFile::load(resolvedPath(file)).value(section, key);
  std::vector<unsigned char> bytes;
  if (!stored || !decodeHex(*stored, bytes) || bytes.size() != size + 1u) return 0;
  unsigned checksum = 0;
  for (UINT i = 0; i < size; ++i) checksum += bytes[i];
  if ((checksum & 0xFFu) != bytes[size]) return 0;
  std::memcpy(out, bytes.data(), size);
  return 1;
}

BOOL profileWriteString(const char* section, const char* key, const char* value, const char* file) {
  if (section == nullptr) return 0;
  const std::lock_guard lock(profileMutex);
  const std::string path = resolvedPath(file);
  IniFile ini = IniFile::load(path);
  if (key == nullptr) {
    ini.removeSection(section);
  } else if (value == nullptr) {
    ini.removeValue(section, key);
  } else {
    ini.setValue(section, key, value);
  }
  return ini.save(path) ? 1 : 0;
}

BOOL profileWriteSection(const char* section, const char* data, const char* file) {
  if (section == nullptr) return 0;
  const std::lock_guard lock(profileMutex);
  const std::string path = resolvedPath(file);
  IniFile ini = IniFile::load(path);
  if (data == nullptr) {
    ini.removeSection(section);
    return ini.save(path) ? 1 : 0;
  }
  std::vector<IniFile::Entry> entries;
  for (const char* line = data; *line != '\0'; line += std::strlen(line) + 1) {
    const char* equals = std::strchr(line, '=');
    if (equals == nullptr) continue;
    entries.emplace_back(std::string(line, equals), std::string(equals + 1));
  }
  ini.replaceSection(section, std::move(entries));
  return ini.save(path) ? 1 : 0;
}

BOOL profileWriteStruct(const char* section, const char* key, const void* data, UINT size,
                        const char* file) {
  if (data == nullptr) return profileWriteString(section, key, nullptr, file);
  const std::string text = hexOf(static_cast<const unsigned char*>(data), size);
  return profileWriteString(section, key, text.c_str(), file);
}
