// The host's window layer as plug-ins bind it through PLASK_dllMain: one entry per name of the
// import list, each either a real implementation, a function of the graphics library, or the
// headless back-end's failure answer.
#pragma once

#include "platform/plask_api.h"

enum class WindowFunctionKind { Real, Graphics, Headless };

struct WindowFunctionEntry {
  const char* name;
  void* address;  // never null
  WindowFunctionKind kind;
};

// All kPlaskFunctionCount entries in import order.
const WindowFunctionEntry* windowFunctionTable();

// The getter handed to PLASK_dllMain: the address for every name of the list, null for others.
void* findWindowFunction(const char* name);
