// Windows destroyed while a message is being handled are freed once the outermost handling
// returns, so that no procedure runs on a freed window.
#pragma once

#include "host/window/core/window_system.h"

namespace winsys {

class DispatchScope {
 public:
  explicit DispatchScope(WindowSystem& system) : system_(system) { ++system_.dispatchDepth_; }
  ~DispatchScope() {
    if (--system_.dispatchDepth_ == 0) system_.freeDestroyed();
  }
  DispatchScope(const DispatchScope&) = delete;
  DispatchScope& operator=(const DispatchScope&) = delete;

 private:
  WindowSystem& system_;
};

}  // namespace winsys
