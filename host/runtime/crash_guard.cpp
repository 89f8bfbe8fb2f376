#include "host/runtime/crash_guard.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>

#include "host/runtime/interrupt_guard.h"
#include "host/runtime/signal_text.h"

namespace {

// Read by the signal handler: plain atomics, lock-free.
std::atomic<const char*> currentPath{nullptr};
std::atomic<const char*> currentCall{nullptr};

constexpr int kFaultSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr std::size_t kAlternateStackBytes = std::size_t{64} * 1024;
alignas(16) char alternateStack[kAlternateStackBytes];

// Only async-signal-safe calls from here on.
void onFault(int signalNumber) {
  const char* path = currentPath.load();
  const char* call = currentCall.load();
  if (path == nullptr || call == nullptr) {
    signal(signalNumber, SIG_DFL);
    raise(signalNumber);
    return;
  }
  writeSignalText("spatiola: the plug-in ");
  writeSignalText(path);
  writeSignalText(" crashed in ");
  writeSignalText(call);
  writeSignalText(" (signal ");
  writeSignalNumber(signalNumber);
  writeSignalText(")\n");
  removeUnfinishedFiles();
  _exit(128 + signalNumber);
}

}  // namespace

void installCrashReporter() {
  static const bool installed = [] {
    stack_t stack{};
    stack.ss_sp = alternateStack;
    stack.ss_size = sizeof(alternateStack);
    sigaltstack(&stack, nullptr);  // so that a stack overflow is still reported
    struct sigaction action {};
    action.sa_handler = onFault;
    action.sa_flags = SA_ONSTACK | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (const int signalNumber : kFaultSignals) sigaction(signalNumber, &action, nullptr);
    return true;
  }();
  (void)installed;
}

PluginCall::PluginCall(const char* pluginPath, const char* callName)
    : previousPath_(currentPath.exchange(pluginPath)),
      previousCall_(currentCall.exchange(callName)) {}

PluginCall::~PluginCall() {
  currentCall.store(previousCall_);
  currentPath.store(previousPath_);
}
