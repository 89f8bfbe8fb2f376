// Drawing contexts, pens and brushes of the window layer. A handle is a pointer to one of these
// objects; the table knows the live ones, so a foreign or stale handle is refused, not read.
// Drawing contexts of the graphics library's bitmaps are accepted too: their drawing state is
// kept here on the side.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/win32_controls.h"

namespace graphics {
class CairoBitmap;
}

namespace winsys {

struct Window;

enum class GdiKind { Pen, Brush };

struct GdiObject {
  GdiKind kind = GdiKind::Brush;
  int style = 0;  // pens: PS_*; brushes: 1 for the null brush
  int width = 1;  // pens, pixels
  int color = 0;  // COLORREF
  float alpha = 1.0f;
  bool stock = false;
};

struct DeviceContext {
  graphics::CairoBitmap* target = nullptr;
  Window* window = nullptr;  // null for a bitmap's context
  POINT origin{};            // the client area's origin in the target
  bool clipped = false;
  std::vector<RECT> clip;  // target coordinates, when clipped
  HGDIOBJ pen = nullptr;
  HGDIOBJ brush = nullptr;
  HFONT font = nullptr;
  int textColor = 0;  // COLORREF
  int backgroundColor = 0xFFFFFF;
  int backgroundMode = OPAQUE;
  POINT position{};
};

class GdiTable {
 public:
  GdiTable();
  ~GdiTable();
  GdiTable(const GdiTable&) = delete;
  GdiTable& operator=(const GdiTable&) = delete;

  HDC createWindowDC(Window* window, graphics::CairoBitmap* target, POINT origin,
                     std::vector<RECT> clip);
  bool releaseDC(HDC dc);
  // Ours or a bitmap's context; null for anything else.
  DeviceContext* find(HDC dc);
  // Drops the contexts of a window that goes away, or of a back buffer that is replaced.
  void forgetWindow(const Window* window);
  void forgetTarget(const graphics::CairoBitmap* target);

  HGDIOBJ createPen(int style, int width, int color, float alpha);
  HGDIOBJ createBrush(int color, float alpha);
  const GdiObject* object(HGDIOBJ handle) const;
  // True when the object was one of this table's (stock objects stay).
  bool deleteObject(HGDIOBJ handle);
  HGDIOBJ stockObject(int which) const;

 private:
  std::unordered_map<const DeviceContext*, std::unique_ptr<DeviceContext>> contexts_;
  std::unordered_map<HDC, std::unique_ptr<DeviceContext>> bitmapContexts_;
  std::unordered_map<const GdiObject*, std::unique_ptr<GdiObject>> objects_;
  std::vector<std::unique_ptr<GdiObject>> stock_;
};

}  // namespace winsys
