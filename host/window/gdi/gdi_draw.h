// The GDI drawing functions of the window layer on its drawing contexts. Geometry is Win32's:
// FillRect and Rectangle cover left..right-1 and top..bottom-1; LineTo leaves out its last pixel;
// colours are COLORREF. Every function ignores a context that is not live. [UI thread]
#pragma once

#include "host/window/gdi/gdi_table.h"

namespace winsys {

class WindowSystem;

namespace gdi {

void fillRect(GdiTable& table, HDC dc, const RECT* rect, HGDIOBJ brush);
void fillSolid(DeviceContext& dc, const RECT& rect, std::uint32_t argb);
void rectangle(GdiTable& table, HDC dc, int left, int top, int right, int bottom);
void ellipse(GdiTable& table, HDC dc, int left, int top, int right, int bottom);
void roundRect(GdiTable& table, HDC dc, int left, int top, int right, int bottom, int cornerW,
               int cornerH);
void polygon(GdiTable& table, HDC dc, const POINT* points, int count);
void moveTo(GdiTable& table, HDC dc, int x, int y, POINT* previous);
void lineTo(GdiTable& table, HDC dc, int x, int y);
void setPixel(GdiTable& table, HDC dc, int x, int y, int color);
void drawFocusRect(GdiTable& table, HDC dc, const RECT* rect);
HGDIOBJ selectObject(GdiTable& table, HDC dc, HGDIOBJ object);
// Answers the text's height (0 when nothing was drawn), as the graphics library's fonts do.
int drawText(WindowSystem& system, HDC dc, const char* text, int length, RECT* rect, UINT flags);
void bitBlt(GdiTable& table, HDC destination, int x, int y, int w, int h, HDC source, int sourceX,
            int sourceY);
void stretchBlt(GdiTable& table, HDC destination, int x, int y, int w, int h, HDC source,
                int sourceX, int sourceY, int sourceW, int sourceH);

}  // namespace gdi
}  // namespace winsys
