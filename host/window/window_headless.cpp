#include "host/window/window_headless.h"

std::intptr_t headlessWindowFunction() {
  return 0;
}
