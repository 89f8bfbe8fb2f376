// The room picture drawn through the inline view into Cairo host bitmaps, probed at computed
// places. Geometry of the default 200 x 160 bitmap at zoom 0.48: centre (100, 80), 96 x 76.8 px per
// model unit, so an input at (0.5, 0.5) sits at (148, 42) and one at (-0.5, -0.5) at (52, 118).
#include "tests/editor/picture_fixture.h"

namespace {

bool bright(DAUB_pixel p) {
  return red(p) > 0x80 && green(p) > 0x80;
}
bool yellowish(DAUB_pixel p) {
  return red(p) > 0x80 && green(p) > 0x80 && blue(p) < 0x60;
}
int countYellow(const BitmapPtr& bitmap, int left, int top, int right, int bottom) {
  int count = 0;
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x)
      count += yellowish(graphics::DAUB_GetPixel(bitmap.get(), x, y));
  }
  return count;
}

using RoomPicture = PictureTest;

TEST_F(RoomPicture, EmptyRoomShowsBackgroundAxesAndOutline) {
  const BitmapPtr bitmap = paint();
  EXPECT_EQ(at(bitmap, 10, 10), kBackground);
  EXPECT_EQ(at(bitmap, 30, 80), kRoomGrey);   // across
  EXPECT_EQ(at(bitmap, 100, 20), kRoomGrey);  // depth
  // Outline through (4, 3) and (196, 157): 96 and round(76.8) px from the centre.
  EXPECT_EQ(at(bitmap, 4, 40), kRoomGrey);
  EXPECT_EQ(at(bitmap, 196, 40), kRoomGrey);
  EXPECT_EQ(at(bitmap, 40, 3), kRoomGrey);
  EXPECT_EQ(at(bitmap, 40, 157), kRoomGrey);
  EXPECT_EQ(at(bitmap, 5, 40), kBackground);
}

TEST_F(RoomPicture, RoomOutlineFollowsTheRoomSize) {
  plugin.spaceScaleX = 0.5;
  plugin.spaceScaleY = 0.25;
  const BitmapPtr bitmap = paint();
  EXPECT_EQ(at(bitmap, 52, 70), kRoomGrey);  // 100 - 48
  EXPECT_EQ(at(bitmap, 60, 61), kRoomGrey);  // 80 - round(19.2)
  EXPECT_EQ(at(bitmap, 4, 70), kBackground);
}

TEST_F(RoomPicture, InputDotsTakePaletteColoursAndDimWhenMutedOrNotSoloed) {
  const struct {
    const char* scene;
    bool mute;
    bool soloOther;
    bool soloSelf;
    double alpha;
  } cases[] = {{"plain", false, false, false, 1.0},
               {"muted", true, false, false, 0.5},
               {"another input soloed", false, true, false, 0.5},
               {"soloed itself", false, true, true, 1.0},
               {"muted and soloed", true, true, true, 0.5}};
  for (const auto& c : cases) {
    counts(3, 0);
    copyChannelName(place(1, -0.5, 0.5).name, "b");
    place(1, -0.5, 0.5).mute = c.mute;
    place(1, -0.5, 0.5).solo = c.soloSelf;
    place(0, 0.5, 0.5).solo = 0;
    place(2, 0.5, -0.5).solo = c.soloOther;
    const BitmapPtr bitmap = paint();
    EXPECT_TRUE(near(at(bitmap, 52 + 3, 42), over(0xFFFF4040, c.alpha), 3))
        << c.scene << std::hex << " " << at(bitmap, 55, 42);
    EXPECT_TRUE(near(at(bitmap, 52, 42 + 3), over(0xFFFF4040, c.alpha), 3)) << c.scene;
  }
}

