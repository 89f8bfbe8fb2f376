#include "host/window/control_registry.h"

#include <algorithm>
#include <mutex>

namespace {

std::mutex registryMutex;
std::vector<PlaskControlCreator> creators;

}  // namespace

void registerControlCreator(PlaskControlCreator creator) {
  if (creator == nullptr) return;
  const std::lock_guard lock(registryMutex);
  if (std::find(creators.begin(), creators.end(), creator) == creators.end()) {
    creators.push_back(creator);
  }
}

void unregisterControlCreator(PlaskControlCreator creator) {
  const std::lock_guard lock(registryMutex);
  std::erase(creators, creator);
}

std::vector<PlaskControlCreator> registeredControlCreators() {
  const std::lock_guard lock(registryMutex);
  return creators;
}
