// The host graphics library's entry points as the host's function tables see them.
#pragma once

// The DAUB_* functions the host lends by name (the host-function lookup); null when unknown.
void* findGraphicsHostFunction(const char* name);

// Window-layer functions the graphics library implements (fonts for text drawing); null when
// unknown.
void* findGraphicsWindowFunction(const char* name);
