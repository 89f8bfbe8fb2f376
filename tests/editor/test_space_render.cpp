// The room picture drawn through the inline view into Cairo host bitmaps: whole pictures compared
// with reviewed reference PNGs (regenerate with SPATIOLA_UPDATE_REFERENCE_IMAGES=1, review the
// files in tests/editor/reference/; a mismatch leaves <name>.actual.png), and probes at computed
// places for what they do not show. Geometry of the default 200 x 160 bitmap at zoom 0.48: centre
// (100, 80), 96 x 76.8 px per model unit, so an input at (0.5, 0.5) sits at (148, 42) and one at
// (-0.5, -0.5) at (52, 118).
#include <memory>
#include <vector>

#include "host/graphics/font.h"
#include "host/graphics/png_io.h"
#include "tests/editor/picture_fixture.h"
#include "tests/host/graphics/reference_png.h"

namespace {

constexpr DAUB_pixel kYellow = 0xFFFFFF00;

using RoomPicture = PictureTest;

TEST_F(RoomPicture, UnsoloedSpeakersUseTheDimmedIconAndLfeSpeakersAreNotDrawn) {
  counts(0, 3);
  placeSpeaker(0, "b", 0.5, 0.0);            // (148, 80)
  placeSpeaker(1, "c", -0.5, 0.0).solo = 1;  // (52, 80)
  placeSpeaker(2, "LFE", 0.0, 0.5).isLfe = 1;
  plugin.model.layoutPreset = 2;
  const BitmapPtr bitmap = paint();
  EXPECT_GT(countNear(bitmap.get(), 140, 72, 155, 87, 0xFF808000, 0x10), 10);
  EXPECT_EQ(countNear(bitmap.get(), 140, 72, 155, 87, kYellow, 0x60), 0);
  EXPECT_GT(countNear(bitmap.get(), 44, 72, 59, 87, kYellow, 0x60), 10);
  EXPECT_EQ(countNear(bitmap.get(), 80, 20, 120, 60, kYellow, 0x60), 0);
  EXPECT_EQ(countNear(bitmap.get(), 80, 20, 120, 60, 0xFF808000, 0x10), 0);
}

TEST_F(RoomPicture, SelectionBandIsAnAdditiveFillWithAnOutline) {
  plugin.view.bandActive = 1;
  const std::int32_t band[4] = {60, 20, 20, 50};
  std::copy(band, band + 4, plugin.view.bandRect);
  const BitmapPtr bitmap = paint();
  EXPECT_TRUE(near(at(bitmap, 30, 30), 0xFF282C2E, 1));  // 0x20 + 0x406070 / 8
  EXPECT_EQ(at(bitmap, 20, 30), 0xFF406070u);
  EXPECT_EQ(at(bitmap, 40, 50), 0xFF406070u);
  EXPECT_EQ(at(bitmap, 61, 30), kBackground);
  plugin.view.bandActive = 0;
  EXPECT_EQ(at(paint(), 30, 30), kBackground);
}

TEST_F(RoomPicture, TheBackLayerIsRedrawnOnlyForSpeakerChangesOrANewSize) {
  BitmapPtr front = newBitmap(200, 160);
  BitmapPtr back = newBitmap(200, 160, 0xFF0000FF);  // marks a layer that was never redrawn
  renderSpace(plugin, front.get(), back.get(), kChangeLevels | kChangeEditor);
  EXPECT_EQ(at(front, 10, 10), 0xFF000000u);  // nothing of the picture changed
  renderSpace(plugin, nullptr, back.get(), kChangeSpeakers);
  renderSpace(plugin, front.get(), back.get(), kChangeInputs);
  EXPECT_EQ(at(front, 10, 10), 0xFF0000FFu);
  renderSpace(plugin, front.get(), back.get(), kChangeSpeakers);
  EXPECT_EQ(at(front, 10, 10), kBackground);
  BitmapPtr small = newBitmap(20, 20, 0xFF0000FF);
  renderSpace(plugin, front.get(), small.get(), kChangeInputs);
  EXPECT_EQ(small->getWidth(), 200);
  EXPECT_EQ(at(small, 10, 10), kBackground);
}

using InlinePaint = PictureTest;

TEST_F(InlinePaint, APollingPaintDrawsOnlyWhenThePictureChanged) {
  counts(1, 0);
  plugin.model.changeFlags = 0;
  plugin.view.inlineRedraw = 0;
  BitmapPtr bitmap = newBitmap(60, 40, 0xFF000000);
  EXPECT_EQ(paintInto(bitmap.get(), 1), 0);
  EXPECT_EQ(at(bitmap, 10, 10), 0xFF000000u);  // the host keeps its picture
  plugin.model.changeFlags |= kChangeInputs;
  EXPECT_EQ(paintInto(bitmap.get(), 1), 1);
  EXPECT_EQ(at(bitmap, 10, 10), kBackground);
  EXPECT_EQ(plugin.model.changeFlags.load(),
            kChangeInputs);  // the editor clears it, not the inline view
  plugin.model.changeFlags = 0;
  EXPECT_EQ(paintInto(bitmap.get(), 1), 0);
  EXPECT_EQ(paintInto(bitmap.get(), 0), 1);  // without the flag every paint draws
  plugin.view.inlineRedraw = 1;              // what the editor's paint leaves behind
  EXPECT_EQ(paintInto(bitmap.get(), 1), 1);
  EXPECT_EQ(plugin.view.inlineRedraw.load(), 0);
  EXPECT_EQ(paintInto(bitmap.get(), 1), 0);
}

// The view's font over the host's fonts: one per pixel height, four kept, the least recently used
// taken for a fifth; the wrapper's state reaches a host font when drawing, not when measuring.
class ViewFont : public PictureTest {
 protected:
  graphics::CairoFont* realize(int scale256, UINT drawFlags = 0) {
    BitmapPtr bitmap = newBitmap(40, 20);
    bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &scale256);
    RECT box{0, 0, 40, 20};
    if (drawFlags != 0) font->DrawText(bitmap.get(), "A", -1, &box, drawFlags);
    return dynamic_cast<graphics::CairoFont*>(font->realizeForBitmap(bitmap.get()));
  }
  static int heightOf(graphics::CairoFont* host) {
    return graphics::fontDescriptionOf(host->GetFontHandle())->height;
  }

