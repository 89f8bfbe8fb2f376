// The host side of a plug-in's inline view: the small picture a host draws in its own track
// panel by handing the plug-in a bitmap and window-style messages through effVendorSpecific.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "host/runtime/plugin_instance.h"
#include "platform/daub.h"

// The block passed as `ptr` with every inline-view message. The plug-in reads the 32-bit fields
// from byte 20 on: width, height, mouse x, mouse y, flags. A snapshot has no mouse, and flags 0
// asks for a paint whether or not the picture changed; the first 20 bytes are the host's own.
class InlineDrawInfo {
 public:
  static constexpr int kWidthOffset = 20;
  static constexpr int kHeightOffset = 24;
  static constexpr std::size_t kBytes = 40;

  InlineDrawInfo(int widthPx, int heightPx);
  void* data() { return bytes_.data(); }

 private:
  void setField(int byteOffset, std::int32_t value);
  alignas(8) std::array<unsigned char, kBytes> bytes_{};
};

// [UI thread] The plug-in announces an inline view through canDo "hasTolvekEmbeddedUI".
bool hasInlineView(PluginInstance& instance);

// [UI thread] One WM_PAINT of the inline view into `bitmap`; true when the plug-in drew.
bool paintInlineView(PluginInstance& instance, DAUB_IBitmap* bitmap, InlineDrawInfo& info);
