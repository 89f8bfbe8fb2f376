// The host's settings file and the values kept in it: the per-plug-in safe-mode flags and the
// display scale. The file lives under the XDG configuration directory.
#pragma once

#include <string>

// $XDG_CONFIG_HOME/spatiola, or ~/.config/spatiola when XDG_CONFIG_HOME is unset or relative.
std::string settingsDirectory();
// settingsDirectory() + "/spatiola.ini".
std::string settingsFilePath();

// [any thread] Flags the host keeps per plug-in file (0 when none were stored). The path is taken
// as given; callers pass the absolute path of the plug-in.
int safeModeFlags(const std::string& pluginPath);
// False when the settings file could not be written.
bool setSafeModeFlags(const std::string& pluginPath, int flags);

// Display scale in 1/256 (256 = 100 %): the override when one is set, else the settings file's
// [display] scale256, else 256. Values are kept within 64..1024.
int displayScale256();
void setDisplayScaleOverride(int scale256);  // 0 removes the override