TEST_F(RoomPicture, NineInputsCycleThroughEightColours) {
  counts(9, 0);
  const double spots[9][2] = {{-0.5, 0.5}, {0.0, 0.5},   {0.5, 0.5},  {-0.5, 0.0}, {0.25, 0.25},
                              {0.5, 0.0},  {-0.5, -0.5}, {0.0, -0.5}, {0.5, -0.5}};
  for (int i = 0; i < 9; ++i) {
    copyChannelName(place(i, spots[i][0], spots[i][1]).name, "x");
  }
  const BitmapPtr bitmap = paint();
  const ViewGeometry view = viewGeometry(plugin, 200, 160);
  for (int i = 0; i < 9; ++i) {
    const ViewPoint p = projectInput(view, plugin, plugin.inputs[i]).raised;
    EXPECT_TRUE(near(at(bitmap, p.x - 3, p.y + 2), inputPalette[i & 7], 3)) << i;
  }
  EXPECT_EQ(inputPalette[0], 0xFFFFFFFFu);
  EXPECT_TRUE(near(at(bitmap, 148 - 3, 118 + 2), 0xFFFFFFFF, 3));  // input 8 like input 0
}

TEST_F(RoomPicture, DiffusionEllipseFollowsLevelBiasAndAngle) {
  // Input 0 (white) at (52, 42); diffusion 0.25 spans 24 px across and 19.2 px in depth.
  const struct {
    const char* scene;
    double bias;
    double angle;
    ViewPoint onEllipse;
    ViewPoint offEllipse;
  } cases[] = {{"plain", 0.0, 0.0, {76, 42}, {52, 30}},
               {"bias narrows across", 0.5, 0.0, {64, 42}, {76, 42}},
               {"bias narrows depth", -0.5, 0.0, {76, 42}, {52, 23}},
               {"quarter turn", 0.0, 0.5, {52, 18}, {76, 42}}};
  for (const auto& c : cases) {
    counts(1, 0);
    InputChannel& input = place(0, -0.5, 0.5);
    input.diffuse = 0.25;
    input.diffuseBias = c.bias;
    input.diffuseAngle = c.angle;
    const BitmapPtr bitmap = paint();
    EXPECT_TRUE(bright(at(bitmap, c.onEllipse.x, c.onEllipse.y))) << c.scene;
    EXPECT_EQ(at(bitmap, c.offEllipse.x, c.offEllipse.y), kBackground) << c.scene;
  }
}

TEST_F(RoomPicture, HeightShiftsTheDotAlongTheLineFromTheCentreWithAStalk) {
  // z = 1 lifts by a quarter: (148, 42) moves by (round(9.6), round(-9.5)) to (158, 32); z = -1
  // moves it inwards to (138, 52). The diffusion grows and shrinks by the same factor.
  const struct {
    double z;
    ViewPoint dot;
    ViewPoint stalk;  // on the line x + y = 190 from the floor position
    int ellipseRightX;
  } cases[] = {{1.0, {158, 32}, {153, 37}, 158 + 30}, {-1.0, {138, 52}, {145, 45}, 138 + 18}};
  for (const auto& c : cases) {
    counts(1, 0);
    InputChannel& input = place(0, 0.5, 0.5, c.z);
    copyChannelName(input.name, "a");
    input.diffuse = 0.25;
    const BitmapPtr bitmap = paint();
    EXPECT_TRUE(near(at(bitmap, c.dot.x - 3, c.dot.y), 0xFFFFFFFF, 3)) << c.z;
    EXPECT_TRUE(bright(at(bitmap, c.stalk.x, c.stalk.y))) << c.z;
    EXPECT_TRUE(bright(at(bitmap, c.ellipseRightX, c.dot.y))) << c.z;
  }
  counts(1, 0);
  place(0, 0.5, 0.5, 0.0);
  const BitmapPtr flat = paint();
  EXPECT_EQ(at(flat, 153, 37), kBackground);  // no stalk on the floor
  EXPECT_EQ(at(flat, 155, 32), kBackground);
}

