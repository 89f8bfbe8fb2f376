#include "host/runtime/load_errors.h"

#include <elf.h>

#include <cstring>
#include <fstream>

namespace {

constexpr int kHostBits = sizeof(void*) * 8;
#if defined(__x86_64__)
constexpr int kHostMachine = EM_X86_64;
#elif defined(__i386__)
constexpr int kHostMachine = EM_386;
#else
constexpr int kHostMachine = EM_NONE;  // not checked
#endif
constexpr const char* kMissingLibrary = ": cannot open shared object file";

std::string bitnessMismatch(const std::string& path, int pluginBits) {
  return path + " is a " + std::to_string(pluginBits) + "-bit plug-in, and this host runs only " +
         std::to_string(kHostBits) + "-bit ones; there is no " + std::to_string(pluginBits) +
         "-bit spatiola host to run it";
}

}  // namespace

std::string elfMismatch(const std::string& path) {
  unsigned char header[EI_NIDENT + 4] = {};
  std::ifstream file(path, std::ios::binary);
  file.read(reinterpret_cast<char*>(header), sizeof header);
  if (file.gcount() < static_cast<std::streamsize>(sizeof header) ||
      std::memcmp(header, ELFMAG, SELFMAG) != 0) {
    return path + " is not a plug-in: it is no shared library (ELF) file";
  }
  const int pluginBits = header[EI_CLASS] == ELFCLASS32 ? 32 : 64;
  if (pluginBits != kHostBits) return bitnessMismatch(path, pluginBits);
  // e_machine follows e_ident and e_type, in the file's byte order.
  const int machine = header[EI_DATA] == ELFDATA2MSB
                          ? header[EI_NIDENT + 2] << 8 | header[EI_NIDENT + 3]
                          : header[EI_NIDENT + 3] << 8 | header[EI_NIDENT + 2];
  if (kHostMachine != EM_NONE && machine != kHostMachine) {
    return path + " is a plug-in for another processor (ELF machine " + std::to_string(machine) +
           "); this host runs only plug-ins for its own";
  }
  return {};
}

std::string describeLoadFailure(const std::string& path, const std::string& loaderError) {
  const auto missing = loaderError.find(kMissingLibrary);
  if (missing != std::string::npos) {
    const std::string library = loaderError.substr(0, missing);
    if (library != path) {
      return "the plug-in " + path + " needs the library " + library +
             ", which is not installed (or not where the loader looks)";
    }
  }
  const auto undefined = loaderError.find("undefined symbol: ");
  if (undefined != std::string::npos) {
    return "the plug-in " + path + " needs the symbol " + loaderError.substr(undefined + 18) +
           ", which none of its libraries provides";
  }
  return path + " cannot be loaded as a plug-in: " + loaderError;
}
