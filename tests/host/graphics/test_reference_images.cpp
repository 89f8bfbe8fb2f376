// Whole pictures compared with reviewed reference PNGs, with a small per-channel tolerance for
// rasterizer rounding. To accept a deliberate change of the drawing, regenerate them with
//   SPATIOLA_UPDATE_REFERENCE_IMAGES=1 ./build/test_graphics
// and review the new files before committing. A mismatch leaves <name>.actual.png in the test's
// working directory.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/graphics/font.h"
#include "host/graphics/png_io.h"
#include "tests/host/graphics/graphics_test_support.h"
#include "tests/host/graphics/reference_png.h"

using namespace graphics;

namespace {

constexpr int kTolerancePerChannel = 3;

void drawEllipse(DAUB_IBitmap* bm, DAUB_pixel colour, float cx, float cy, float rx, float ry,
                 float angle, float alpha) {
  const float s = std::sin(angle), c = std::cos(angle);
  float px = 0, py = 0;
  for (int j = 0; j <= 64; ++j) {
    const float t = j * 6.2831854820251465f * 0.015625f;
    const float x = std::cos(t) * rx, y = std::sin(t) * ry;
    const float qx = cx + c * x - s * y, qy = cy - (s * x + c * y);
    if (j > 0) DAUB_Line(bm, px, py, qx, qy, colour, alpha, 0, true);
    px = qx;
    py = qy;
  }
}

// A room seen from above, drawn the way the editor's view draws it.
BitmapPtr drawSpaceScene() {
  BitmapPtr scene = newBitmap(200, 160, 0xFF202020);
  DAUB_IBitmap* bm = scene.get();
  DAUB_LineInt(bm, 0, 80, 200, 80, 0xFF707070, 1.0f, 0, false);
  DAUB_LineInt(bm, 100, 0, 100, 160, 0xFF707070, 1.0f, 0, false);
  DAUB_DrawRect(bm, 30, 20, 140, 120, 0xFF707070, 1.0f, 0);
  BitmapPtr icon = newBitmap(16, 16, 0x00000000);
  DAUB_DrawGlyph(icon.get(), 3, 5, 0xFFFFFF00, kSpeakerGlyph, 10, 6, 1.0f, 0);
  CairoFont label;
  label.SetTextColor(0xFFFFFF00);
  const int speakers[][2] = {{-1, 1}, {0, 1}, {1, 1}, {-1, -1}, {1, -1}};
  const char* names[] = {"L", "C", "R", "Ls", "Rs"};
  for (int i = 0; i < 5; ++i) {
    const int x = 100 + 70 * speakers[i][0], y = 80 - 60 * speakers[i][1];
    drawEllipse(bm, 0xFF484848, static_cast<float>(x), static_cast<float>(y), 28, 24, 0, 1.0f);
    const double angleRad = std::atan2(speakers[i][0], speakers[i][1]);
    DAUB_RotatedBlit(bm, icon.get(), x - 8, y - 8, 16, 16, 0, 0, 16, 16,
                     static_cast<float>(angleRad), false, 1.0f, 0x10100, 0, 0);
    const int lx = x + (speakers[i][0] >= 0 ? 12 : -12);
    RECT rect{lx - 5, y - 5, lx + 5, y + 5};
    label.DrawText(bm, names[i], -1, &rect, speakers[i][0] < 0 ? 0x126 : 0x124);
  }
  drawEllipse(bm, 0xFFFF4040, 70, 60, 30, 14, static_cast<float>(M_PI / 6), 0.5f);
  DAUB_LineInt(bm, 70, 60, 64, 52, 0xFFFF4040, 0.5f, 0, true);
  DAUB_FillCircle(bm, 64, 52, 5, 0xFFFF4040, 0.5f, 0, true);
  DAUB_LineInt(bm, 122, 100, 138, 100, 0xFF32CD32, 1.0f, 0, false);
  DAUB_LineInt(bm, 130, 92, 130, 108, 0xFF32CD32, 1.0f, 0, false);
  DAUB_FillCircle(bm, 130, 100, 5, 0xFF32CD32, 1.0f, 0, true);
  label.SetTextColor(0xFF000000);
  RECT number{129, 100, 130, 101};
  label.DrawText(bm, "2", -1, &number, 0x125);
  DAUB_FillRect(bm, 110, 30, 50, 30, 0xFF406070, 0.125f, DAUB_BLIT_MODE_ADD);
  DAUB_DrawRect(bm, 110, 30, 50, 30, 0xFF406070, 1.0f, 0);
  return scene;
}

// Label text at the sizes the editor uses: 12 px, its 150 % (18 px) and the bold 11 px face.
BitmapPtr drawLabels() {
  BitmapPtr labels = newBitmap(120, 60, 0xFF202020);
  DAUB_LineInt(labels.get(), 60, 0, 60, 59, 0xFF707070, 1.0f, 0, false);  // the anchor
  const int heights[] = {12, 18, 11}, weights[] = {400, 400, 700};
  for (int i = 0; i < 3; ++i) {
    auto font = newFont(heights[i], weights[i]);
    font->SetTextColor(0xFFC0C0C0);
    RECT rect{60, 20 * i, 60, 20 * i + 20};
    font->DrawText(labels.get(), "Front 1", -1, &rect, 0x126);
    font->DrawText(labels.get(), "Rear", -1, &rect, 0x124);
  }
  return labels;
}

void expectMatchesReference(DAUB_IBitmap* actual, const std::string& name) {
  expectMatchesReferencePng(actual, GRAPHICS_REFERENCE_DIR, name, kTolerancePerChannel);
}

}  // namespace

TEST(ReferenceImages, SpaceScene) {
  expectMatchesReference(drawSpaceScene().get(), "space_scene");
}

TEST(ReferenceImages, Labels) {
  expectMatchesReference(drawLabels().get(), "labels");
}
