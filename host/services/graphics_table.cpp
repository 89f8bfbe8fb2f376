#include "host/services/graphics_table.h"

#include <cstring>
#include <type_traits>

#include "host/graphics/drawing.h"
#include "host/graphics/font.h"
#include "platform/host_functions.h"
#include "platform/plask_api.h"

namespace {

// clang-format off
#define GRAPHICS_HOST_FUNCTIONS(X)                                                         \
  X(DAUB_CreateBitmap) X(DAUB_GetPixel) X(DAUB_PutPixel) X(DAUB_LineInt) X(DAUB_Line)      \
  X(DAUB_ThickFLine) X(DAUB_Circle) X(DAUB_FillCircle) X(DAUB_FillRect) X(DAUB_DrawRect)   \
  X(DAUB_BorderedRect) X(DAUB_Clear) X(DAUB_Blit) X(DAUB_RotatedBlit) X(DAUB_DrawGlyph)    \
  X(DAUB_CreateFont) X(DAUB_FillTriangle) X(DAUB_Arc) X(DAUB_FillTrapezoid)                \
  X(DAUB_FillConvexPolygon) X(DAUB_Copy) X(DAUB_ScaledBlit) X(DAUB_MeasureText)            \
  X(DAUB_DrawText)
#define GRAPHICS_WINDOW_FUNCTIONS(X) X(CreateFontIndirect) X(DeleteObject)
// clang-format on

// The plug-in casts what it fetches to the agreed types: a mismatch must not compile.
#define CHECK_HOST_SIGNATURE(name) \
  static_assert(std::is_same_v<decltype(&graphics::name), name##Fn>, #name);
#define CHECK_WINDOW_SIGNATURE(name) \
  static_assert(std::is_same_v<decltype(&graphics::name), PlaskFn<PlaskId::name>>, #name);
GRAPHICS_HOST_FUNCTIONS(CHECK_HOST_SIGNATURE)
GRAPHICS_WINDOW_FUNCTIONS(CHECK_WINDOW_SIGNATURE)

struct NamedFunction {
  const char* name;
  void* address;
};

#define NAMED_FUNCTION(name) {#name, reinterpret_cast<void*>(&graphics::name)},
const NamedFunction kHostFunctions[] = {GRAPHICS_HOST_FUNCTIONS(NAMED_FUNCTION)};
const NamedFunction kWindowFunctions[] = {GRAPHICS_WINDOW_FUNCTIONS(NAMED_FUNCTION)};

template <std::size_t N>
void* find(const NamedFunction (&table)[N], const char* name) {
  if (name == nullptr) return nullptr;
  for (const NamedFunction& entry : table) {
    if (std::strcmp(entry.name, name) == 0) return entry.address;
  }
  return nullptr;
}

}  // namespace

void* findGraphicsHostFunction(const char* name) {
  return find(kHostFunctions, name);
}

void* findGraphicsWindowFunction(const char* name) {
  return find(kWindowFunctions, name);
}
