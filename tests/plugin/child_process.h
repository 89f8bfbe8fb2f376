// Runs a test body in a child process: the plug-in's window-layer binding and its instance count
// are process-wide, so cases that depend on them start from a fresh copy of the process.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

// Runs `body` in a child whose standard output is captured; answers that output.
inline std::string inChild(const std::function<void()>& body) {
  int fds[2];
  if (pipe(fds) != 0) return "pipe failed";
  std::fflush(stdout);  // or the child would repeat what the parent has buffered
  const pid_t child = fork();
  if (child == 0) {
    close(fds[0]);
    dup2(fds[1], STDOUT_FILENO);
    body();
    std::fflush(stdout);
    _exit(0);
  }
  close(fds[1]);
  std::string output;
  char buffer[4096];
  for (ssize_t n; (n = read(fds[0], buffer, sizeof buffer)) > 0;)
    output.append(buffer, static_cast<std::size_t>(n));
  close(fds[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) output += "\nchild failed";
  return output;
}

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}
