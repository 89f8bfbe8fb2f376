// The control creator lent to the host's window layer bound through PLASK_dllMain. The binding and
// the instance count are process-wide, so each case runs in a child process and reports what it
// saw on a pipe.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "plugin_host.h"

namespace {

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

void recordRegister(PlaskControlCreator creator) {
  std::printf("register %p\n", reinterpret_cast<void*>(creator));
}
void recordUnregister(PlaskControlCreator creator) {
  std::printf("unregister %p\n", reinterpret_cast<void*>(creator));
}

int dummyFunction() {
  return 0;
}
// A window layer whose creator functions record their use; every other name does nothing.
void* lendsWindowLayer(const char* name) {
  const std::string n = name;
  if (n == "PLASK_RegisterCustomControlCreator") return reinterpret_cast<void*>(&recordRegister);
  if (n == "PLASK_UnregisterCustomControlCreator") {
    return reinterpret_cast<void*>(&recordUnregister);
  }
  return reinterpret_cast<void*>(&dummyFunction);
}

}  // namespace

namespace {

// Runs `steps` in a fresh process: '+' makes an instance, '!' tries one without the ini file,
// a digit closes the instance made in that place. Answers the log with each creator call as
// "r"/"u" once all of them are seen to pass the same non-null creator.
std::string lifeOf(const std::string& steps) {
  const auto lines = linesOf(inChild([&steps] {
    PluginLibrary::instance().plaskDllMain(1, &lendsWindowLayer);
    TestHost host;
    std::vector<AEffect*> made;
    for (const char step : steps) {
      host.serveIniFile = step != '!';
      if (step == '+' || step == '!') {
        made.push_back(host.create());
        std::printf("%s%zu\n", made.back() ? "made" : "refused", made.size() - 1);
      } else {
        closeEffect(made[static_cast<std::size_t>(step - '0')]);
        std::printf("closed%c\n", step);
      }
    }
  }));
  std::string log;
  std::string creator;
  for (const std::string& line : lines) {
    const std::size_t space = line.find(' ');
    if (space != std::string::npos) {
      if (creator.empty()) creator = line.substr(space + 1);
      EXPECT_EQ(line.substr(space + 1), creator);
      EXPECT_NE(creator, "(nil)");
    }
    log += (log.empty() ? "" : " ") + (space == std::string::npos ? line : line.substr(0, 1));
  }
  return log;
}

}  // namespace

// The SpaceView control creator is registered by the first live instance, unregistered by the
// last, and is always the same creator.
TEST(ControlCreator, FirstLiveInstanceRegistersLastUnregisters) {
  const struct {
    const char* steps;
    const char* log;
  } cases[] = {
      {"++01", "r made0 made1 closed0 u closed1"},
      {"++10", "r made0 made1 closed1 u closed0"},
      {"+0+1", "r made0 u closed0 r made1 u closed1"},  // again after the last one closed
      {"!", "refused0"},
  };
  for (const auto& c : cases) EXPECT_EQ(lifeOf(c.steps), c.log) << c.steps;
}
