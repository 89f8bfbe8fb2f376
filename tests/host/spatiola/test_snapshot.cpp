// spatiola snapshot: the inline view of a plug-in painted into a host bitmap and written as PNG;
// its size and scale, and the plug-ins that cannot be pictured. Spatiola's room is pinned by the
// reference pictures and drawn by the demo.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "host/graphics/drawing.h"
#include "host/graphics/png_io.h"
#include "tests/host/spatiola/command_fixture.h"

namespace {

const std::string kProbe = std::string(PROBE_DIR) + "/probe.so";
const std::string kInlineProbe = std::string(PROBE_DIR) + "/probe_inline.so";
constexpr DAUB_pixel kProbeBackground = 0xFF102030u;
constexpr DAUB_pixel kProbeSquare = 0xFFFF0000u;

DAUB_pixel pixel(DAUB_IBitmap* picture, int x, int y) {
  return graphics::DAUB_GetPixel(picture, x, y);
}

class Snapshot : public CommandTest {
 protected:
  // Runs the command and reads the picture it wrote; null when it failed.
  std::unique_ptr<DAUB_IBitmap> snapshot(std::vector<std::string> args) {
    args.insert(args.begin(), "snapshot");
    last_ = spatiola(args);
    EXPECT_EQ(last_.exitCode, 0) << last_.err;
    return last_.exitCode == 0 ? graphics::readPng(args.back()) : nullptr;
  }
  CommandResult last_;
};

}  // namespace

TEST_F(Snapshot, ThePluginPaintsTheHostBitmapAtItsSizeAndScale) {
  const struct {
    const char* size;
    const char* scale;  // empty: the default
    int widthPx, heightPx, squarePx;
    const char* percent;
  } cases[] = {{"64x48", "", 64, 48, 8, "100 %"},
               {"100x30", "512", 100, 30, 16, "200 %"},
               {"1x1", "384", 1, 1, 12, "150 %"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.size) + " " + c.scale);
    std::vector<std::string> args = {"--plugin", kInlineProbe, "--size", c.size, path("p.png")};
    if (*c.scale != '\0') args.insert(args.end() - 1, {"--scale", c.scale});
    const auto picture = snapshot(args);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(last_.out, "wrote the inline view of Probe (" + std::string(c.size) + " px at " +
                             c.percent + ") to " + path("p.png") + "\n");
    EXPECT_EQ(std::pair(picture->getWidth(), picture->getHeight()),
              std::pair(c.widthPx, c.heightPx));
    const int inside = std::min({c.squarePx, c.widthPx, c.heightPx}) - 1;
    EXPECT_EQ(pixel(picture.get(), inside, inside), kProbeSquare);
    EXPECT_EQ(pixel(picture.get(), c.widthPx - 1, 0),
              c.widthPx > c.squarePx ? kProbeBackground : kProbeSquare);
  }
}

TEST_F(Snapshot, RefusesWhatItCannotPictureAndWritesNothing) {
  const struct {
    std::vector<std::string> args;
    std::string errorTail;  // the end of the one line on standard error
    int exitCode;
  } cases[] = {
      {{"--plugin", kProbe},
       " has no inline view (it does not answer canDo \"hasTolvekEmbeddedUI\"); no picture "
       "written\n",
       1},
      {{"--plugin", kInlineProbe, "--set", "1=1"},
       " did not paint its inline view (WM_PAINT answered 0); no picture written\n",
       1},
      {{"--plugin", kInlineProbe, "--scale", "300"},
       "--scale 300 is not a display scale: use 256 (100 %), 384 (150 %) or 512 (200 %)\n",
       2},
      {{"--plugin", path("missing.so")}, "no such file or folder\n", 1},
  };
  std::ofstream(path("kept.png")) << "an earlier picture";
  for (const auto& c : cases) {
    for (const char* target : {"new.png", "kept.png"}) {
      std::vector<std::string> args = c.args;
      args.insert(args.begin(), "snapshot");
      args.push_back(path(target));
      const CommandResult run = spatiola(args);
      EXPECT_EQ(std::pair(run.exitCode, run.out), std::pair(c.exitCode, std::string())) << run.err;
      EXPECT_EQ(run.err.rfind("spatiola: ", 0), 0u) << run.err;
      EXPECT_TRUE(run.err.ends_with(c.errorTail)) << run.err;
    }
    EXPECT_FALSE(std::filesystem::exists(path("new.png")));
    EXPECT_EQ(readFile(path("kept.png")), "an earlier picture");
  }
  const std::string unwritable = path("no-such-dir/p.png");
  const CommandResult run = spatiola({"snapshot", "--plugin", kInlineProbe, unwritable});
  EXPECT_EQ(run.err, "spatiola: cannot write the picture " + unwritable + ": the folder " +
                         path("no-such-dir") + " does not exist\n");
}
