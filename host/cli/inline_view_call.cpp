#include "host/cli/inline_view_call.h"

#include <cstring>

#include "platform/win32_types.h"

namespace {

// effVendorSpecific index of the inline view; the message number travels in `opt`.
constexpr std::int32_t kInlineViewIndex = 16;
constexpr char kInlineViewCanDo[] = "hasTolvekEmbeddedUI";

}  // namespace

InlineDrawInfo::InlineDrawInfo(int widthPx, int heightPx) {
  setField(kWidthOffset, widthPx);
  setField(kHeightOffset, heightPx);
}

void InlineDrawInfo::setField(int byteOffset, std::int32_t value) {
  std::memcpy(bytes_.data() + byteOffset, &value, sizeof value);
}

bool hasInlineView(PluginInstance& instance) {
  char name[sizeof kInlineViewCanDo];
  std::memcpy(name, kInlineViewCanDo, sizeof name);  // the dispatcher takes a mutable pointer
  return instance.dispatch("effCanDo (inline view)", effCanDo, 0, 0, name) != 0;
}

bool paintInlineView(PluginInstance& instance, DAUB_IBitmap* bitmap, InlineDrawInfo& info) {
  const auto bitmapValue = reinterpret_cast<VstIntPtr>(bitmap);
  return instance.dispatch("inline view WM_PAINT", effVendorSpecific, kInlineViewIndex, bitmapValue,
                           info.data(), static_cast<float>(WM_PAINT)) == 1;
}
