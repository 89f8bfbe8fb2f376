// The host's raster graphics library: bitmap and font objects whose virtual functions the plug-in
// calls directly, and the drawing functions it fetches by name. Colours are 0xAARRGGBB; alpha
// arguments are 0..1. Both sides are built by the same compiler, so the vtable order below is the
// contract: never reorder or insert virtual functions.
#pragma once

#include <cstdint>

#include "platform/win32_types.h"

using DAUB_pixel = std::uint32_t;

// Blend modes of the drawing functions.
enum : int {
  DAUB_BLIT_MODE_COPY = 0,
  DAUB_BLIT_MODE_ADD = 1,
  DAUB_BLIT_USE_ALPHA = 0x100,          // multiply by the source's own alpha
  DAUB_BLIT_FILTER_BILINEAR = 0x10000,  // scaled and rotated blits
};

// Bitmap kinds of DAUB_CreateBitmap.
enum : int {
  DAUB_BITMAP_MEMORY = 0,   // plain memory raster
  DAUB_BITMAP_WITH_DC = 1,  // raster with a drawing context for BitBlt
};

// Extended operations of a bitmap.
enum : int {
  DAUB_EXT_SET_ADVISORY_SCALE = 0x2002,   // data: const int*, 256 = 100 %
  DAUB_EXT_GET_ADVISORY_SCALE = 0x2003,   // result: the scale, 0 when none
  DAUB_EXT_GET_EFFECTIVE_SCALE = 0x2004,  // result: the scale text should be drawn at, 0 = unscaled
};

// Font flags passed with AttachHostFont.
enum : int {
  DAUB_FONT_FLAG_OWNS_HANDLE = 0x200,  // the font deletes the handle it was given
  DAUB_FONT_FLAG_SCALED = 0x400,       // realised for a non-100 % scale
};

class DAUB_IBitmap {
 public:
  virtual ~DAUB_IBitmap() = default;
  virtual int getWidth() = 0;
  virtual int getHeight() = 0;
  virtual bool resize(int width, int height) = 0;
  virtual HDC getDC() = 0;
  virtual std::intptr_t Extended(int code, void* data) = 0;

 protected:
  DAUB_IBitmap() = default;
  DAUB_IBitmap(const DAUB_IBitmap&) = default;
  DAUB_IBitmap& operator=(const DAUB_IBitmap&) = default;
};

class DAUB_IFont {
 public:
  virtual ~DAUB_IFont() = default;
  virtual void AttachHostFont(HFONT font, int flags) = 0;
  virtual DAUB_pixel SetTextColor(DAUB_pixel color) = 0;
  virtual DAUB_pixel SetBkColor(DAUB_pixel color) = 0;
  virtual DAUB_pixel SetExtraColor(DAUB_pixel color) = 0;
  virtual int SetBkMode(int mode) = 0;
  virtual void SetBlendMode(int mode, float alpha) = 0;
  virtual int DrawText(DAUB_IBitmap* bitmap, const char* text, int length, RECT* rect,
                       UINT flags) = 0;
  virtual DAUB_pixel GetTextColor() = 0;
  virtual HFONT GetFontHandle() = 0;
  virtual int GetLineHeight() = 0;
  virtual void SetLineGap(int gap) = 0;

 protected:
  DAUB_IFont() = default;
  DAUB_IFont(const DAUB_IFont&) = default;
  DAUB_IFont& operator=(const DAUB_IFont&) = default;
};

// Drawing functions, fetched by name ("DAUB_CreateBitmap", ...).
//
// Geometry: integer coordinate (x, y) names the pixel whose centre is (x + 0.5, y + 0.5); float
// coordinates use the same origin, so 3.0 is the centre of pixel 3. Lines run between the centres
// of their end points, both ends included. DAUB_FillRect covers w x h pixels from (x, y);
// DAUB_DrawRect outlines the rectangle through the centres of (x, y) and (x + w, y + h), so its
// right and bottom edges are the pixels x + w and y + h. Circles are centred on the centre of pixel
// (cx, cy). Drawing is clipped to the bitmap. Modes: DAUB_BLIT_MODE_COPY blends colour over the
// destination by alpha (colour alpha x argument alpha); DAUB_BLIT_MODE_ADD adds colour x alpha to
// the destination's channels, saturating. DAUB_Clear sets every pixel to the colour, no blending.
// DAUB_DrawGlyph blends `color` through a row-major glyphW x glyphH alpha map whose top-left pixel
// lands on (x, y). DAUB_RotatedBlit maps the source rectangle onto the destination rectangle turned
// by `angle` radians about the destination rectangle's centre offset by (rotCenterX, rotCenterY);
// positive angles turn clockwise on the screen (y grows downwards).
using DAUB_CreateBitmapFn = DAUB_IBitmap* (*)(int kind, int width, int height);
using DAUB_GetPixelFn = DAUB_pixel (*)(DAUB_IBitmap* bm, int x, int y);
using DAUB_PutPixelFn = void (*)(DAUB_IBitmap* bm, int x, int y, DAUB_pixel color, float alpha,
                                 int mode);
