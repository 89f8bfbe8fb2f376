// The whole editor compared with reviewed reference PNGs at 100 % and 150 %, and the space view
// inside it edited with the mouse. To accept a deliberate change of the look, regenerate with
//   SPATIOLA_UPDATE_REFERENCE_IMAGES=1 ./build/test_editor_dialog --gtest_filter='EditorPictures*'
// and review the new files before committing. A mismatch leaves <name>.actual.png in the test's
// working directory.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numbers>

#include "editor/view/space_projection.h"
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

// One mouse message of the inline view, at (x, y) of a view w x h.
void inlineMouse(EditorHost& host, int message, POINT p, int w, int h) {
  unsigned char block[40] = {};
  const std::int32_t fields[5] = {w, h, p.x, p.y, 0};
  std::memcpy(block + 20, fields, sizeof fields);
  host.effect->dispatcher(host.effect, effVendorSpecific, effEditDraw, 0, block,
                          static_cast<float>(message));
}

// A group drag in the editor's space view reports exactly what the same drag through the inline
// view reports; a double click then puts the input back at the centre.
TEST(EditorSpaceView, DragReportsWhatTheInlineViewReports) {
  constexpr int kSteps = 5;
  std::vector<Report> inEditor;
  POINT from{};
  POINT to{};
  RECT view{};
  {
    EditorHost host(3);
    host.open();
    host.tick();
    const HWND space = host.item(item::kSpaceView);
    view = host.system->find(space)->clientRect();
    PannerPlugin& p = host.plugin();
    p.model.inputs[0].selected = 1;
    p.model.inputs[1].selected = 1;
    const ViewGeometry geometry = viewGeometry(p, view.right, view.bottom);
    const ViewPoint grab = projectInput(geometry, p, p.model.inputs[1]).raised;
    from = {grab.x, grab.y};
    to = {from.x + 60, from.y - 45};
    host.driver->drag(space, from, to, 0, kSteps);
    inEditor = host.reports;
    host.reports.clear();
    const double otherX = p.model.inputs[0].x;
    host.driver->doubleClick(space, to);
    EXPECT_EQ(std::make_pair(p.model.inputs[1].x, p.model.inputs[1].y), std::make_pair(0.0, 0.0));
    EXPECT_EQ(p.model.inputs[0].x, otherX)
        << "its first click left the grabbed input selected alone";
    EXPECT_EQ(host.reports.size(), 4u) << "x and y, each ended";
  }
  EditorHost host(3);
  host.plugin().model.inputs[0].selected = 1;
  host.plugin().model.inputs[1].selected = 1;
  inlineMouse(host, WM_LBUTTONDOWN, from, view.right, view.bottom);
  for (int i = 1; i <= kSteps; ++i) {
    const POINT step{from.x + (to.x - from.x) * i / kSteps, from.y + (to.y - from.y) * i / kSteps};
    inlineMouse(host, WM_MOUSEMOVE, step, view.right, view.bottom);
  }
  inlineMouse(host, WM_MOUSEMOVE, to, view.right, view.bottom);
  inlineMouse(host, WM_LBUTTONUP, to, view.right, view.bottom);
  ASSERT_GT(inEditor.size(), 2u * 3 * kSteps);
  EXPECT_EQ(inEditor, host.reports);
}

}  // namespace
