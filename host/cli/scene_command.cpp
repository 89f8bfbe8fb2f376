#include "host/cli/scene_command.h"

#include "host/core/host_error.h"

void addSceneCommand(CLI::App& app, SceneOptions& options) {
  CLI::App* scene = app.add_subcommand("scene", "Spatiola state blocks as readable JSON");
  scene->require_subcommand(1);
  CLI::App* exporter = scene->add_subcommand("export", "state block -> JSON on standard output");
  exporter->add_option("state", options.exportPath, "state block file")->required();
  CLI::App* importer = scene->add_subcommand("import", "JSON -> state block on standard output");
  importer->add_option("json", options.importPath, "scene JSON file ('-': standard input)")
      ->required();
  scene->add_option("-o,--output", options.outputPath, "write here instead of standard output");
}

int runScene(const SceneOptions& /*options*/, std::istream& /*in*/, std::ostream& /*out*/) {
  throw HostError("scene conversion needs the model library, which this build lacks");
}
