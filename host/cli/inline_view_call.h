// The host side of a plug-in's inline view: the small picture a host draws in its own track
// panel by handing the plug-in a bitmap and window-style messages through effVendorSpecific.
#pragma once

#include <array>
#include <cstdint>

#include "host/core/plugin_instance.h"
#include "platform/daub.h"

// The block passed as `ptr` with every inline-view message. The plug-in reads only the 32-bit
// fields from byte 20 on; the first 20 bytes are the host's own and stay zero here.
class InlineDrawInfo {
 public:
  static constexpr int kWidthOffset = 20;
  static constexpr int kHeightOffset = 24;
  static constexpr int kMouseXOffset = 28;
  static constexpr int kMouseYOffset = 32;
  static constexpr int kFlagsOffset = 36;
  // Flag bit 0: paint only if the picture changed since the last paint.
  static constexpr std::uint32_t kPaintOnlyIfChanged = 1;

  InlineDrawInfo(int widthPx, int heightPx);
  void setMouse(int xPx, int yPx);
  void setFlags(std::uint32_t flags);
  std::int32_t field(int byteOffset) const;
  void* data() { return bytes_.data(); }

 private:
  void setField(int byteOffset, std::int32_t value);
  alignas(8) std::array<unsigned char, 40> bytes_{};
};

// [UI thread] The plug-in announces an inline view through canDo "hasTolvekEmbeddedUI".
bool hasInlineView(PluginInstance& instance);

// [UI thread] One WM_PAINT of the inline view into `bitmap`; true when the plug-in drew.
bool paintInlineView(PluginInstance& instance, DAUB_IBitmap* bitmap, InlineDrawInfo& info);
