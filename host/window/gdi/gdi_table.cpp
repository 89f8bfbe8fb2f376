#include "host/window/gdi/gdi_table.h"

#include "host/graphics/bitmap.h"

namespace winsys {

namespace {

HGDIOBJ handleOf(const GdiObject* object) {
  return reinterpret_cast<HGDIOBJ>(const_cast<GdiObject*>(object));
}

// The stock objects by GetStockObject's index; brushes 0..5, pens 6..8.
std::vector<std::unique_ptr<GdiObject>> makeStock() {
  std::vector<std::unique_ptr<GdiObject>> stock;
  const int brushGreys[] = {0xFF, 0xC0, 0x80, 0x40, 0x00};
  for (const int grey : brushGreys) {
    stock.push_back(std::make_unique<GdiObject>(
        GdiObject{GdiKind::Brush, 0, 1, rgb(grey, grey, grey), 1.0f, true}));
  }
  stock.push_back(std::make_unique<GdiObject>(GdiObject{GdiKind::Brush, 1, 1, 0, 1.0f, true}));
  stock.push_back(
      std::make_unique<GdiObject>(GdiObject{GdiKind::Pen, PS_SOLID, 1, 0xFFFFFF, 1.0f, true}));
  stock.push_back(std::make_unique<GdiObject>(GdiObject{GdiKind::Pen, PS_SOLID, 1, 0, 1.0f, true}));
  stock.push_back(std::make_unique<GdiObject>(GdiObject{GdiKind::Pen, PS_NULL, 1, 0, 1.0f, true}));
  return stock;
}

}  // namespace

GdiTable::GdiTable() : stock_(makeStock()) {}
GdiTable::~GdiTable() = default;

HDC GdiTable::createWindowDC(Window* window, graphics::CairoBitmap* target, POINT origin,
                             std::vector<RECT> clip) {
  auto context = std::make_unique<DeviceContext>();
  context->target = target;
  context->window = window;
  context->origin = origin;
  context->clipped = true;
  context->clip = std::move(clip);
  context->pen = stockObject(BLACK_PEN);
  context->brush = stockObject(WHITE_BRUSH);
  DeviceContext* raw = context.get();
  contexts_.emplace(raw, std::move(context));
  return reinterpret_cast<HDC>(raw);
}

bool GdiTable::releaseDC(HDC dc) {
  return contexts_.erase(reinterpret_cast<const DeviceContext*>(dc)) > 0;
}

DeviceContext* GdiTable::find(HDC dc) {
  if (dc == nullptr) return nullptr;
  if (auto it = contexts_.find(reinterpret_cast<const DeviceContext*>(dc)); it != contexts_.end()) {
    return it->second.get();
  }
  graphics::CairoBitmap* bitmap = graphics::bitmapFromDC(dc);
  if (bitmap == nullptr) return nullptr;
  auto& context = bitmapContexts_[dc];
  if (context == nullptr) {
    context = std::make_unique<DeviceContext>();
    context->pen = stockObject(BLACK_PEN);
    context->brush = stockObject(WHITE_BRUSH);
  }
  // The bitmap behind a context may have been replaced since: always take the current one.
  context->target = bitmap;
  return context.get();
}

void GdiTable::forgetWindow(const Window* window) {
  std::erase_if(contexts_, [window](const auto& entry) { return entry.second->window == window; });
}

void GdiTable::forgetTarget(const graphics::CairoBitmap* target) {
  std::erase_if(contexts_, [target](const auto& entry) { return entry.second->target == target; });
}

HGDIOBJ GdiTable::createPen(int style, int width, int color, float alpha) {
  auto pen = std::make_unique<GdiObject>(
      GdiObject{GdiKind::Pen, style, width < 1 ? 1 : width, color, alpha, false});
  const GdiObject* raw = pen.get();
  objects_.emplace(raw, std::move(pen));
  return handleOf(raw);
}

HGDIOBJ GdiTable::createBrush(int color, float alpha) {
  auto brush = std::make_unique<GdiObject>(GdiObject{GdiKind::Brush, 0, 1, color, alpha, false});
  const GdiObject* raw = brush.get();
  objects_.emplace(raw, std::move(brush));
  return handleOf(raw);
}

const GdiObject* GdiTable::object(HGDIOBJ handle) const {
  const auto* candidate = reinterpret_cast<const GdiObject*>(handle);
  if (objects_.contains(candidate)) return candidate;
  for (const auto& stock : stock_) {
    if (stock.get() == candidate) return candidate;
  }
  return nullptr;
}

bool GdiTable::deleteObject(HGDIOBJ handle) {
  const auto* candidate = reinterpret_cast<const GdiObject*>(handle);
  if (objects_.erase(candidate) > 0) return true;
  return object(handle) != nullptr;
}

HGDIOBJ GdiTable::stockObject(int which) const {
  if (which < 0 || which >= static_cast<int>(stock_.size())) return nullptr;
  return handleOf(stock_[static_cast<std::size_t>(which)].get());
}

}  // namespace winsys
