// Turns a fault inside a plug-in into a message that names the plug-in and the call, e.g.
// "spatiola: the plug-in /path/x.so crashed in effSetChunk (signal 11)", then exits with
// 128 + the signal number. Faults outside plug-in calls keep their default behaviour.
#pragma once

// Installs the handlers for SIGSEGV, SIGBUS, SIGFPE, SIGILL and SIGABRT (once per process).
void installCrashReporter();

// Marks a call into a plug-in for the lifetime of the object. Nested calls (a plug-in calling the
// host, which calls the plug-in again) restore the outer call when they end; null strings mark
// host code running inside a plug-in call. Both strings must outlive the object. [the thread that
// calls the plug-in]
class PluginCall {
 public:
  PluginCall(const char* pluginPath, const char* callName);
  ~PluginCall();
  PluginCall(const PluginCall&) = delete;
  PluginCall& operator=(const PluginCall&) = delete;

 private:
  const char* previousPath_;
  const char* previousCall_;
};