TEST_F(RoomPicture, SelectionMarksArePlusOrCrossForReverse) {
  counts(2, 0);
  InputChannel& plain = place(0, 0.5, 0.5);
  copyChannelName(plain.name, "a");
  plain.selected = 1;
  InputChannel& reversed = place(1, -0.5, -0.5);
  reversed.selected = 1;
  reversed.reverse = 1;
  const BitmapPtr bitmap = paint();
  EXPECT_TRUE(near(at(bitmap, 140, 42), 0xFFFFFFFF, 3));  // plus ends 8 px out
  EXPECT_TRUE(near(at(bitmap, 148, 50), 0xFFFFFFFF, 3));
  EXPECT_EQ(at(bitmap, 141, 49), kBackground);
  EXPECT_GT(red(at(bitmap, 45, 111)), 0x80);  // cross ends 7 px out on the diagonals
  EXPECT_GT(red(at(bitmap, 59, 125)), 0x80);
  EXPECT_EQ(at(bitmap, 44, 118), kBackground);
}

TEST_F(RoomPicture, InputLabelsStandBesideTheFloorPositionOrNumbersFillTheDot) {
  counts(2, 0);
  copyChannelName(place(0, 0.5, 0.5, 1.0).name, "Vox");  // dot raised to (158, 32)
  place(1, -0.5, -0.5);                                  // "channel 2"
  const BitmapPtr bitmap = paint();
  const DAUB_pixel label = 0xFFC0C0C0;
  EXPECT_GT(countNear(bitmap.get(), 164, 37, 195, 47, label, 0x30), 5);  // beside the floor
  EXPECT_EQ(countNear(bitmap.get(), 164, 26, 195, 36, label, 0x30), 0);
  EXPECT_EQ(countNear(bitmap.get(), 5, 110, 45, 126, label, 0x30), 0);
  EXPECT_GT(countNear(bitmap.get(), 49, 115, 55, 121, 0xFF000000, 0x40), 3);  // "2"
  EXPECT_EQ(countNear(bitmap.get(), 155, 29, 161, 35, 0xFF000000, 0x40), 0);
}

TEST_F(RoomPicture, LeftHandInputLabelsAreRightAligned) {
  counts(1, 0);
  copyChannelName(place(0, -0.5, 0.5).name, "Pad");
  const BitmapPtr bitmap = paint();
  EXPECT_GT(countNear(bitmap.get(), 10, 36, 43, 48, 0xFFC0C0C0, 0x30), 5);
  EXPECT_EQ(countNear(bitmap.get(), 58, 36, 90, 48, 0xFFC0C0C0, 0x30), 0);
}

TEST_F(RoomPicture, SpeakerIconsTurnTheirWideEndTowardsTheCentre) {
  counts(0, 4);
  placeSpeaker(0, "f", 0.0, 0.5);   // (100, 42)
  placeSpeaker(1, "b", 0.0, -0.5);  // (100, 118)
  placeSpeaker(2, "r", 0.5, 0.0);   // (148, 80)
  placeSpeaker(3, "l", -0.5, 0.0);  // (52, 80)
  plugin.layoutPreset = 2;          // a preset: no labels
  const BitmapPtr bitmap = paint();
  EXPECT_GT(countYellow(bitmap, 92, 42, 107, 49), countYellow(bitmap, 92, 34, 107, 41) + 6);
  EXPECT_GT(countYellow(bitmap, 92, 110, 107, 117), countYellow(bitmap, 92, 118, 107, 125) + 6);
  EXPECT_GT(countYellow(bitmap, 140, 72, 147, 87), countYellow(bitmap, 148, 72, 155, 87) + 6);
  EXPECT_GT(countYellow(bitmap, 52, 72, 59, 87), countYellow(bitmap, 44, 72, 51, 87) + 6);
}

