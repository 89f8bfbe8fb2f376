// The window layer's profile-file functions on real INI files. A file name without a '/' is
// taken relative to the host's settings directory. Win32 semantics: a null section lists the
// section names, a null key lists or deletes a whole section, a null value deletes a key; lists
// are zero-separated and end with an extra zero.
#pragma once

#include "platform/win32_types.h"

UINT profileGetInt(const char* section, const char* key, int fallback, const char* file);
DWORD profileGetString(const char* section, const char* key, const char* fallback, char* out,
                       DWORD size, const char* file);
DWORD profileGetSection(const char* section, char* out, DWORD size, const char* file);
// Structs are stored as upper-case hex of the bytes and a checksum byte (their sum mod 256);
// reading fails unless the stored size and checksum match.
BOOL profileGetStruct(const char* section, const char* key, void* out, UINT size, const char* file);
BOOL profileWriteString(const char* section, const char* key, const char* value, const char* file);
BOOL profileWriteSection(const char* section, const char* data, const char* file);
BOOL profileWriteStruct(const char* section, const char* key, const void* data, UINT size,
                        const char* file);
