#include "host/cli/complete_file.h"

#include <cstdio>

#include "host/runtime/host_error.h"
#include "host/runtime/interrupt_guard.h"

void writeCompleteFile(const std::string& path,
                       const std::function<void(const std::string&)>& write) {
  const std::string partialPath = path + ".partial";
  const UnfinishedFile unfinished(partialPath, path);
  try {
    write(partialPath);
  } catch (...) {
    std::remove(partialPath.c_str());
    throw;
  }
  if (std::rename(partialPath.c_str(), path.c_str()) != 0) {
    throw HostError("cannot move the result to " + path + " (it is in " + partialPath + ")");
  }
}
