// The headless back-end of the window layer: no display, so every function that needs a window,
// a drawing context or a menu fails the way Win32 does without one, by answering 0.
#pragma once

#include <cstdint>

// Takes any arguments (the caller cleans up) and answers 0 / null.
std::intptr_t headlessWindowFunction();
