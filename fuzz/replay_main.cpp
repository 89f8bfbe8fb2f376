// Replays files through a fuzz target without libFuzzer: every file named, and every file of every
// directory named, in a stable order. A failed check aborts, so ctest sees the crash.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/fuzz_check.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
    if (entry.is_regular_file() && entry.path().filename().string()[0] != '.')
      files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool replay(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    std::fprintf(stderr, "cannot read %s\n", file.c_str());
    return false;
  }
  const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  int replayed = 0;
  bool readable = true;
  for (int i = 1; i < argc; ++i) {
    if (!fs::exists(argv[i])) continue;  // a target without regressions has no folder yet
    for (const fs::path& file : filesOf(argv[i])) {
      readable = replay(file) && readable;
      ++replayed;
    }
  }
  std::printf("replayed %d inputs\n", replayed);
  return readable && replayed > 0 ? 0 : 1;
}
