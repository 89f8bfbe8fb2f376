// Results get their name only when complete: a failed write never replaces an earlier file.
#pragma once

#include <functional>
#include <string>

// Calls `write` with a temporary path beside `path` and renames the result to `path`. Whatever
// `write` throws, and an interruption by a signal, leave no temporary file behind and `path`
// untouched.
void writeCompleteFile(const std::string& path,
                       const std::function<void(const std::string&)>& write);