TEST_F(RoomPicture, MutedOrUnsoloedSpeakersUseTheDimmedIcon) {
  counts(0, 3);
  placeSpeaker(0, "a", 0.0, 0.5).mute = 1;
  placeSpeaker(1, "b", 0.5, 0.0);
  placeSpeaker(2, "c", -0.5, 0.0).solo = 1;
  plugin.layoutPreset = 2;
  const BitmapPtr bitmap = paint();
  const DAUB_pixel dimmed = 0xFF808000;
  EXPECT_GT(countNear(bitmap.get(), 92, 34, 107, 49, dimmed, 0x10), 10);
  EXPECT_GT(countNear(bitmap.get(), 140, 72, 155, 87, dimmed, 0x10), 10);
  EXPECT_EQ(countYellow(bitmap, 140, 72, 155, 87), 0);
  EXPECT_GT(countYellow(bitmap, 44, 72, 59, 87), 10);
}

TEST_F(RoomPicture, RaisedSpeakersStandOnAStalkAndShowAnInfluenceCircle) {
  counts(0, 1);
  Speaker& speaker = placeSpeaker(0, "h", 0.5, 0.5, 1.0);  // floor (148, 42), raised (158, 32)
  speaker.influence = 0.25;
  plugin.layoutPreset = 2;
  const BitmapPtr bitmap = paint();
  EXPECT_TRUE(yellowish(at(bitmap, 149, 41)));
  EXPECT_GT(countYellow(bitmap, 150, 24, 165, 39), 20);
  // Influence circle: 0.25 * 1.25 * 96 = 30 px across from the raised position.
  EXPECT_TRUE(near(at(bitmap, 188, 32), 0xFF484848, 0x18));
}

TEST_F(RoomPicture, DraggedSpeakerShowsACrosshairOnTheFloor) {
  counts(0, 1);
  placeSpeaker(0, "d", -0.5, -0.5);  // (52, 118)
  plugin.layoutPreset = 2;
  plugin.dragSpeaker = 0;
  const BitmapPtr bitmap = paint();
  EXPECT_TRUE(yellowish(at(bitmap, 46, 118)));
  EXPECT_TRUE(yellowish(at(bitmap, 52, 124)));
  plugin.dragSpeaker = -1;
  const BitmapPtr idle = paint();
  EXPECT_FALSE(yellowish(at(idle, 46, 118)));
}

TEST_F(RoomPicture, SpeakerLabelsOnlyForAUserSetupAndWithoutTheWordSpeaker) {
  counts(0, 2);
  placeSpeaker(0, "speaker A", 0.5, 0.5);  // (148, 42): label to the right
  placeSpeaker(1, "Rear", -0.5, -0.5);     // (52, 118): label to the left
  plugin.layoutPreset = 0;
  const BitmapPtr user = paint();
  EXPECT_GT(countYellow(user, 157, 36, 172, 48), 5);
  EXPECT_EQ(countYellow(user, 173, 36, 199, 48), 0);  // "A", not "speaker A"
  EXPECT_GT(countYellow(user, 10, 112, 43, 124), 5);
  EXPECT_EQ(countYellow(user, 61, 112, 90, 124), 0);
  plugin.layoutPreset = 2;
  const BitmapPtr preset = paint();
  EXPECT_EQ(countYellow(preset, 157, 36, 199, 48), 0);
  EXPECT_EQ(countYellow(preset, 10, 112, 43, 124), 0);
}

TEST_F(RoomPicture, LfeSpeakersAreDrawnNowhere) {
  counts(0, 1);
  placeSpeaker(0, "LFE", 0.5, 0.5).isLfe = 1;
  const BitmapPtr bitmap = paint();
  EXPECT_EQ(countYellow(bitmap, 0, 0, 199, 159), 0);
  EXPECT_EQ(countNear(bitmap.get(), 0, 0, 199, 159, 0xFF484848, 4), 0);
}

