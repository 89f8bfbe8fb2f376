#include "host/window/accelerators.h"

#include <algorithm>
#include <cstring>
#include <mutex>

namespace {

std::mutex acceleratorMutex;
std::vector<AcceleratorRegister*> accelerators;

int addAccelerator(AcceleratorRegister* record) {
  const std::lock_guard lock(acceleratorMutex);
  if (std::find(accelerators.begin(), accelerators.end(), record) == accelerators.end()) {
    accelerators.push_back(record);
  }
  return 1;
}

int removeAccelerator(AcceleratorRegister* record) {
  const std::lock_guard lock(acceleratorMutex);
  return std::erase(accelerators, record) > 0 ? 1 : 0;
}

}  // namespace

int pluginRegister(const char* name, void* record) {
  if (name == nullptr || record == nullptr) return 0;
  auto* accelerator = static_cast<AcceleratorRegister*>(record);
  if (std::strcmp(name, "<accelerator") == 0) return addAccelerator(accelerator);
  if (std::strcmp(name, "-accelerator") == 0) return removeAccelerator(accelerator);
  return 0;
}

std::vector<AcceleratorRegister*> registeredAccelerators() {
  const std::lock_guard lock(acceleratorMutex);
  return {accelerators.rbegin(), accelerators.rend()};
}
