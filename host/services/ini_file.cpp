#include "host/services/ini_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace {

bool equalsIgnoringCase(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) ==
           std::tolower(static_cast<unsigned char>(y));
  });
}

std::string trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  const auto last = text.find_last_not_of(" \t\r");
  return text.substr(first, last - first + 1);
}

template <typename Entries>
auto findEntry(Entries& entries, const std::string& key) {
  return std::find_if(entries.begin(), entries.end(),
                      [&](const IniFile::Entry& e) { return equalsIgnoringCase(e.first, key); });
}

std::string parentDirectory(const std::string& path) {
  const auto slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

bool makeDirectories(const std::string& path) {
  struct stat info {};
  if (path.empty() || stat(path.c_str(), &info) == 0) return !path.empty() && S_ISDIR(info.st_mode);
  const std::string parent = parentDirectory(path);
  if (parent != path && !makeDirectories(parent)) return false;
  return mkdir(path.c_str(), 0755) == 0 || errno == EEXIST;
}

IniFile IniFile::load(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return {};
  std::stringstream text;
  text << in.rdbuf();
  return parse(text.str());
}

IniFile IniFile::parse(const std::string& text) {
  IniFile file;
  std::istringstream lines(text);
  std::string line;
  Section* current = nullptr;
  while (std::getline(lines, line)) {
    const std::string content = trimmed(line);
    if (content.empty() || content[0] == ';' || content[0] == '#') continue;
    if (content.front() == '[' && content.back() == ']') {
      const std::string name = content.substr(1, content.size() - 2);
      current = file.findSection(name);
      if (current == nullptr) current = &file.sections_.emplace_back(Section{name, {}});
      continue;
    }
    const auto equals = content.find('=');
    if (current == nullptr || equals == std::string::npos) continue;
    current->entries.emplace_back(trimmed(content.substr(0, equals)), content.substr(equals + 1));
  }
  return file;
}

std::string IniFile::text() const {
  std::string out;
  for (const Section& section : sections_) {
    out += "[" + section.name + "]\n";
    for (const auto& [key, value] : section.entries) {
      out += key;
      out += '=';
      out += value;
      out += '\n';
    }
  }
  return out;
}

bool IniFile::save(const std::string& path) const {
  if (!makeDirectories(parentDirectory(path))) return false;
  const std::string temporary = path + ".tmp" + std::to_string(getpid());
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out << text();
    if (!out.flush()) {
      std::remove(temporary.c_str());
      return false;
    }
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

IniFile::Section* IniFile::findSection(const std::string& name) {
  for (Section& section : sections_) {
    if (equalsIgnoringCase(section.name, name)) return &section;
  }
  return nullptr;
}

const IniFile::Section* IniFile::findSection(const std::string& name) const {
  return const_cast<IniFile*>(this)->findSection(name);
}

std::optional<std::string> IniFile::value(const std::string& section,
                                          const std::string& key) const {
  const Section* found = findSection(section);
  if (found == nullptr) return std::nullopt;
  const auto entry = findEntry(found->entries, key);
  if (entry == found->entries.end()) return std::nullopt;
  return entry->second;
}

void IniFile::setValue(const std::string& section, const std::string& key,
                       const std::string& value) {
  Section* found = findSection(section);
  if (found == nullptr) found = &sections_.emplace_back(Section{section, {}});
  const auto entry = findEntry(found->entries, key);
  if (entry == found->entries.end()) {
    found->entries.emplace_back(key, value);
  } else {
    entry->second = value;
  }
}

bool IniFile::removeValue(const std::string& section, const std::string& key) {
  Section* found = findSection(section);
  if (found == nullptr) return false;
  const auto entry = findEntry(found->entries, key);
  if (entry == found->entries.end()) return false;
  found->entries.erase(entry);
  return true;
}

bool IniFile::removeSection(const std::string& section) {
  return std::erase_if(sections_,
                       [&](const Section& s) { return equalsIgnoringCase(s.name, section); }) > 0;
}

std::vector<std::string> IniFile::sectionNames() const {
  std::vector<std::string> names;
  for (const Section& section : sections_) names.push_back(section.name);
  return names;
}

std::vector<IniFile::Entry> IniFile::entries(const std::string& section) const {
  const Section* found = findSection(section);
  return found == nullptr ? std::vector<Entry>{} : found->entries;
}

void IniFile::replaceSection(const std::string& section, std::vector<Entry> entries) {
  Section* found = findSection(section);
  if (found == nullptr) found = &sections_.emplace_back(Section{section, {}});
  found->entries = std::move(entries);
}
