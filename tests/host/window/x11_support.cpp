#include "tests/host/window/x11_support.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "host/graphics/bitmap.h"

extern char** environ;

namespace {

pid_t spawn(const std::vector<std::string>& argv) {
  std::vector<char*> args;
  for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
  args.push_back(nullptr);
  pid_t pid = -1;
  if (posix_spawnp(&pid, args[0], nullptr, nullptr, args.data(), environ) != 0) return -1;
  return pid;
}

}  // namespace

// Xvfb picks a free display number itself and writes it to the pipe once it takes connections,
// so tests running at the same time never race for one.
bool XvfbServer::start(int width, int height, std::string* error) {
  const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
  int ready[2];
  if (pipe(ready) != 0) return false;
  pid_ = spawn(
      {"Xvfb", "-displayfd", std::to_string(ready[1]), "-screen", "0", screen, "-nolisten", "tcp"});
  close(ready[1]);
  char number[16] = {};
  const ssize_t length = pid_ > 0 ? read(ready[0], number, sizeof number - 1) : 0;
  close(ready[0]);
  if (length > 0) {
    number_ = std::atoi(number);
    setenv("DISPLAY", display().c_str(), 1);
    return true;
  }
  if (error != nullptr) *error = "Xvfb did not start (is xvfb installed?)";
  return false;
}

XvfbServer::~XvfbServer() {
  if (pid_ <= 0) return;
  kill(pid_, SIGTERM);
  int status = 0;
  waitpid(pid_, &status, 0);
}

ChildProcess::ChildProcess(const std::vector<std::string>& argv) : pid_(spawn(argv)) {}

ChildProcess::~ChildProcess() {
  if (pid_ > 0 && status_ < 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

bool ChildProcess::finished() {
  if (pid_ <= 0) return true;
  if (status_ >= 0) return true;
  int status = 0;
  if (waitpid(pid_, &status, WNOHANG) != pid_) return false;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128;
  return true;
}

namespace {

std::uint32_t bigEndian(const unsigned char* p) {
  return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) |
         p[3];
}

}  // namespace

// Xvfb's depth-24 screens dump 24- or 32-bit pixels, least significant byte first, red in
// 0xFF0000.
std::unique_ptr<DAUB_IBitmap> readXwd(const std::string& path, std::string* error) {
  std::ifstream file(path, std::ios::binary);
  std::vector<unsigned char> data((std::istreambuf_iterator<char>(file)), {});
  auto fail = [&](const char* why) {
    if (error != nullptr) *error = path + ": " + why;
    return std::unique_ptr<DAUB_IBitmap>();
  };
  if (data.size() < 100) return fail("not an X window dump");
  auto field = [&](int index) { return bigEndian(&data[static_cast<std::size_t>(index) * 4]); };
  const std::uint32_t headerSize = field(0), format = field(2), width = field(4), height = field(5);
  const std::uint32_t byteOrder = field(7), bitsPerPixel = field(11), bytesPerLine = field(12);
  const std::size_t pixels = headerSize + field(19) * 12u;  // after the colour map
  if (format != 2 || (bitsPerPixel != 24 && bitsPerPixel != 32) || byteOrder != 0 ||
      field(14) != 0xFF0000u ||
      data.size() < pixels + static_cast<std::size_t>(bytesPerLine) * height) {
    return fail("unsupported X window dump");
  }
  std::unique_ptr<graphics::CairoBitmap> picture = graphics::CairoBitmap::create(
      DAUB_BITMAP_MEMORY, static_cast<int>(width), static_cast<int>(height));
  if (picture == nullptr) return fail("too large");
  for (std::uint32_t y = 0; y < height; ++y) {
    std::uint32_t* row = picture->row(static_cast<int>(y));
    for (std::uint32_t x = 0; x < width; ++x) {
      const unsigned char* p = &data[pixels + y * bytesPerLine + x * (bitsPerPixel / 8)];
      row[x] = 0xFF000000u | std::uint32_t{p[2]} << 16 | std::uint32_t{p[1]} << 8 | p[0];
    }
  }
  picture->markDirty();
  return picture;
}
