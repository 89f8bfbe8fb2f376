// The picture of a plug-in's whole editor, drawn in a headless window.
#include "host/cli/complete_file.h"
#include "host/cli/editor_session.h"
#include "host/cli/snapshot.h"
#include "host/runtime/host_error.h"
#include "host/window/backend/headless_backend.h"

namespace {

// Editors fill their controls on their first timer ticks.
constexpr std::uint32_t kSettleMs = 2 * EditScriptHost::kIdlePeriodMs;

}  // namespace

SnapshotResult writeEditorSnapshot(const SnapshotOptions& options) {
  const int scale256 = checkedAdvisoryScale(options.scale256);
  winsys::WindowSystem system(std::make_unique<winsys::HeadlessBackend>(scale256));
  winsys::WindowSystem::setCurrent(&system);
  struct Uncurrent {
    ~Uncurrent() { winsys::WindowSystem::setCurrent(nullptr); }
  } uncurrent;
  HostConfig config;
  config.trackChannels = options.trackChannels;
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, config);
  configurePlugin(*plugin.instance, options.plugin);
  plugin.instance->start();
  EditorSession session(system, *plugin.instance, scale256);
  for (std::uint32_t ms = 0; ms < kSettleMs; ms += EditScriptHost::kIdlePeriodMs) {
    system.advanceClock(EditScriptHost::kIdlePeriodMs);
    session.idle();
  }
  const winsys::Window* frame = system.find(session.frame());
  const BitmapSize size{frame->clientWidth(), frame->clientHeight()};
  writeCompleteFile(options.outputPath, [&](const std::string& partialPath) {
    std::string error;
    if (!system.renderToPng(session.frame(), partialPath, &error)) {
      throw HostError("cannot write " + options.outputPath + ": " + error);
    }
  });
  return SnapshotResult{plugin.instance->effectName(), size};
}
