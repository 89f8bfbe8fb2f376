// spatiola snapshot: the inline view of a plug-in painted into a host bitmap and written as PNG;
// its size and scale, the plug-ins that cannot be pictured, and Spatiola's room.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "host/graphics/drawing.h"
#include "host/graphics/png_io.h"
#include "tests/host/command_runner.h"
#include "tests/host/temp_config.h"

namespace {

const std::string kSpatiola = SPATIOLA_EXE;
const std::string kProbe = std::string(PROBE_DIR) + "/probe.so";
const std::string kInlineProbe = std::string(PROBE_DIR) + "/probe_inline.so";
constexpr DAUB_pixel kProbeBackground = 0xFF102030u;
constexpr DAUB_pixel kProbeSquare = 0xFFFF0000u;
constexpr DAUB_pixel kRoomBackground = 0xFF202020u;

std::unique_ptr<DAUB_IBitmap> readPicture(const std::string& path) {
  std::string error;
  std::unique_ptr<DAUB_IBitmap> picture = graphics::readPng(path, &error);
  EXPECT_NE(picture, nullptr) << error;
  return picture;
}

DAUB_pixel pixel(DAUB_IBitmap* picture, int x, int y) {
  return graphics::DAUB_GetPixel(picture, x, y);
}

std::string slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool endsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() &&
         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

class Snapshot : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const { return config_.dir() + "/" + name; }
  CommandResult spatiola(std::vector<std::string> args) {
    args.insert(args.begin(), {kSpatiola, "snapshot"});
    return runCommand(args);
  }
  TempConfig config_;
};

// Nearly white pixels in a square of `radius` around (x, y): input 1's dot and its number.
int whitePixelsAround(DAUB_IBitmap* picture, int x, int y, int radius) {
  int count = 0;
  for (int py = y - radius; py <= y + radius; ++py) {
    for (int px = x - radius; px <= x + radius; ++px) {
      const DAUB_pixel p = pixel(picture, px, py);
      if ((p & 0xF0F0F0u) == 0xF0F0F0u) ++count;
    }
  }
  return count;
}

}  // namespace

TEST_F(Snapshot, ThePluginPaintsTheHostBitmapAtItsSizeAndScale) {
  const struct {
    const char* size;
    const char* scale;  // empty: the default
    int widthPx, heightPx, squarePx;
    const char* percent;
  } cases[] = {{"64x48", "", 64, 48, 8, "100 %"},
               {"64x48", "384", 64, 48, 12, "150 %"},
               {"100x30", "512", 100, 30, 16, "200 %"},
               {"1x1", "256", 1, 1, 8, "100 %"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.size) + " " + c.scale);
    std::vector<std::string> args = {"--plugin", kInlineProbe, "--size", c.size, path("p.png")};
    if (*c.scale != '\0') args.insert(args.end() - 1, {"--scale", c.scale});
    const CommandResult run = spatiola(args);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "wrote the inline view of Probe (" + std::string(c.size) + " px at " +
                           c.percent + ") to " + path("p.png") + "\n");
    const auto picture = readPicture(path("p.png"));
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->getWidth(), c.widthPx);
    EXPECT_EQ(picture->getHeight(), c.heightPx);
    const int inside = std::min({c.squarePx, c.widthPx, c.heightPx}) - 1;
    EXPECT_EQ(pixel(picture.get(), inside, inside), kProbeSquare);
    if (c.widthPx > c.squarePx) {
      EXPECT_EQ(pixel(picture.get(), c.squarePx, 0), kProbeBackground);
      EXPECT_EQ(pixel(picture.get(), c.widthPx - 1, c.heightPx - 1), kProbeBackground);
    }
    EXPECT_FALSE(std::filesystem::exists(path("p.png.part")));
  }
}

TEST_F(Snapshot, RefusesWhatItCannotPictureAndWritesNothing) {
  const std::string scaleAdvice =
      " is not a display scale: use 256 (100 %), 384 (150 %) or 512 "
      "(200 %)\n";
  const struct {
    std::vector<std::string> args;
    std::string errorTail;  // the end of the one line on standard error
  } cases[] = {
      {{"--plugin", kProbe},
       " has no inline view (it does not answer canDo \"hasTolvekEmbeddedUI\"); no picture "
       "written\n"},
      {{"--plugin", kInlineProbe, "--set", "1=1"},
       " did not paint its inline view (WM_PAINT answered 0); no picture written\n"},
      {{"--plugin", kInlineProbe, "--size", "480"},
       "--size '480' must be WIDTHxHEIGHT in pixels, for instance 480x480\n"},
      {{"--plugin", kInlineProbe, "--scale", "300"}, "--scale 300" + scaleAdvice},
      {{"--plugin", path("missing.so")}, "no such file or no permission\n"},
  };
  std::ofstream(path("kept.png")) << "an earlier picture";
  for (const auto& c : cases) {
    for (const char* target : {"new.png", "kept.png"}) {
      std::vector<std::string> args = c.args;
      args.push_back(path(target));
      const CommandResult run = spatiola(args);
      EXPECT_EQ(run.exitCode, 1) << run.err;
      EXPECT_EQ(run.err.rfind("spatiola: ", 0), 0u) << run.err;
      EXPECT_TRUE(endsWith(run.err, c.errorTail)) << run.err;
      EXPECT_TRUE(run.out.empty()) << run.out;
    }
    EXPECT_FALSE(std::filesystem::exists(path("new.png")));
    EXPECT_FALSE(std::filesystem::exists(path("new.png.part")));
    EXPECT_EQ(slurp(path("kept.png")), "an earlier picture");
  }
}

TEST_F(Snapshot, AnUnwritablePlaceIsAClearError) {
  const std::string target = path("no-such-dir/p.png");
  const CommandResult run = spatiola({"--plugin", kInlineProbe, target});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err.rfind("spatiola: cannot write " + target + ": ", 0), 0u) << run.err;
}

TEST_F(Snapshot, SpatiolaPaintsItsRoomOnTheViewBackground) {
  const CommandResult run = spatiola({"--size", "320x200", path("room.png")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const auto picture = readPicture(path("room.png"));
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->getWidth(), 320);
  EXPECT_EQ(picture->getHeight(), 200);
  for (const auto& [x, y] : {std::pair{0, 0}, {319, 0}, {0, 199}, {319, 199}}) {
    EXPECT_EQ(pixel(picture.get(), x, y), kRoomBackground) << x << "," << y;
  }
}

TEST_F(Snapshot, SpatiolaDrawsLargerDotsAtALargerScale) {
  // One input without diffusion at (0.5, 0.5): its dot sits at (355, 125) of 480 x 480.
  const std::vector<std::string> scene = {"--channels", "1",           "--set", "in 1 X=0.75",
                                          "--set",      "in 1 Y=0.75", "--set", "in 1 diffuse=0"};
  int white[2] = {0, 0};
  const char* scales[2] = {"256", "512"};
  for (int i = 0; i < 2; ++i) {
    std::vector<std::string> args = scene;
    args.insert(args.end(), {"--scale", scales[i], path("dot.png")});
    const CommandResult run = spatiola(args);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const auto picture = readPicture(path("dot.png"));
    ASSERT_NE(picture, nullptr);
    white[i] = whitePixelsAround(picture.get(), 355, 125, 16);
  }
  // Radius 5 against 10: about four times the area, less the number drawn on the dot.
  EXPECT_GT(white[0], 40);
  EXPECT_GT(white[1], 5 * white[0] / 2);
  EXPECT_LT(white[1], 5 * white[0]);
}
