#include "host/graphics/graphics_lookup.h"

void* findGraphicsHostFunction(const char* /*name*/) {
  return nullptr;
}

void* findGraphicsWindowFunction(const char* /*name*/) {
  return nullptr;
}