TEST_F(RoomPicture, SelectionBandIsAnAdditiveFillWithAnOutline) {
  plugin.bandActive = 1;
  const std::int32_t band[4] = {60, 20, 20, 50};
  std::copy(band, band + 4, plugin.bandRect);
  const BitmapPtr bitmap = paint();
  EXPECT_TRUE(near(at(bitmap, 30, 30), 0xFF282C2E, 1));  // 0x20 + 0x406070 / 8
  EXPECT_EQ(at(bitmap, 20, 30), 0xFF406070u);
  EXPECT_EQ(at(bitmap, 60, 30), 0xFF406070u);
  EXPECT_EQ(at(bitmap, 40, 50), 0xFF406070u);
  EXPECT_EQ(at(bitmap, 61, 30), kBackground);
  plugin.bandActive = 0;
  EXPECT_EQ(at(paint(), 30, 30), kBackground);
}

TEST_F(RoomPicture, DpiScaleSizesDotsAndLabelOffsets) {
  const struct {
    int scale256;
    int radius;
  } cases[] = {{0, 5}, {256, 5}, {384, 7}, {512, 10}};
  for (const auto& c : cases) {
    counts(1, 0);
    copyChannelName(place(0, 0.5, 0.5).name, "a");
    const BitmapPtr bitmap = paint(200, 160, c.scale256);
    EXPECT_TRUE(near(at(bitmap, 148 - c.radius, 42), 0xFFFFFFFF, 0x30)) << c.scale256;
    EXPECT_EQ(at(bitmap, 148 - c.radius - 2, 42), kBackground) << c.scale256;
    EXPECT_EQ(plugin.inlineScale, c.scale256 == 0 ? 256 : c.scale256);
  }
}

TEST_F(RoomPicture, NothingIsDrawnWithoutAFrontOrWithoutChanges) {
  BitmapPtr bitmap = newBitmap(50, 40, 0xFF000000);
  renderSpace(plugin, bitmap.get(), nullptr, kChangeLevels | kChangeEditor);
  EXPECT_EQ(at(bitmap, 10, 10), 0xFF000000u);
  renderSpace(plugin, nullptr, bitmap.get(), kChangeInputs);
  EXPECT_EQ(at(bitmap, 10, 10), 0xFF000000u);
  renderSpace(plugin, bitmap.get(), nullptr, kChangeInputs);  // one layer of the same size
  EXPECT_EQ(at(bitmap, 10, 10), 0xFF000000u);
  renderSpace(plugin, bitmap.get(), nullptr, kChangeSpeakers);
  EXPECT_EQ(at(bitmap, 10, 10), kBackground);
}

TEST_F(RoomPicture, BackLayerIsKeptUntilSpeakersChangeOrItsSizeDiffers) {
  BitmapPtr front = newBitmap(200, 160);
  BitmapPtr back = newBitmap(200, 160, 0xFF0000FF);  // marks a layer that was never redrawn
  renderSpace(plugin, front.get(), back.get(), kChangeInputs);
  EXPECT_EQ(at(front, 10, 10), 0xFF0000FFu);
  renderSpace(plugin, front.get(), back.get(), kChangeSpeakers);
  EXPECT_EQ(at(front, 10, 10), kBackground);
  BitmapPtr small = newBitmap(20, 20, 0xFF0000FF);
  renderSpace(plugin, front.get(), small.get(), kChangeInputs);
  EXPECT_EQ(small->getWidth(), 200);
  EXPECT_EQ(at(front, 10, 10), kBackground);
}

}  // namespace

