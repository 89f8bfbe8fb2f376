#include "host/window/key_state.h"

#include <array>
#include <atomic>

namespace {

constexpr int kVirtualKeyCount = 256;
std::array<std::atomic<bool>, kVirtualKeyCount> heldKeys{};

bool isValidKey(int virtualKey) {
  return virtualKey >= 0 && virtualKey < kVirtualKeyCount;
}

}  // namespace

void setKeyHeld(int virtualKey, bool held) {
  if (isValidKey(virtualKey)) heldKeys[virtualKey].store(held);
}

bool isHostKeyHeld(int virtualKey) {
  return isValidKey(virtualKey) && heldKeys[virtualKey].load();
}

void releaseAllKeys() {
  for (auto& key : heldKeys) key.store(false);
}

short hostAsyncKeyState(int virtualKey) {
  return isHostKeyHeld(virtualKey) ? static_cast<short>(0x8000) : 0;
}
