// Bitmap objects, pixel access, the scale queries, the lookup tables and null-bitmap safety.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>

#include "host/graphics/bitmap.h"
#include "host/graphics/font.h"
#include "host/graphics/graphics_lookup.h"
#include "platform/host_functions.h"
#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

TEST(BitmapObject, KindOneHasAContextThatFindsItsBitmapUntilDeleted) {
  BitmapPtr memory(DAUB_CreateBitmap(DAUB_BITMAP_MEMORY, 4, 3));
  BitmapPtr withDC(DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, 4, 3));
  ASSERT_NE(memory, nullptr);
  ASSERT_NE(withDC, nullptr);
  EXPECT_EQ(memory->getDC(), nullptr);
  const HDC dc = withDC->getDC();
  ASSERT_NE(dc, nullptr);
  EXPECT_EQ(bitmapFromDC(dc), withDC.get());
  int notADC = 0;
  EXPECT_EQ(bitmapFromDC(reinterpret_cast<HDC>(&notADC)), nullptr);
  withDC.reset();
  EXPECT_EQ(bitmapFromDC(dc), nullptr);
}

TEST(BitmapObject, RefusesImpossibleSizes) {
  EXPECT_EQ(DAUB_CreateBitmap(0, -1, 5), nullptr);
  EXPECT_EQ(DAUB_CreateBitmap(0, 5, kMaxBitmapSide + 1), nullptr);
  BitmapPtr empty(DAUB_CreateBitmap(0, 0, 0));
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty->getWidth(), 0);
}

TEST(BitmapObject, StartsTransparentAndResizeKeepsTheTopLeft) {
  BitmapPtr bitmap(DAUB_CreateBitmap(0, 3, 2));
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 2, 1), 0u);
  DAUB_Clear(bitmap.get(), 0xFF102030);
  ASSERT_TRUE(bitmap->resize(5, 4));
  EXPECT_EQ(bitmap->getWidth(), 5);
  EXPECT_EQ(bitmap->getHeight(), 4);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 2, 1), 0xFF102030u);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 3, 1), 0u);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 3), 0u);
  EXPECT_FALSE(bitmap->resize(-2, 4));
  EXPECT_EQ(bitmap->getWidth(), 5);
}

TEST(BitmapObject, AdvisoryAndEffectiveScale) {
  BitmapPtr bitmap(DAUB_CreateBitmap(1, 8, 8));
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_GET_ADVISORY_SCALE, nullptr), 0);
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_GET_EFFECTIVE_SCALE, nullptr), 0);
  int scale256 = 384;
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &scale256), 1);
  scale256 = 999;  // read at the call, not kept by pointer
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_GET_ADVISORY_SCALE, nullptr), 384);
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_GET_EFFECTIVE_SCALE, nullptr), 384);
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, nullptr), 0);
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_GET_ADVISORY_SCALE, nullptr), 384);
  int none = 0;
  bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &none);
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_GET_ADVISORY_SCALE, nullptr), 0);
  EXPECT_EQ(bitmap->Extended(0x1234, &scale256), 0);
}

TEST(PixelAccess, ColoursAreNonPremultipliedAtTheInterface) {
  struct Case {
    DAUB_pixel colour, premultiplied;
  };
  for (const Case& c : {Case{0xFFFFFFFF, 0xFFFFFFFF}, Case{0x80FFFFFF, 0x80808080},
                        Case{0x80FF0000, 0x80800000}, Case{0x00123456, 0x00000000}}) {
    EXPECT_EQ(premultiply(c.colour), c.premultiplied) << std::hex << c.colour;
    if (alphaOf(c.colour) != 0) {
      EXPECT_EQ(unpremultiply(c.premultiplied), c.colour);
    }
    BitmapPtr bitmap = newBitmap(2, 2, 0x00000000);
    DAUB_PutPixel(bitmap.get(), 1, 0, c.colour, 1.0f, DAUB_BLIT_MODE_COPY);
    EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 1, 0), alphaOf(c.colour) ? c.colour : 0u);
    EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 0), 0u);
  }
}

TEST(PixelAccess, OutsideTheBitmapReadsZeroAndWritesNothing) {
  BitmapPtr bitmap = newBitmap(2, 2, 0xFF0000FF);
  DAUB_PutPixel(bitmap.get(), 2, 0, 0xFFFFFFFF, 1.0f, 0);
  DAUB_PutPixel(bitmap.get(), -1, 1, 0xFFFFFFFF, 1.0f, 0);
  EXPECT_EQ(inkBox(bitmap.get(), 0xFF0000FF).count, 0);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), -1, 0), 0u);
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 0, 2), 0u);
}

// Another library's bitmap: must be refused like a null one.
class ForeignBitmap final : public DAUB_IBitmap {
 public:
  int getWidth() override { return 10; }
  int getHeight() override { return 10; }
  bool resize(int, int) override { return false; }
  HDC getDC() override { return nullptr; }
  std::intptr_t Extended(int, void*) override { return 0; }
};

