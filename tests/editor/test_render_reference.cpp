// Whole inline-view pictures compared with reviewed reference PNGs, with a small per-channel
// tolerance for rasterizer and font rounding. To accept a deliberate change of the drawing,
// regenerate them with
//   SPATIOLA_UPDATE_REFERENCE_IMAGES=1 ./build/tests/editor/test_space_render
// and review the new files in tests/editor/reference/ before committing. A mismatch leaves
// <name>.actual.png in the test's working directory.
#include <string>

#include "host/graphics/png_io.h"
#include "tests/editor/picture_fixture.h"
#include "tests/host/graphics/reference_png.h"

namespace {

constexpr int kTolerancePerChannel = 8;
constexpr int kAllowedDifferingPixels = 12;

class ReferencePicture : public PictureTest {
 protected:
  // Five speakers of a user setup (one raised, one muted) and four inputs showing every mark.
  void buildScene() {
    counts(4, 5);
    const struct {
      const char* name;
      double x, y, z;
    } speakers[] = {{"speaker L", -1, 1, 0},
                    {"C", 0, 1, 0},
                    {"R", 1, 1, 0.5},
                    {"Ls", -1, -1, 0},
                    {"Rs", 1, -1, 0}};
    for (int i = 0; i < 5; ++i) {
      placeSpeaker(i, speakers[i].name, speakers[i].x, speakers[i].y, speakers[i].z).influence =
          0.6;
    }
    plugin.model.speakers[3].mute = 1;
    plugin.model.layoutPreset = 0;
    plugin.view.zoom = 0.4;
    InputChannel& vox = place(0, -0.4, 0.3);
    copyChannelName(vox.name, "Vox");
    vox.diffuse = 0.3;
    vox.diffuseBias = 0.4;
    vox.diffuseAngle = 0.25;
    vox.selected = 1;
    place(1, 0.5, 0.2, 0.6).diffuse = 0.15;
    InputChannel& pad = place(2, 0.1, -0.5);
    pad.selected = 1;
    pad.reverse = 1;
    pad.mute = 1;
    place(3, -0.2, -0.2, -0.5);
  }

  void expectMatchesReference(DAUB_IBitmap* actual, const std::string& name) {
    expectMatchesReferencePng(actual, EDITOR_REFERENCE_DIR, name, kTolerancePerChannel,
                              kAllowedDifferingPixels);
  }
};

TEST_F(ReferencePicture, SceneAtOneAndTwoHundredPercent) {
  const struct {
    const char* name;
    int width, height, scale256, hitScale256;
  } cases[] = {{"room_100", 240, 180, 0, 256}, {"room_200", 480, 360, 512, 512}};
  for (const auto& c : cases) {
    buildScene();
    const BitmapPtr bitmap = paint(c.width, c.height, c.scale256);
    expectMatchesReference(bitmap.get(), c.name);
    EXPECT_EQ(plugin.view.inlineScale, c.hitScale256) << "the inline view's hit size follows";
  }
}

}  // namespace
