#include "host/runtime/crash_guard.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstring>

namespace {

// Read by the signal handler, which runs on the faulting thread: per thread, so that the audio
// thread's calls and the UI thread's never overwrite each other; plain atomics, lock-free.
thread_local std::atomic<const char*> currentPath{nullptr};
thread_local std::atomic<const char*> currentCall{nullptr};

constexpr int kFaultSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr std::size_t kAlternateStackBytes = std::size_t{64} * 1024;
alignas(16) char alternateStack[kAlternateStackBytes];

void writeText(const char* text) {
  std::size_t left = std::strlen(text);
  while (left > 0) {
    const ssize_t written = write(STDERR_FILENO, text, left);
    if (written <= 0) return;
    text += written;
    left -= static_cast<std::size_t>(written);
  }
}

void writeNumber(int value) {
  char digits[16];
  int i = sizeof(digits) - 1;
  digits[i] = '\0';
  do {
    digits[--i] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value > 0 && i > 0);
  writeText(digits + i);
}

// Only async-signal-safe calls from here on.
void onFault(int signalNumber) {
  const char* path = currentPath.load();
  const char* call = currentCall.load();
  if (path == nullptr || call == nullptr) {
    signal(signalNumber, SIG_DFL);
    raise(signalNumber);
    return;
  }
  writeText("spatiola: the plug-in ");
  writeText(path);
  writeText(" crashed in ");
  writeText(call);
  writeText(" (signal ");
  writeNumber(signalNumber);
  writeText(")\n");
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
