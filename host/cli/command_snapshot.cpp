#include <filesystem>

#include "host/cli/commands.h"

int runSnapshot(const SnapshotOptions& options, std::ostream& out) {
  const SnapshotResult result =
      options.editor ? writeEditorSnapshot(options) : writeSnapshot(options);
  std::error_code ignored;
  out << "wrote the " << (options.editor ? "editor" : "inline view") << " of " << result.effectName
      << " (" << result.size.widthPx << "x" << result.size.heightPx << " px at "
      << options.scale256 * 100 / 256 << " %) to "
      << std::filesystem::absolute(options.outputPath, ignored).lexically_normal().string() << "\n";
  return 0;
}
