// Runs a program the way a user would and keeps what it printed.
#pragma once

#include <string>
#include <vector>

struct CommandResult {
  int exitCode = -1;  // 128 + n when killed by signal n
  std::string out;
  std::string err;
};

// argv[0] is the program's path; `stdinPath` (optional) is fed as standard input.
CommandResult runCommand(const std::vector<std::string>& argv, const std::string& stdinPath = "");

// The whole file as bytes; empty when it cannot be read.
std::string readFile(const std::string& path);