namespace {

using InlinePaint = PictureTest;

TEST_F(InlinePaint, APollingPaintDrawsOnlyWhenThePictureChanged) {
  counts(1, 0);
  plugin.changeFlags = 0;
  plugin.inlineRedraw = 0;
  BitmapPtr bitmap = newBitmap(60, 40, 0xFF000000);
  EXPECT_EQ(paintInto(bitmap.get(), 1), 0);
  EXPECT_EQ(at(bitmap, 10, 10), 0xFF000000u);  // the host keeps its picture
  plugin.changeFlags |= kChangeInputs;
  EXPECT_EQ(paintInto(bitmap.get(), 1), 1);
  EXPECT_EQ(at(bitmap, 10, 10), kBackground);
  EXPECT_EQ(plugin.changeFlags.load(), kChangeInputs);  // the editor clears it, not the inline view
  plugin.changeFlags = 0;
  EXPECT_EQ(paintInto(bitmap.get(), 1), 0);
  EXPECT_EQ(paintInto(bitmap.get(), 0), 1);  // without the flag every paint draws
}

TEST_F(InlinePaint, AfterTheEditorConsumedTheChangeThePollStillDrawsOnce) {
  plugin.changeFlags = 0;
  plugin.inlineRedraw = 1;  // what the editor's paint leaves behind
  BitmapPtr bitmap = newBitmap(60, 40, 0xFF000000);
  EXPECT_EQ(paintInto(bitmap.get(), 1), 1);
  EXPECT_EQ(plugin.inlineRedraw.load(), 0);
  EXPECT_EQ(paintInto(bitmap.get(), 1), 0);
}

TEST_F(InlinePaint, NeedsABitmapAndABlock) {
  unsigned char block[40] = {};
  BitmapPtr bitmap = newBitmap(60, 40, 0xFF000000);
  const float paintMessage = static_cast<float>(WM_PAINT);
  EXPECT_EQ(dispatcher(&plugin.effect, effVendorSpecific, 16, 0, block, paintMessage), 0);
  EXPECT_EQ(dispatcher(&plugin.effect, effVendorSpecific, 16,
                       reinterpret_cast<VstIntPtr>(bitmap.get()), nullptr, paintMessage),
            0);
  EXPECT_EQ(at(bitmap, 10, 10), 0xFF000000u);
}

}  // namespace

namespace {

using SharedDrawing = PictureTest;

TEST_F(SharedDrawing, TheFirstPaintMakesTheFontAndIconsAndTheLastInstanceDropsThem) {
  releaseSharedDrawingResources();
  EXPECT_EQ(labelFont, nullptr);
  paint(40, 30);
  ASSERT_NE(labelFont, nullptr);
  ASSERT_NE(speakerIcons[0], nullptr);
  ASSERT_NE(speakerIcons[1], nullptr);
  EXPECT_EQ(labelFont->logFont.lfHeight, 12);
  const struct {
    int icon;
    DAUB_pixel color;
  } cases[] = {{kSpeakerIconActive, 0xFFFFFF00}, {kSpeakerIconDimmed, 0xFF808000}};
  for (const auto& c : cases) {
    DAUB_IBitmap* icon = speakerIcons[c.icon];
    EXPECT_EQ(icon->getWidth(), 16);
    EXPECT_EQ(graphics::DAUB_GetPixel(icon, 6, 5), c.color);     // glyph (3, 0)
    EXPECT_EQ(graphics::DAUB_GetPixel(icon, 3, 10), c.color);    // glyph (0, 5)
    EXPECT_EQ(alphaOf(graphics::DAUB_GetPixel(icon, 5, 5)), 0);  // glyph (2, 0) is clear
    EXPECT_EQ(alphaOf(graphics::DAUB_GetPixel(icon, 0, 0)), 0);
  }
  DAUB_IBitmap* const madeIcon = speakerIcons[0];
  paint(40, 30);
  EXPECT_EQ(speakerIcons[0], madeIcon);  // made once per process
  sharedBoldFont();
  releaseSharedDrawingResources();
  EXPECT_EQ(labelFont, nullptr);
  EXPECT_EQ(boldFont, nullptr);
  EXPECT_EQ(speakerIcons[0], nullptr);
  EXPECT_EQ(speakerIcons[1], nullptr);
}

}  // namespace
