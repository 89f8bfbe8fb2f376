// The drawing functions the host lends by their DAUB_ names. Geometry, colours and blend modes are
// those of platform/daub.h. Every function ignores a null (or foreign) bitmap. [UI thread] like the
// bitmaps they draw into; distinct bitmaps may be drawn from distinct threads.
//
// Choices where the interface leaves room:
// - Unknown blend modes draw as DAUB_BLIT_MODE_COPY.
// - Blits without DAUB_BLIT_USE_ALPHA in copy mode replace the destination (all four channels,
//   mixed with it by `alpha`); additive blits always add the premultiplied source.
// - Filled circles cover the disc of radius r + 0.5 around the centre pixel, 2r + 1 pixels across,
//   exactly the pixels a circle outline of radius r reaches.
// - Arc angles are radians from straight up, growing clockwise on the screen.
// - Triangles, trapezoids and convex polygons are crisp: each row covers the pixels whose centres
//   lie within the shape's span on that row, vertices included.
// - DAUB_BorderedRect covers w x h pixels like DAUB_FillRect; its outermost ring is the border.
// - DAUB_Copy makes the destination the size of the source and copies every pixel.
// - DAUB_MeasureText and DAUB_DrawText use the library's default face ("Arial", 12 px cell);
//   DAUB_DrawText puts the top-left of the text box at (x, y).
#pragma once

#include "platform/daub.h"

namespace graphics {

DAUB_IBitmap* DAUB_CreateBitmap(int kind, int width, int height);
DAUB_pixel DAUB_GetPixel(DAUB_IBitmap* bm, int x, int y);
void DAUB_PutPixel(DAUB_IBitmap* bm, int x, int y, DAUB_pixel color, float alpha, int mode);
void DAUB_LineInt(DAUB_IBitmap* bm, int x1, int y1, int x2, int y2, DAUB_pixel color, float alpha,
                  int mode, bool antialias);
void DAUB_Line(DAUB_IBitmap* bm, float x1, float y1, float x2, float y2, DAUB_pixel color,
               float alpha, int mode, bool antialias);
void DAUB_ThickFLine(DAUB_IBitmap* bm, double x1, double y1, double x2, double y2, DAUB_pixel color,
                     float alpha, int mode, int width);
void DAUB_Circle(DAUB_IBitmap* bm, float cx, float cy, float r, DAUB_pixel color, float alpha,
                 int mode, bool antialias);
void DAUB_FillCircle(DAUB_IBitmap* bm, int cx, int cy, int r, DAUB_pixel color, float alpha,
                     int mode, bool antialias);
void DAUB_FillRect(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel color, float alpha,
                   int mode);
void DAUB_DrawRect(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel color, float alpha,
                   int mode);
void DAUB_BorderedRect(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel fill,
                       DAUB_pixel border, float alpha, int mode);
void DAUB_Clear(DAUB_IBitmap* bm, DAUB_pixel color);
void DAUB_Blit(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty, int srcx, int srcy, int w,
               int h, float alpha, int mode);
void DAUB_RotatedBlit(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty, int dstw, int dsth,
                      float srcx, float srcy, float srcw, float srch, float angle,
                      bool clipToSource, float alpha, int mode, float rotCenterX, float rotCenterY);
void DAUB_DrawGlyph(DAUB_IBitmap* bm, int x, int y, DAUB_pixel color, const unsigned char* alphas,
                    int glyphW, int glyphH, float alpha, int mode);
DAUB_IFont* DAUB_CreateFont();
void DAUB_FillTriangle(DAUB_IBitmap* bm, int x1, int y1, int x2, int y2, int x3, int y3,
                       DAUB_pixel color, float alpha, int mode);
void DAUB_Arc(DAUB_IBitmap* bm, float cx, float cy, float r, float angle1, float angle2,
              DAUB_pixel color, float alpha, int mode, bool antialias);
void DAUB_FillTrapezoid(DAUB_IBitmap* bm, int x1a, int x1b, int y1, int x2a, int x2b, int y2,
                        DAUB_pixel color, float alpha, int mode);
void DAUB_FillConvexPolygon(DAUB_IBitmap* bm, const int* x, const int* y, int npoints,
                            DAUB_pixel color, float alpha, int mode);
void DAUB_Copy(DAUB_IBitmap* dest, DAUB_IBitmap* src);
void DAUB_ScaledBlit(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty, int dstw, int dsth,
                     float srcx, float srcy, float srcw, float srch, float alpha, int mode);
void DAUB_MeasureText(const char* text, int* width, int* height);
void DAUB_DrawText(DAUB_IBitmap* bm, int x, int y, const char* text, DAUB_pixel color, float alpha,
                   int mode);

}  // namespace graphics
