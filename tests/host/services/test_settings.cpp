// The settings file: where it lives, the INI format and the display scale; safe-mode flags are
// checked through the host functions that write them.
#include <gtest/gtest.h>
#include <stdlib.h>

#include "host/services/ini_file.h"
#include "host/services/settings.h"
#include "tests/host/services/temp_config.h"

TEST(SettingsPath, FollowsXdgConfigHomeElseHome) {
  TempConfig config;
  const std::string home = getenv("HOME") != nullptr ? getenv("HOME") : "";
  EXPECT_EQ(settingsFilePath(), config.dir() + "/spatiola/spatiola.ini");
  setenv("XDG_CONFIG_HOME", "relative/dir", 1);  // not absolute: ignored, as XDG says
  setenv("HOME", "/home/someone", 1);
  EXPECT_EQ(settingsFilePath(), "/home/someone/.config/spatiola/spatiola.ini");
  setenv("HOME", home.c_str(), 1);
}

TEST(IniFile, ParsesSectionsKeysAndCommentsIgnoringCase) {
  const IniFile file =
      IniFile::parse("; comment\n[Main]\nkey = a=b \n[second]\nx=\n[MAIN]\nlate=2\nstray line\n");
  EXPECT_EQ((std::array{file.value("main", "KEY"), file.value("Main", "late"),
                        file.value("second", "x"), file.value("second", "missing")}),
            (std::array<std::optional<std::string>, 4>{" a=b", "2", "", std::nullopt}));
  EXPECT_EQ(file.sectionNames(), (std::vector<std::string>{"Main", "second"}));
}

TEST(DisplayScale, OverrideThenSettingThenUnity) {
  TempConfig config;
  EXPECT_EQ(displayScale256(), 256);
  IniFile file;
  file.setValue("display", "scale256", "384");
  ASSERT_TRUE(file.save(settingsFilePath()));
  EXPECT_EQ(displayScale256(), 384);
  setDisplayScaleOverride(100000);
  EXPECT_EQ(displayScale256(), 1024);  // kept within 25 %..400 %
  setDisplayScaleOverride(0);
  EXPECT_EQ(displayScale256(), 384);
}
