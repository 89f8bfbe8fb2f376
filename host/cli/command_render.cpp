#include "host/cli/commands.h"
#include "host/cli/plural.h"

int runRender(const RenderOptions& options, std::ostream& out, std::ostream& notes) {
  const RenderResult result = renderFile(options, notes);
  out << "rendered " << counted(result.frames, "sample") << " (" << result.inputChannels << " -> "
      << counted(result.outputChannels, "channel") << ", " << result.sampleRate << " Hz) to "
      << options.outputPath << "\n";
  printLevelTable(out, result.levels, result.channels, result.integerFile);
  return 0;
}
