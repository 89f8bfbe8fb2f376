// The graphics library's names as the host's function tables lend them.
#include <gtest/gtest.h>

#include <cstring>

#include "host/graphics/drawing.h"
#include "host/graphics/font.h"
#include "host/services/graphics_table.h"
#include "platform/host_functions.h"

using namespace graphics;

TEST(LookupTables, EveryDrawingNameResolvesAndNothingElse) {
  int daubNames = 0;
#define CHECK_NAME(name, type)                                                                \
  daubNames += std::strncmp(#name, "DAUB_", 5) == 0;                                          \
  EXPECT_EQ(findGraphicsHostFunction(#name) != nullptr, std::strncmp(#name, "DAUB_", 5) == 0) \
      << #name;
  HOST_FUNCTION_LIST(CHECK_NAME)
#undef CHECK_NAME
  EXPECT_EQ(daubNames, 24);
  EXPECT_EQ(findGraphicsHostFunction("DAUB_Clear"), reinterpret_cast<void*>(&DAUB_Clear));
  EXPECT_EQ(findGraphicsWindowFunction("DeleteObject"),
            reinterpret_cast<void*>(&graphics::DeleteObject));
  EXPECT_EQ(findGraphicsWindowFunction("BitBlt"), nullptr);
}