using DAUB_LineIntFn = void (*)(DAUB_IBitmap* bm, int x1, int y1, int x2, int y2, DAUB_pixel color,
                                float alpha, int mode, bool antialias);
using DAUB_LineFn = void (*)(DAUB_IBitmap* bm, float x1, float y1, float x2, float y2,
                             DAUB_pixel color, float alpha, int mode, bool antialias);
using DAUB_ThickFLineFn = void (*)(DAUB_IBitmap* bm, double x1, double y1, double x2, double y2,
                                   DAUB_pixel color, float alpha, int mode, int width);
using DAUB_CircleFn = void (*)(DAUB_IBitmap* bm, float cx, float cy, float r, DAUB_pixel color,
                               float alpha, int mode, bool antialias);
using DAUB_FillCircleFn = void (*)(DAUB_IBitmap* bm, int cx, int cy, int r, DAUB_pixel color,
                                   float alpha, int mode, bool antialias);
using DAUB_FillRectFn = void (*)(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel color,
                                 float alpha, int mode);
using DAUB_DrawRectFn = void (*)(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel color,
                                 float alpha, int mode);
using DAUB_BorderedRectFn = void (*)(DAUB_IBitmap* bm, int x, int y, int w, int h, DAUB_pixel fill,
                                     DAUB_pixel border, float alpha, int mode);
using DAUB_ClearFn = void (*)(DAUB_IBitmap* bm, DAUB_pixel color);
using DAUB_BlitFn = void (*)(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty, int srcx,
                             int srcy, int w, int h, float alpha, int mode);
using DAUB_RotatedBlitFn = void (*)(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty,
                                    int dstw, int dsth, float srcx, float srcy, float srcw,
                                    float srch, float angle, bool clipToSource, float alpha,
                                    int mode, float rotCenterX, float rotCenterY);
using DAUB_DrawGlyphFn = void (*)(DAUB_IBitmap* bm, int x, int y, DAUB_pixel color,
                                  const unsigned char* alphas, int glyphW, int glyphH, float alpha,
                                  int mode);
using DAUB_CreateFontFn = DAUB_IFont* (*)();
using DAUB_FillTriangleFn = void (*)(DAUB_IBitmap* bm, int x1, int y1, int x2, int y2, int x3,
                                     int y3, DAUB_pixel color, float alpha, int mode);
using DAUB_ArcFn = void (*)(DAUB_IBitmap* bm, float cx, float cy, float r, float angle1,
                            float angle2, DAUB_pixel color, float alpha, int mode, bool antialias);
using DAUB_FillTrapezoidFn = void (*)(DAUB_IBitmap* bm, int x1a, int x1b, int y1, int x2a, int x2b,
                                      int y2, DAUB_pixel color, float alpha, int mode);
using DAUB_FillConvexPolygonFn = void (*)(DAUB_IBitmap* bm, const int* x, const int* y, int npoints,
                                          DAUB_pixel color, float alpha, int mode);
using DAUB_CopyFn = void (*)(DAUB_IBitmap* dest, DAUB_IBitmap* src);
using DAUB_ScaledBlitFn = void (*)(DAUB_IBitmap* dest, DAUB_IBitmap* src, int dstx, int dsty,
                                   int dstw, int dsth, float srcx, float srcy, float srcw,
                                   float srch, float alpha, int mode);
using DAUB_MeasureTextFn = void (*)(const char* text, int* width, int* height);
using DAUB_DrawTextFn = void (*)(DAUB_IBitmap* bm, int x, int y, const char* text, DAUB_pixel color,
                                 float alpha, int mode);
