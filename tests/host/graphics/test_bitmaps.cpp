// Bitmap objects and null-bitmap safety.
#include <gtest/gtest.h>

#include "host/graphics/bitmap.h"
#include "tests/host/graphics/graphics_test_support.h"

using namespace graphics;

// Plug-ins read the advisory scale through the snapshot command; here what they cannot rely on.
TEST(BitmapObject, ContextFindsItsBitmapResizeKeepsTheTopLeftScaleIsReadAtTheCall) {
  BitmapPtr bitmap(DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, 3, 2));
  const HDC dc = bitmap->getDC();
  EXPECT_EQ(bitmapFromDC(dc), bitmap.get());
  EXPECT_EQ(DAUB_GetPixel(bitmap.get(), 2, 1), 0u) << "starts transparent";
  DAUB_Clear(bitmap.get(), 0xFF102030);
  ASSERT_TRUE(bitmap->resize(5, 4));
  EXPECT_FALSE(bitmap->resize(-2, 4));
  EXPECT_EQ(std::pair(DAUB_GetPixel(bitmap.get(), 2, 1), DAUB_GetPixel(bitmap.get(), 3, 1)),
            std::pair(0xFF102030u, 0u));
  int scale256 = 384;
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &scale256), 1);
  scale256 = 999;  // not kept by pointer
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_GET_EFFECTIVE_SCALE, nullptr), 384);
  EXPECT_EQ(bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, nullptr), 0) << "null data is refused";
  bitmap.reset();
  EXPECT_EQ(bitmapFromDC(dc), nullptr);
  EXPECT_EQ(DAUB_CreateBitmap(0, 5, kMaxBitmapSide + 1), nullptr);
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

// Representative of every drawing function: they share one guard.
TEST(NullBitmaps, DrawingIgnoresNullAndForeignBitmaps) {
  ForeignBitmap foreign;
  BitmapPtr real = newBitmap(4, 4);
  DAUB_IBitmap* r = real.get();
  for (DAUB_IBitmap* bm :
       {static_cast<DAUB_IBitmap*>(nullptr), static_cast<DAUB_IBitmap*>(&foreign)}) {
    EXPECT_EQ(DAUB_GetPixel(bm, 0, 0), 0u);
    DAUB_FillRect(bm, 0, 0, 2, 2, 0xFFFFFFFF, 1, 0);
    DAUB_Blit(r, bm, 0, 0, 0, 0, 2, 2, 1, 0);
    DAUB_RotatedBlit(r, bm, 0, 0, 4, 4, 0, 0, 4, 4, 1, false, 1, 0x10100, 0, 0);
    DAUB_DrawText(bm, 0, 0, "x", 0xFFFFFFFF, 1, 0);
  }
  EXPECT_EQ(inkBox(r).count, 0);
}
