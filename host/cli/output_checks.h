// Checks made before a command reads or writes anything, so that a long run does not fail at its
// end or overwrite what it reads: the places files are written to, the files read, free space.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Throws HostError when `path` cannot become a file: it is a folder, its folder is missing or not
// writable. `what` names it in the message ("the output", "--save-state").
void checkWritablePath(const std::string& path, const std::string& what);

// Throws HostError when `written` is the same file as one of `read` (also through links or
// another spelling of the path), before anything is read.
void checkNotOverwriting(const std::string& written, const std::string& what,
                         const std::vector<std::string>& read);

// Throws HostError when the disk of `path` has less than `bytes` free (and a margin).
void checkFreeSpace(const std::string& path, std::int64_t bytes);

// "1.2 GB", "340 MB", "12 kB".
std::string formatBytes(std::int64_t bytes);
