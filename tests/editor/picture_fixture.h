// Scenes drawn through the inline view with the host's Cairo graphics library bound as the host
// would bind it, and probes of the finished pictures.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "editor/view/dpi_aware_font.h"
#include "editor/view/shared_drawing.h"
#include "editor/view/space_projection.h"
#include "editor/view/space_render.h"
#include "host/services/graphics_table.h"
#include "model/counts.h"
#include "plugin/editor_link.h"
#include "plugin/host_api.h"
#include "plugin/plugin_entry.h"
#include "plugin/window_layer.h"
#include "tests/host/graphics/graphics_test_support.h"

constexpr DAUB_pixel kBackground = 0xFF202020;
constexpr DAUB_pixel kRoomGrey = 0xFF707070;

// Binds the graphics library into the plug-in's host-function and window-layer slots.
inline void bindHostGraphics() {
#define BIND_GRAPHICS_SLOT(name, type) \
  hostApi.name = reinterpret_cast<type>(findGraphicsHostFunction(#name));
  HOST_FUNCTION_LIST(BIND_GRAPHICS_SLOT)
#undef BIND_GRAPHICS_SLOT
  for (PlaskId id : {PlaskId::CreateFontIndirect, PlaskId::DeleteObject}) {
    plaskSlots[static_cast<int>(id)] =
        reinterpret_cast<PlaskGenericFn>(findGraphicsWindowFunction(kPlaskNames[int(id)]));
  }
}

inline bool near(DAUB_pixel actual, DAUB_pixel expected, int tolerance) {
  for (int shift : {0, 8, 16}) {
    const int a = static_cast<int>((actual >> shift) & 0xFF);
    const int e = static_cast<int>((expected >> shift) & 0xFF);
    if (std::abs(a - e) > tolerance) return false;
  }
  return true;
}

// Pixels within the box (inclusive) whose colour is near `color`.
inline int countNear(DAUB_IBitmap* bitmap, int left, int top, int right, int bottom,
                     DAUB_pixel color, int tolerance) {
  int count = 0;
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x) {
      if (near(graphics::DAUB_GetPixel(bitmap, x, y), color, tolerance)) ++count;
    }
  }
  return count;
}

class PictureTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { bindHostGraphics(); }
  static void TearDownTestSuite() {
    releaseSharedDrawingResources();
    hostApi = HostApi{};
  }
  void SetUp() override {
    plugin.host.effect.object = &plugin;
    setInputCount(plugin, 0);
    setSpeakerCount(plugin, 0);
  }

  // n inputs / speakers, every one placed by the test afterwards.
  void counts(int inputs, int speakers) {
    setInputCount(plugin, 0);
    setSpeakerCount(plugin, 0);
    setInputCount(plugin, inputs);
    setSpeakerCount(plugin, speakers);
  }
  InputChannel& place(int index, double x, double y, double z = 0.0) {
    InputChannel& input = plugin.model.inputs[index];
    input.x = x;
    input.y = y;
    input.z = z;
    return input;
  }
  Speaker& placeSpeaker(int index, const char* name, double x, double y, double z = 0.0) {
    Speaker& speaker = plugin.model.speakers[index];
    copyChannelName(speaker.name, name);
    speaker.x = x;
    speaker.y = y;
    speaker.z = z;
    return speaker;
  }

  // One inline WM_PAINT into `bitmap`; the answer of the dispatcher.
  VstIntPtr paintInto(DAUB_IBitmap* bitmap, std::uint32_t infoFlags = 0) {
    unsigned char block[40] = {};
    const std::int32_t fields[5] = {bitmap->getWidth(), bitmap->getHeight(), 0, 0,
                                    static_cast<std::int32_t>(infoFlags)};
    std::memcpy(block + 20, fields, sizeof fields);
    return dispatcher(&plugin.host.effect, effVendorSpecific, 16,
                      reinterpret_cast<VstIntPtr>(bitmap), block, static_cast<float>(WM_PAINT));
  }
  // A fresh host bitmap at DPI scale `scale256` (0: none advised), painted once.
  BitmapPtr paint(int width = 200, int height = 160, int scale256 = 0) {
    BitmapPtr bitmap = newBitmap(width, height, 0xFF000000);
    bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &scale256);
    EXPECT_EQ(paintInto(bitmap.get()), 1);
    return bitmap;
  }
  DAUB_pixel at(const BitmapPtr& bitmap, int x, int y) {
    return graphics::DAUB_GetPixel(bitmap.get(), x, y);
  }

  PannerPlugin plugin;
};
