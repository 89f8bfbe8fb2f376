#include "host/cli/commands.h"

int runRender(const RenderOptions& options, std::ostream& out, std::ostream& notes) {
  const RenderResult result = renderFile(options, notes);
  out << "rendered " << result.frames << " samples (" << result.inputChannels << " -> "
      << result.outputChannels << " channels, " << result.sampleRate << " Hz) to "
      << options.outputPath << "\n";
  printLevelTable(out, result.levels, result.channels, result.integerFile);
  return 0;
}
