// spatiola edit: a plug-in's editor in a window of the screen, or headless under a script.
#include <fstream>
#include <memory>

#include "host/cli/commands.h"
#include "host/cli/editor_session.h"
#include "host/runtime/host_error.h"
#include "host/services/settings.h"
#include "host/window/accelerators.h"
#include "host/window/backend/headless_backend.h"
#include "host/window/backend/sdl_backend.h"

namespace {

// The window system the plug-in's window-layer calls act on while it lives.
class CurrentWindowSystem {
 public:
  explicit CurrentWindowSystem(std::unique_ptr<winsys::Backend> backend)
      : system(std::move(backend)) {
    winsys::WindowSystem::setCurrent(&system);
    system.setAcceleratorSource(&registeredAccelerators);
  }
  ~CurrentWindowSystem() { winsys::WindowSystem::setCurrent(nullptr); }
  CurrentWindowSystem(const CurrentWindowSystem&) = delete;
  CurrentWindowSystem& operator=(const CurrentWindowSystem&) = delete;

  winsys::WindowSystem system;
};

std::vector<ScriptStep> readScript(const std::string& path) {
  std::ifstream in(path);
  if (!in) throw HostError("cannot read the script " + path);
  return parseEditScript(in, path);
}

std::unique_ptr<winsys::Backend> screenBackend() {
  std::string error;
  std::unique_ptr<winsys::SdlBackend> backend = winsys::SdlBackend::open(&error);
  if (backend == nullptr) {
    throw HostError(error + "; without a display use --headless --script FILE");
  }
  return backend;
}

// Stops the companion however the editor ends.
class CompanionRun {
 public:
  CompanionRun(const EditCompanion& companion, PluginInstance& instance)
      : companion_(companion), instance_(instance) {
    if (companion_.start) companion_.start(instance_);
  }
  ~CompanionRun() { stop(); }
  CompanionRun(const CompanionRun&) = delete;
  CompanionRun& operator=(const CompanionRun&) = delete;
  void stop() {
    if (!stopped_ && companion_.stop) companion_.stop(instance_);
    stopped_ = true;
  }

 private:
  const EditCompanion& companion_;
  PluginInstance& instance_;
  bool stopped_ = false;
};

}  // namespace

int runEdit(const EditOptions& options, std::ostream& out, std::ostream& notes,
            const EditCompanion& companion) {
  const std::vector<ScriptStep> steps =
      options.headless ? readScript(options.scriptPath) : std::vector<ScriptStep>{};
  std::ofstream log;
  HostConfig config;
  config.trackChannels = options.trackChannels;
  if (companion.configure) companion.configure(config);
  if (config.trackChannels <= 0) config.trackChannels = 2;
  if (!options.automationLogPath.empty()) {
    log.open(options.automationLogPath, std::ios::trunc);
    if (!log) throw HostError("cannot write " + options.automationLogPath);
    config.callLog = &log;
  }
  const int scale256 = displayScale256();
  auto headless = options.headless ? std::make_unique<winsys::HeadlessBackend>(scale256) : nullptr;
  winsys::HeadlessBackend* driverBackend = headless.get();
  CurrentWindowSystem windows(headless ? std::move(headless) : screenBackend());
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, config);
  configurePlugin(*plugin.instance, options.plugin, notes);
  plugin.instance->start();
  CompanionRun beside(companion, *plugin.instance);
  {
    EditorSession session(windows.system, *plugin.instance, scale256);
    if (companion.idle) {
      session.setIdleHook([&session, &companion] { session.setTitleStatus(companion.idle()); });
    }
    if (companion.setParameter) session.setParameterRoute(companion.setParameter);
    if (driverBackend != nullptr) {
      winsys::WindowDriver driver(windows.system, *driverBackend);
      runEditScript(
          steps, {windows.system, driver, session, options.scriptPath, &notes, companion.realTime});
    } else {
      windows.system.runUntilClosed(
          session.frame(), [&session] { session.idle(); }, EditScriptHost::kIdlePeriodMs);
    }
  }
  beside.stop();
  if (!options.saveStatePath.empty()) {
    writeBinaryFile(options.saveStatePath, plugin.instance->chunk());
    out << "saved the state of " << plugin.instance->effectName() << " to " << options.saveStatePath
        << "\n";
  }
  return 0;
}