  std::unique_ptr<dpiAwareFont> font{createViewFont(false)};
};

TEST_F(ViewFont, KeepsFourPixelHeightsAndReusesTheLeastRecentlyUsedForAFifth) {
  const struct {
    int scale256, height, flags;
  } sizes[] = {{0, 12, DAUB_FONT_FLAG_OWNS_HANDLE},
               {256, 12, DAUB_FONT_FLAG_OWNS_HANDLE},
               {300, 14, DAUB_FONT_FLAG_OWNS_HANDLE | DAUB_FONT_FLAG_SCALED},
               {384, 18, DAUB_FONT_FLAG_OWNS_HANDLE | DAUB_FONT_FLAG_SCALED},
               {512, 24, DAUB_FONT_FLAG_OWNS_HANDLE | DAUB_FONT_FLAG_SCALED}};
  std::vector<graphics::CairoFont*> hosts;
  for (const auto& size : sizes) {
    hosts.push_back(realize(size.scale256));
    EXPECT_EQ(heightOf(hosts.back()), size.height) << size.scale256;
    EXPECT_EQ(hosts.back()->attachFlags(), size.flags) << size.scale256;
  }
  EXPECT_EQ(hosts[1], hosts[0]);
  EXPECT_EQ(realize(256), hosts[0]) << "realised once, now the most recently used";
  EXPECT_EQ(realize(640), hosts[2]) << "14 px was the least recently used";
  EXPECT_EQ(heightOf(hosts[2]), 30);
  EXPECT_EQ(font->cacheEntry(0).height, 18);
}

TEST_F(ViewFont, DrawingCopiesTheWrappersStateAndChangedHostFlagsRealizeAgain) {
  font->SetTextColor(0xFF102030);
  font->SetLineGap(3);
  graphics::CairoFont* host = realize(256, DT_CALCRECT | DT_SINGLELINE);
  const int cellHeight = host->GetLineHeight();
  EXPECT_NE(host->GetTextColor(), 0xFF102030u);
  EXPECT_EQ(realize(256, DT_SINGLELINE)->GetTextColor(), 0xFF102030u);
  EXPECT_EQ(host->GetLineHeight(), cellHeight + 3);
  static std::uint32_t hostFlags = 4;  // bit 2 is not the font's business
  font->flagsCallback = [](int) { return hostFlags; };
  const HFONT handle = realize(256)->GetFontHandle();
  EXPECT_EQ(host->attachFlags(), DAUB_FONT_FLAG_OWNS_HANDLE);
  hostFlags = 0x10;
  EXPECT_EQ(realize(256), host);
  EXPECT_NE(host->GetFontHandle(), handle);
  EXPECT_EQ(host->attachFlags(), 0x10 | DAUB_FONT_FLAG_OWNS_HANDLE);
  hostApi.DAUB_CreateFont = nullptr;  // a host without fonts: lines ten high
  EXPECT_EQ(std::unique_ptr<dpiAwareFont>(createViewFont(false))->GetLineHeight(), 10);
  bindHostGraphics();
}

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
