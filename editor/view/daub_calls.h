// Calls into the host's graphics library through the fetched slots. A function the host did not
// supply makes its drawing step a no-op, so a partial host draws what it can instead of crashing.
#pragma once

#include "plugin/host_api.h"

template <auto HostApi::*Slot, typename... Args>
void daubCall(Args... args) {
  if (const auto fn = hostApi.*Slot) fn(args...);
}

// The DPI scale a bitmap advises for sizes (256 = 100 %); 256 when it advises none.
inline int advisoryScale256(DAUB_IBitmap* bitmap) {
  const auto scale = static_cast<int>(bitmap->Extended(DAUB_EXT_GET_ADVISORY_SCALE, nullptr));
  return scale != 0 ? scale : 256;
}
