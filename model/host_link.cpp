#include "model/host_link.h"

#include "model/panner_plugin.h"

audioMasterCallback hostCallback = nullptr;
short (*asyncKeyState)(int virtualKey) = nullptr;
void (*onLockInputsChanged)(PannerPlugin& plugin) = nullptr;

VstIntPtr callHost(PannerPlugin& plugin, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                   void* ptr, float opt) {
  audioMasterCallback callback = hostCallback;
  if (callback == nullptr) return 0;
  return callback(&plugin.host.effect, opcode, index, value, ptr, opt);
}

bool isKeyHeld(int virtualKey) {
  return asyncKeyState != nullptr && asyncKeyState(virtualKey) < 0;
}