TEST(NullBitmaps, EveryFunctionIgnoresNullAndForeignBitmaps) {
  ForeignBitmap foreign;
  BitmapPtr real = newBitmap(4, 4);
  const int xs[] = {0, 3, 3}, ys[] = {0, 0, 3};
  const unsigned char glyph[1] = {255};
  for (DAUB_IBitmap* bm :
       {static_cast<DAUB_IBitmap*>(nullptr), static_cast<DAUB_IBitmap*>(&foreign)}) {
    EXPECT_EQ(DAUB_GetPixel(bm, 0, 0), 0u);
    DAUB_PutPixel(bm, 0, 0, ~0u, 1, 0);
    DAUB_LineInt(bm, 0, 0, 3, 3, ~0u, 1, 0, true);
    DAUB_Line(bm, 0, 0, 3, 3, ~0u, 1, 0, false);
    DAUB_ThickFLine(bm, 0, 0, 3, 3, ~0u, 1, 0, 2);
    DAUB_Circle(bm, 2, 2, 1, ~0u, 1, 0, true);
    DAUB_FillCircle(bm, 2, 2, 1, ~0u, 1, 0, true);
    DAUB_FillRect(bm, 0, 0, 2, 2, ~0u, 1, 0);
    DAUB_DrawRect(bm, 0, 0, 2, 2, ~0u, 1, 0);
    DAUB_BorderedRect(bm, 0, 0, 3, 3, ~0u, ~0u, 1, 0);
    DAUB_Clear(bm, ~0u);
    DAUB_Blit(bm, real.get(), 0, 0, 0, 0, 2, 2, 1, 0);
    DAUB_Blit(real.get(), bm, 0, 0, 0, 0, 2, 2, 1, 0);
    DAUB_RotatedBlit(bm, real.get(), 0, 0, 4, 4, 0, 0, 4, 4, 1, false, 1, 0x10100, 0, 0);
    DAUB_RotatedBlit(real.get(), bm, 0, 0, 4, 4, 0, 0, 4, 4, 1, false, 1, 0x10100, 0, 0);
    DAUB_ScaledBlit(real.get(), bm, 0, 0, 4, 4, 0, 0, 2, 2, 1, 0);
    DAUB_DrawGlyph(bm, 0, 0, ~0u, glyph, 1, 1, 1, 0);
    DAUB_FillTriangle(bm, 0, 0, 3, 0, 0, 3, ~0u, 1, 0);
    DAUB_Arc(bm, 2, 2, 2, 0, 3, ~0u, 1, 0, true);
    DAUB_FillTrapezoid(bm, 0, 2, 0, 0, 3, 3, ~0u, 1, 0);
    DAUB_FillConvexPolygon(bm, xs, ys, 3, ~0u, 1, 0);
    DAUB_Copy(bm, real.get());
    DAUB_Copy(real.get(), bm);
    DAUB_DrawText(bm, 0, 0, "x", ~0u, 1, 0);
  }
  EXPECT_EQ(inkBox(real.get()).count, 0);
  EXPECT_EQ(real->getWidth(), 4);
}

TEST(LookupTables, EveryDrawingNameOfTheHostListResolves) {
  int daubNames = 0;
#define CHECK_NAME(name, type)                                                   \
  if (std::strncmp(#name, "DAUB_", 5) == 0) {                                    \
    ++daubNames;                                                                 \
    EXPECT_NE(findGraphicsHostFunction(#name), nullptr) << #name;                \
  } else {                                                                       \
    EXPECT_EQ(findGraphicsHostFunction(#name), nullptr) << #name " is not ours"; \
  }
  HOST_FUNCTION_LIST(CHECK_NAME)
#undef CHECK_NAME
  EXPECT_EQ(daubNames, 24);
  EXPECT_EQ(findGraphicsHostFunction("DAUB_Clear"), reinterpret_cast<void*>(&DAUB_Clear));
  EXPECT_EQ(findGraphicsHostFunction(nullptr), nullptr);
  EXPECT_EQ(findGraphicsHostFunction("DAUB_clear"), nullptr);
}

TEST(LookupTables, WindowLayerFontFunctionsResolve) {
  EXPECT_EQ(findGraphicsWindowFunction("CreateFontIndirect"),
            reinterpret_cast<void*>(&graphics::CreateFontIndirect));
  EXPECT_EQ(findGraphicsWindowFunction("DeleteObject"),
            reinterpret_cast<void*>(&graphics::DeleteObject));
  EXPECT_EQ(findGraphicsWindowFunction("BitBlt"), nullptr);
}

TEST(LookupTables, FetchedCreateBitmapMakesUsableBitmaps) {
  auto create =
      reinterpret_cast<DAUB_CreateBitmapFn>(findGraphicsHostFunction("DAUB_CreateBitmap"));
  auto clear = reinterpret_cast<DAUB_ClearFn>(findGraphicsHostFunction("DAUB_Clear"));
  auto getPixel = reinterpret_cast<DAUB_GetPixelFn>(findGraphicsHostFunction("DAUB_GetPixel"));
  BitmapPtr bitmap(create(1, 3, 3));
  clear(bitmap.get(), 0xFF445566);
  EXPECT_EQ(getPixel(bitmap.get(), 2, 2), 0xFF445566u);
}
