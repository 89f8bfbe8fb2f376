// A settings file in the INI format: [section] headers and key=value lines. Section and key names
// compare without regard to case, as the window layer's profile functions expect; the order of
// sections and keys is kept so that a file the user edited reads back as it was.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

class IniFile {
 public:
  using Entry = std::pair<std::string, std::string>;

  // A missing or unreadable file gives an empty one.
  static IniFile load(const std::string& path);
  static IniFile parse(const std::string& text);

  // Writes a sibling temporary file and renames it over `path`, creating missing directories,
  // so that a crash never leaves half a file. False when the file cannot be written.
  bool save(const std::string& path) const;
  std::string text() const;

  std::optional<std::string> value(const std::string& section, const std::string& key) const;
  void setValue(const std::string& section, const std::string& key, const std::string& value);
  // True when something was removed.
  bool removeValue(const std::string& section, const std::string& key);
  bool removeSection(const std::string& section);

  std::vector<std::string> sectionNames() const;
  // Empty when the section is absent.
  std::vector<Entry> entries(const std::string& section) const;
  void replaceSection(const std::string& section, std::vector<Entry> entries);

 private:
  struct Section {
    std::string name;
    std::vector<Entry> entries;
  };
  Section* findSection(const std::string& name);
  const Section* findSection(const std::string& name) const;

  std::vector<Section> sections_;
};

// Makes the directory and its parents; true when it exists afterwards.
bool makeDirectories(const std::string& path);
