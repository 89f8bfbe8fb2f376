// Drawing contexts, pens, brushes, text and blits; the system colours.
#include "host/graphics/font.h"
#include "host/window/api/api_support.h"
#include "host/window/controls/theme.h"
#include "host/window/gdi/gdi_draw.h"
#include "host/window/gdi/window_dc.h"

namespace winsys::api {

namespace {

GdiTable* table() {
  WindowSystem* current = system();
  return current != nullptr ? &current->gdi() : nullptr;
}

DeviceContext* context(HDC dc) {
  GdiTable* gdi = table();
  return gdi != nullptr ? gdi->find(dc) : nullptr;
}

void apiBitBlt(HDC to, int x, int y, int w, int h, HDC from, int sx, int sy, int /*mode*/) {
  if (GdiTable* gdi = table()) gdi::bitBlt(*gdi, to, x, y, w, h, from, sx, sy);
}

void apiStretchBlt(HDC to, int x, int y, int w, int h, HDC from, int sx, int sy, int sw, int sh,
                   int /*mode*/) {
  if (GdiTable* gdi = table()) gdi::stretchBlt(*gdi, to, x, y, w, h, from, sx, sy, sw, sh);
}

HPEN apiCreatePenAlpha(int style, int width, int color, float alpha) {
  GdiTable* gdi = table();
  return gdi != nullptr ? reinterpret_cast<HPEN>(gdi->createPen(style, width, color, alpha))
                        : nullptr;
}

HPEN apiCreatePen(int style, int width, int color) {
  return apiCreatePenAlpha(style, width, color, 1.0f);
}

HBRUSH apiCreateSolidBrushAlpha(int color, float alpha) {
  GdiTable* gdi = table();
  return gdi != nullptr ? reinterpret_cast<HBRUSH>(gdi->createBrush(color, alpha)) : nullptr;
}

HBRUSH apiCreateSolidBrush(int color) {
  return apiCreateSolidBrushAlpha(color, 1.0f);
}

// Pens and brushes of the window layer; anything else may be a font of the graphics library.
void apiDeleteObject(HGDIOBJ object) {
  GdiTable* gdi = table();
  if (gdi != nullptr && gdi->deleteObject(object)) return;
  graphics::DeleteObject(object);
}

HGDIOBJ apiSelectObject(HDC dc, HGDIOBJ object) {
  GdiTable* gdi = table();
  return gdi != nullptr ? gdi::selectObject(*gdi, dc, object) : nullptr;
}

HGDIOBJ apiGetStockObject(int which) {
  GdiTable* gdi = table();
  return gdi != nullptr ? gdi->stockObject(which) : nullptr;
}

template <int DeviceContext::*Field>
int exchange(HDC dc, int value) {
  DeviceContext* c = context(dc);
  return c != nullptr ? std::exchange(c->*Field, value) : 0;
}

int apiSetTextColor(HDC dc, int color) {
  return exchange<&DeviceContext::textColor>(dc, color);
}
int apiSetBkColor(HDC dc, int color) {
  return exchange<&DeviceContext::backgroundColor>(dc, color);
}
int apiSetBkMode(HDC dc, int mode) {
  return exchange<&DeviceContext::backgroundMode>(dc, mode);
}

int apiGetTextColor(HDC dc) {
  DeviceContext* c = context(dc);
  return c != nullptr ? c->textColor : 0;
}

void apiMoveToEx(HDC dc, int x, int y, POINT* previous) {
  if (GdiTable* gdi = table()) gdi::moveTo(*gdi, dc, x, y, previous);
}

void apiLineTo(HDC dc, int x, int y) {
  if (GdiTable* gdi = table()) gdi::lineTo(*gdi, dc, x, y);
}

void apiRectangle(HDC dc, int l, int t, int r, int b) {
  if (GdiTable* gdi = table()) gdi::rectangle(*gdi, dc, l, t, r, b);
}

void apiEllipse(HDC dc, int l, int t, int r, int b) {
  if (GdiTable* gdi = table()) gdi::ellipse(*gdi, dc, l, t, r, b);
}

void apiRoundRect(HDC dc, int l, int t, int r, int b, int w, int h) {
  if (GdiTable* gdi = table()) gdi::roundRect(*gdi, dc, l, t, r, b, w, h);
}

void apiSetPixel(HDC dc, int x, int y, int color) {
  if (GdiTable* gdi = table()) gdi::setPixel(*gdi, dc, x, y, color);
}

void apiPolygon(HDC dc, const POINT* points, int count) {
  if (GdiTable* gdi = table()) gdi::polygon(*gdi, dc, points, count);
}

void apiFillRect(HDC dc, const RECT* rect, HBRUSH brush) {
  if (GdiTable* gdi = table()) gdi::fillRect(*gdi, dc, rect, reinterpret_cast<HGDIOBJ>(brush));
}

void apiFillDialogBackground(HDC dc, const RECT* rect, int /*level*/) {
  DeviceContext* c = context(dc);
  if (c != nullptr && rect != nullptr) gdi::fillSolid(*c, *rect, theme::kFace);
}

void apiDrawFocusRect(HDC dc, const RECT* rect) {
  if (GdiTable* gdi = table()) gdi::drawFocusRect(*gdi, dc, rect);
}

int apiDrawText(HDC dc, const char* text, int length, RECT* rect, int flags) {
  WindowSystem* current = system();
  return current != nullptr
             ? gdi::drawText(*current, dc, text, length, rect, static_cast<UINT>(flags))
             : 0;
}

HDC apiGetDC(HWND h) {
  Window* w = window(h);
  return w != nullptr ? getWindowDC(*system(), w) : nullptr;
}

void apiReleaseDC(HWND h, HDC dc) {
  if (WindowSystem* current = system()) releaseWindowDC(*current, current->find(h), dc);
}

// COLORREF 0x00BBGGRR of the palette the host's controls are drawn with.
int apiGetSysColor(int index) {
  std::uint32_t argb = theme::kFace;
  switch (index) {
    case COLOR_ACTIVECAPTION:
      argb = theme::kImageFace;
      break;
    case COLOR_WINDOW:
    case COLOR_3DHILIGHT:
      argb = theme::kField;
      break;
    case COLOR_WINDOWTEXT:
    case COLOR_BTNTEXT:
    case COLOR_INFOTEXT:
      argb = theme::kText;
      break;
    case COLOR_HIGHLIGHT:
      argb = theme::kAccent;
      break;
    case COLOR_HIGHLIGHTTEXT:
      argb = theme::kAccentText;
      break;
    case COLOR_3DSHADOW:
      argb = theme::kBorder;
      break;
    case COLOR_3DDKSHADOW:
      argb = theme::kBorderHot;
      break;
    case COLOR_GRAYTEXT:
      argb = theme::kTextDisabled;
      break;
    case COLOR_3DLIGHT:
    case COLOR_INFOBK:
      argb = theme::kFieldDisabled;
      break;
    default:
      break;
  }
  return static_cast<int>(((argb >> 16) & 0xFF) | (argb & 0xFF00) | ((argb & 0xFF) << 16));
}

}  // namespace

std::vector<ApiEntry> gdiFunctions() {
  return {entry<PlaskId::BitBlt>(apiBitBlt),
          entry<PlaskId::StretchBlt>(apiStretchBlt),
          entry<PlaskId::CreatePen>(apiCreatePen),
          entry<PlaskId::CreatePenAlpha>(apiCreatePenAlpha),
          entry<PlaskId::CreateSolidBrush>(apiCreateSolidBrush),
          entry<PlaskId::CreateSolidBrushAlpha>(apiCreateSolidBrushAlpha),
          entry<PlaskId::DeleteObject>(apiDeleteObject),
          entry<PlaskId::SelectObject>(apiSelectObject),
          entry<PlaskId::GetStockObject>(apiGetStockObject),
          entry<PlaskId::SetTextColor>(apiSetTextColor),
          entry<PlaskId::GetTextColor>(apiGetTextColor),
          entry<PlaskId::SetBkColor>(apiSetBkColor),
          entry<PlaskId::SetBkMode>(apiSetBkMode),
          entry<PlaskId::MoveToEx>(apiMoveToEx),
          entry<PlaskId::LineTo>(apiLineTo),
          entry<PlaskId::Rectangle>(apiRectangle),
          entry<PlaskId::Ellipse>(apiEllipse),
          entry<PlaskId::RoundRect>(apiRoundRect),
          entry<PlaskId::SetPixel>(apiSetPixel),
          entry<PlaskId::PLASK_Polygon>(apiPolygon),
          entry<PlaskId::PLASK_FillRect>(apiFillRect),
          entry<PlaskId::PLASK_FillDialogBackground>(apiFillDialogBackground),
          entry<PlaskId::PLASK_DrawFocusRect>(apiDrawFocusRect),
          entry<PlaskId::PLASK_DrawText>(apiDrawText),
          entry<PlaskId::GetDC>(apiGetDC),
          entry<PlaskId::GetWindowDC>(apiGetDC),
          entry<PlaskId::ReleaseDC>(apiReleaseDC),
          entry<PlaskId::GetSysColor>(apiGetSysColor)};
}

}  // namespace winsys::api
