// The whole editor compared with reviewed reference PNGs at 100 % and 150 %. To accept a deliberate
// change of the look, regenerate with
//   SPATIOLA_UPDATE_REFERENCE_IMAGES=1 ./build/test_editor_dialog --gtest_filter='EditorPictures*'
// and review the new files before committing. A mismatch leaves <name>.actual.png in the test's
// working directory.
#include <cmath>
#include <numbers>

#include "host/graphics/bitmap.h"
#include "host/graphics/png_io.h"
#include "model/layouts.h"
#include "tests/editor/editor_host.h"
#include "tests/host/graphics/reference_png.h"

namespace {

constexpr int kTolerancePerChannel = 8;

// Twelve inputs round a 7.1 room: names, a selection, mute, solo, reverse, diffusion, height and
// signal on a few meters.
void dressSurroundScene(PannerPlugin& p) {
  applyLayoutPreset(p, kLayoutSurround71);
  for (int i = 0; i < p.inputCount(); ++i) {
    InputChannel& input = p.model.inputs[i];
    const double angle = i * 2 * std::numbers::pi / 12;
    input.x = 0.7 * std::sin(angle);
    input.y = 0.7 * std::cos(angle);
    input.diffuse = i % 4 == 0 ? 0.25 : 0.0;
    input.gain = 1.0 / (1 + i % 3);
  }
  copyChannelName(p.model.inputs[0].name, "Lead vocal");
  p.model.inputs[1].z = 0.6;
  p.model.inputs[2].selected = 1;
  p.model.inputs[3].mute = 1;
  p.model.inputs[4].solo = 1;
  p.model.inputs[5].reverse = 1;
  p.model.speakers[1].mute = 1;
  p.model.centerTrim = 0.0;
  p.mix.inputPeaks[0] = 0.5;
  p.mix.inputPeaks[4] = 1.2;
  p.mix.speakerPeaks[2] = 0.05;
  p.model.changeFlags |= kChangeAll;
}

void expectMatchesReference(EditorHost& host, const std::string& name) {
  const std::unique_ptr<graphics::CairoBitmap> actual =
      host.system->render(host.system->find(host.dialog));
  expectMatchesReferencePng(actual.get(), EDITOR_REFERENCE_DIR, name, kTolerancePerChannel);
}

TEST(EditorPictures, MatchTheReferences) {
  struct Case {
    const char* name;
    int channels;
    int scale256;
    bool surround;
  };
  const Case cases[] = {{"editor_stereo_100", 2, 256, false},
                        {"editor_stereo_150", 2, 384, false},
                        {"editor_71_100", 12, 256, true},
                        {"editor_71_150", 12, 384, true}};
  for (const Case& c : cases) {
    EditorHost host(c.channels, c.scale256);
    ASSERT_NE(host.open(), nullptr);
    if (c.surround) dressSurroundScene(host.plugin());
    host.tick();
    expectMatchesReference(host, c.name);
  }
}

}  // namespace
