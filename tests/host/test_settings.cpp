// The settings file: where it lives, the INI format, safe-mode flags and the display scale.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/services/ini_file.h"
#include "host/services/settings.h"
#include "tests/host/temp_config.h"

TEST(SettingsPath, FollowsXdgConfigHomeElseHome) {
  TempConfig config;
  const std::string home = getenv("HOME") != nullptr ? getenv("HOME") : "";
  EXPECT_EQ(settingsFilePath(), config.dir() + "/spatiola/spatiola.ini");
  setenv("XDG_CONFIG_HOME", "relative/dir", 1);  // not absolute: ignored, as XDG says
  setenv("HOME", "/home/someone", 1);
  EXPECT_EQ(settingsFilePath(), "/home/someone/.config/spatiola/spatiola.ini");
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(settingsDirectory(), "/home/someone/.config/spatiola");
  setenv("HOME", home.c_str(), 1);
}

TEST(IniFile, ParsesSectionsKeysAndCommentsIgnoringCase) {
  const IniFile file = IniFile::parse(
      "; comment\n[Main]\nkey = a=b \nother=1\n\n[second]\nx=\n[MAIN]\nlate=2\nstray line\n");
  EXPECT_EQ(file.value("main", "KEY"), std::optional<std::string>(" a=b"));
  EXPECT_EQ(file.value("Main", "late"), std::optional<std::string>("2"));
  EXPECT_EQ(file.value("second", "x"), std::optional<std::string>(""));
  EXPECT_FALSE(file.value("second", "missing").has_value());
  EXPECT_FALSE(file.value("third", "x").has_value());
  EXPECT_EQ(file.sectionNames(), (std::vector<std::string>{"Main", "second"}));
}

TEST(SafeMode, FlagsPersistPerPluginFile) {
  TempConfig config;
  EXPECT_EQ(safeModeFlags("/plugins/a.so"), 0);
  ASSERT_TRUE(setSafeModeFlags("/plugins/a.so", 5));
  ASSERT_TRUE(setSafeModeFlags("/odd/na=me[1];%.so", 2));
  ASSERT_TRUE(setSafeModeFlags("/plugins/a.so", 3));
  EXPECT_EQ(safeModeFlags("/plugins/a.so"), 3);
  EXPECT_EQ(safeModeFlags("/odd/na=me[1];%.so"), 2);
  EXPECT_EQ(safeModeFlags("/plugins/b.so"), 0);
  // Written to the settings file, where a new process finds it.
  std::ifstream in(settingsFilePath());
  std::stringstream text;
  text << in.rdbuf();
  EXPECT_NE(text.str().find("[safemode]\n/plugins/a.so=3\n"), std::string::npos) << text.str();
  EXPECT_NE(text.str().find("/odd/na%3Dme%5B1]%3B%25.so=2"), std::string::npos) << text.str();
}

TEST(DisplayScale, OverrideThenSettingThenUnity) {
  TempConfig config;
  EXPECT_EQ(displayScale256(), 256);
  IniFile file;
  file.setValue("display", "scale256", "384");
  ASSERT_TRUE(file.save(settingsFilePath()));
  EXPECT_EQ(displayScale256(), 384);
  setDisplayScaleOverride(512);
  EXPECT_EQ(displayScale256(), 512);
  setDisplayScaleOverride(100000);
  EXPECT_EQ(displayScale256(), 1024);  // kept within 25 %..400 %
  setDisplayScaleOverride(0);
  EXPECT_EQ(displayScale256(), 384);
}
