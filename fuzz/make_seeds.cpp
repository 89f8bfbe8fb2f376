// Writes the seed corpora of the state and dispatcher fuzzers from real instances:
//   make_seeds <fuzz/corpus>
// State blocks of every version the reader accepts (the plug-in writes only version 4; the older
// ones carry the same setups with the fields their version lacks left out) and a few host sessions
// in fuzz_dispatcher's encoding. The scene seeds are `spatiola scene export` of these blocks.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/seed_blocks.h"
#include "fuzz/seed_sessions.h"

namespace {

namespace fs = std::filesystem;

bool writeFile(const fs::path& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
  return static_cast<bool>(out);
}

bool writeAll(const fs::path& folder, const std::vector<NamedBytes>& seeds) {
  fs::create_directories(folder);
  bool written = true;
  for (const NamedBytes& seed : seeds)
    written = writeFile(folder / seed.name, seed.bytes) && written;
  std::printf("%zu seeds in %s\n", seeds.size(), folder.c_str());
  return written;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_seeds <corpus folder>\n");
    return 2;
  }
  const fs::path corpus = argv[1];
  const bool written = writeAll(corpus / "fuzz_state_chunk", seedStateBlocks()) &&
                       writeAll(corpus / "fuzz_dispatcher", seedSessions());
  return written ? 0 : 1;
}
