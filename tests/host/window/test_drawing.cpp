// What a plug-in's window procedure draws through the drawing-context names lands in the picture
// where Win32 would put it.
#include "host/graphics/bitmap.h"
#include "host/graphics/drawing.h"
#include "tests/host/window/window_test_support.h"

using namespace winsys;

namespace {

DAUB_IBitmap* sprite = nullptr;

// Paints like a plug-in view: a bitmap blitted and stretched, a brush, a pen, text.
LRESULT paintingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_PAINT) return bound<PlaskId::DefWindowProc>()(window, message, wParam, lParam);
  PAINTSTRUCT paint{};
  const HDC dc = bound<PlaskId::BeginPaint>()(window, &paint);
  bound<PlaskId::BitBlt>()(dc, 10, 10, 8, 8, sprite->getDC(), 0, 0, SRCCOPY);
  bound<PlaskId::StretchBlt>()(dc, 30, 10, 16, 16, sprite->getDC(), 0, 0, 8, 8, SRCCOPY);
  const HBRUSH brush = bound<PlaskId::CreateSolidBrush>()(rgb(0, 0, 255));
  const RECT fill{60, 10, 70, 20};
  bound<PlaskId::PLASK_FillRect>()(dc, &fill, brush);
  const HPEN pen = bound<PlaskId::CreatePen>()(PS_SOLID, 1, rgb(255, 255, 0));
  const HGDIOBJ oldPen = bound<PlaskId::SelectObject>()(dc, reinterpret_cast<HGDIOBJ>(pen));
  bound<PlaskId::SelectObject>()(dc, bound<PlaskId::GetStockObject>()(NULL_BRUSH));
  bound<PlaskId::Rectangle>()(dc, 80, 10, 90, 20);
  bound<PlaskId::SelectObject>()(dc, oldPen);
  bound<PlaskId::SetTextColor>()(dc, rgb(255, 255, 255));
  bound<PlaskId::SetBkMode>()(dc, TRANSPARENT);
  RECT text{10, 40, 100, 60};
  bound<PlaskId::PLASK_DrawText>()(dc, "Text", -1, &text, DT_SINGLELINE | DT_VCENTER);
  bound<PlaskId::EndPaint>()(window, &paint);
  bound<PlaskId::DeleteObject>()(reinterpret_cast<HGDIOBJ>(brush));
  bound<PlaskId::DeleteObject>()(reinterpret_cast<HGDIOBJ>(pen));
  return 0;
}

DAUB_pixel pixel(graphics::CairoBitmap& picture, int x, int y) {
  return graphics::DAUB_GetPixel(&picture, x, y);
}

}  // namespace

class Drawing : public WindowTest {};

TEST_F(Drawing, ContextsDrawWhereWin32Would) {
  std::unique_ptr<DAUB_IBitmap> bitmap(graphics::DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, 8, 8));
  sprite = bitmap.get();
  graphics::DAUB_Clear(sprite, 0xFFFF0000);
  graphics::DAUB_FillRect(sprite, 4, 4, 4, 4, 0xFF00FF00, 1.0f, 0);
  const HWND top = frame(120, 80);
  const HWND view = child(top, 0, {0, 0, 120, 80}, WS_VISIBLE, paintingProc);
  const auto picture = system->render(window(view));
  ASSERT_NE(picture, nullptr);
  struct Probe {
    int x, y;
    DAUB_pixel expected;
  };
  const Probe probes[] = {
      {10, 10, 0xFFFF0000}, {17, 17, 0xFF00FF00}, {18, 18, 0xFFECECEC},  // blit, 8 x 8 only
      {31, 11, 0xFFFF0000}, {44, 24, 0xFF00FF00},                        // stretched twice
      {60, 10, 0xFF0000FF}, {69, 19, 0xFF0000FF}, {70, 20, 0xFFECECEC},  // FillRect is half-open
      {80, 10, 0xFFFFFF00}, {89, 19, 0xFFFFFF00}, {85, 15, 0xFFECECEC},  // outline, null brush
  };
  for (const Probe& p : probes) {
    EXPECT_EQ(pixel(*picture, p.x, p.y), p.expected) << p.x << "," << p.y;
  }
  int white = 0;
  for (int y = 40; y < 60; ++y) {
    for (int x = 10; x < 60; ++x)
      white += (pixel(*picture, x, y) & 0xFF) > 0xF4 ? 1 : 0;  // brighter than the face
  }
  EXPECT_GT(white, 20) << "the text";
  // Handles of another kind or of nothing are refused.
  bound<PlaskId::BitBlt>()(reinterpret_cast<HDC>(&white), 0, 0, 5, 5, sprite->getDC(), 0, 0, 0);
  EXPECT_EQ(bound<PlaskId::GetDC>()(reinterpret_cast<HWND>(&white)), nullptr);
}
