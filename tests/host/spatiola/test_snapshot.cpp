// spatiola snapshot: the inline view of a plug-in painted into a host bitmap and written as PNG at
// its size and scale. Its refusals are among the program's mistakes; Spatiola's room is pinned by
// the reference pictures.
#include <gtest/gtest.h>

#include <memory>

#include "host/graphics/drawing.h"
#include "host/graphics/png_io.h"
#include "tests/host/spatiola/command_fixture.h"

namespace {

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
