#include "host/runtime/interrupt_guard.h"

#include <limits.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstring>

#include "host/runtime/signal_text.h"

namespace {

constexpr int kSlots = 4;

struct Slot {
  std::atomic<bool> inUse{false};
  std::atomic<bool> ready{false};  // both paths written; read by the handler
  char temporaryPath[PATH_MAX] = {};
  char shownPath[PATH_MAX] = {};
};
Slot slots[kSlots];

struct SignalName {
  int number;
  const char* name;
};
constexpr SignalName kInterrupts[] = {{SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};

volatile sig_atomic_t quitAsked = 0;

void setHandler(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  for (const SignalName& entry : kInterrupts) sigaddset(&action.sa_mask, entry.number);
  for (const SignalName& entry : kInterrupts) sigaction(entry.number, &action, nullptr);
}

void copyPath(char (&to)[PATH_MAX], const std::string& from) {
  const std::size_t length = std::min(from.size(), sizeof(to) - 1);
  std::memcpy(to, from.data(), length);
  to[length] = '\0';
}

const char* lastShownPath() {
  const char* shown = nullptr;
  for (Slot& slot : slots) {
    if (slot.ready.load()) shown = slot.shownPath;
  }
  return shown;
}

// Only async-signal-safe calls from here on.
void onInterrupt(int signalNumber) {
  const char* name = "a signal";
  for (const SignalName& entry : kInterrupts) {
    if (entry.number == signalNumber) name = entry.name;
  }
  const char* shown = lastShownPath();
  writeSignalText("\nspatiola: interrupted by ");
  writeSignalText(name);
  if (shown != nullptr) {
    writeSignalText(" while writing ");
    writeSignalText(shown);
    writeSignalText(removeUnfinishedFiles() > 0 ? "; the unfinished file was removed"
                                                : "; nothing was written");
  }
  writeSignalText("\n");
  _exit(128 + signalNumber);
}

}  // namespace

void installInterruptHandlers() {
  static const bool installed = [] {
    setHandler(onInterrupt);
    return true;
  }();
  (void)installed;
}

void quitOnInterrupts() {
  setHandler([](int) { quitAsked = 1; });
}

bool interruptedToQuit() {
  return quitAsked != 0;
}

int removeUnfinishedFiles() {
  int removed = 0;
  for (Slot& slot : slots) {
    if (slot.ready.load() && unlink(slot.temporaryPath) == 0) ++removed;
  }
  return removed;
}

UnfinishedFile::UnfinishedFile(const std::string& temporaryPath, const std::string& shownPath) {
  installInterruptHandlers();
  for (int i = 0; i < kSlots; ++i) {
    bool expected = false;
    if (slots[i].inUse.compare_exchange_strong(expected, true)) {
      copyPath(slots[i].temporaryPath, temporaryPath);
      copyPath(slots[i].shownPath, shownPath);
      slots[i].ready.store(true);
      slot_ = i;
      return;
    }
  }
}

UnfinishedFile::~UnfinishedFile() {
  if (slot_ < 0) return;
  slots[slot_].ready.store(false);
  slots[slot_].inUse.store(false);
}
