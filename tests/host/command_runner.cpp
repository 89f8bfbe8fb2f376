#include "tests/host/command_runner.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>

namespace {

void redirect(const std::string& path, int fd, int flags) {
  const int file = open(path.c_str(), flags, 0644);
  if (file >= 0) {
    dup2(file, fd);
    close(file);
  }
}

}  // namespace

CommandResult runCommand(const std::vector<std::string>& argv, const std::string& stdinPath) {
  char outPattern[] = "/tmp/spatiola-out-XXXXXX";
  char errPattern[] = "/tmp/spatiola-err-XXXXXX";
  close(mkstemp(outPattern));
  close(mkstemp(errPattern));
  const pid_t child = fork();
  if (child == 0) {
    redirect(outPattern, STDOUT_FILENO, O_WRONLY | O_TRUNC);
    redirect(errPattern, STDERR_FILENO, O_WRONLY | O_TRUNC);
    redirect(stdinPath.empty() ? "/dev/null" : stdinPath, STDIN_FILENO, O_RDONLY);
    std::vector<char*> args;
    args.reserve(argv.size() + 1);
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  CommandResult result;
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.out = readFile(outPattern);
  result.err = readFile(errPattern);
  std::remove(outPattern);
  std::remove(errPattern);
  return result;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
