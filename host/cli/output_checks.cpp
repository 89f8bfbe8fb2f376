#include "host/cli/output_checks.h"

#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "host/runtime/file_problem.h"
#include "host/runtime/host_error.h"

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kSpaceMargin = std::int64_t{16} << 20;  // headers, and room for the rest

fs::path folderOf(const std::string& path) {
  const fs::path parent = fs::path(path).parent_path();
  return parent.empty() ? fs::path(".") : parent;
}

// The same file through a link or another spelling, or the same name not made yet.
bool sameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  if (fs::equivalent(a, b, error)) return true;
  std::error_code errorA, errorB;
  const fs::path canonicalA = fs::weakly_canonical(a, errorA);
  const fs::path canonicalB = fs::weakly_canonical(b, errorB);
  return !errorA && !errorB && canonicalA == canonicalB;
}

}  // namespace

void checkWritablePath(const std::string& path, const std::string& what) {
  std::error_code error;
  if (fs::is_directory(path, error)) {
    throw HostError(what + " " + path + " is a folder; give a file name");
  }
  const fs::path folder = folderOf(path);
  if (!fs::is_directory(folder, error)) {
    throw HostError("cannot write " + what + " " + path + ": the folder " + folder.string() +
                    (fs::exists(folder, error) ? " is not a folder" : " does not exist"));
  }
  if (access(folder.c_str(), W_OK | X_OK) != 0) {
    throw HostError("cannot write " + what + " " + path + ": the folder " + folder.string() + ": " +
                    fileProblem(errno));
  }
}

void checkNotOverwriting(const std::string& written, const std::string& what,
                         const std::vector<std::string>& read) {
  for (const std::string& source : read) {
    if (!source.empty() && sameFile(written, source)) {
      throw HostError(what + " " + written + " is the file " + source +
                      " that the command reads; choose another name");
    }
  }
}

void checkFreeSpace(const std::string& path, std::int64_t bytes) {
  struct statvfs disk {};
  if (bytes <= 0 || statvfs(folderOf(path).c_str(), &disk) != 0) return;
  const auto available =
      static_cast<std::int64_t>(disk.f_bavail) * static_cast<std::int64_t>(disk.f_frsize);
  if (bytes + kSpaceMargin > available) {
    throw HostError("not enough space for " + path + ": it needs about " + formatBytes(bytes) +
                    ", and its disk has " + formatBytes(available) + " free");
  }
}

std::string formatBytes(std::int64_t bytes) {
  static constexpr const char* kUnits[] = {"bytes", "kB", "MB", "GB", "TB"};
  auto value = static_cast<double>(bytes);
  int unit = 0;
  while (value >= 1000.0 && unit < 4) {
    value /= 1000.0;
    ++unit;
  }
  char text[32];
  std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", value, kUnits[unit]);
  return text;
}
