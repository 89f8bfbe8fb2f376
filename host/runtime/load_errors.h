// Why a plug-in file cannot be loaded, in words that point the right way: a 32-bit plug-in in a
// 64-bit host, a library the plug-in needs that is missing, a file that is no shared library.
#pragma once

#include <string>

// Read from the file's ELF header before dlopen: why this host cannot load it, or empty when it
// may. Names the file as `path`.
std::string elfMismatch(const std::string& path);

// The loader's message (dlerror) for `path` turned into a sentence: a missing library is named as
// such; anything else keeps the loader's words after a plain statement.
std::string describeLoadFailure(const std::string& path, const std::string& loaderError);
