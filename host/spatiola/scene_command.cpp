#include "host/spatiola/scene_command.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <sstream>

#include "host/cli/plugin_setup.h"
#include "host/runtime/file_problem.h"
#include "host/runtime/host_error.h"
#include "host/spatiola/scene_json.h"

namespace {

std::string readText(const std::string& path, std::istream& in) {
  std::stringstream text;
  if (path == "-") {
    text << in.rdbuf();
    return text.str();
  }
  std::ifstream file(path);
  if (!file) throw HostError("cannot read " + path + ": " + fileProblem(errno));
  text << file.rdbuf();
  return text.str();
}

void writeResult(const std::string& outputPath, const std::string& bytes, std::ostream& out) {
  if (outputPath.empty()) {
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.flush();
    return;
  }
  writeBinaryFile(outputPath, std::vector<unsigned char>(bytes.begin(), bytes.end()));
}

}  // namespace

void addSceneCommand(CLI::App& app, SceneOptions& options) {
  CLI::App* scene = app.add_subcommand("scene", "Spatiola state blocks as readable JSON");
  scene->require_subcommand(1);
  CLI::App* exporter = scene->add_subcommand("export", "state block -> JSON on standard output");
  exporter->add_option("state", options.exportPath, "state block file")->required();
  CLI::App* importer = scene->add_subcommand("import", "JSON -> state block on standard output");
  importer->add_option("json", options.importPath, "scene JSON file ('-': standard input)")
      ->required();
  for (CLI::App* command : {exporter, importer}) {
    command->add_option("-o,--output", options.outputPath, "write here instead of standard output");
  }
}

int runScene(const SceneOptions& options, std::istream& in, std::ostream& out,
             std::ostream& notes) {
  if (!options.exportPath.empty()) {
    const std::vector<unsigned char> block = readBinaryFile(options.exportPath);
    writeResult(options.outputPath, exportScene(block), out);
    if (!isCanonicalStateBlock(block)) {
      notes << "note: " << options.exportPath
            << " is not a block as the plug-in writes it (an older version, cut off, or values "
               "out of range); the scene holds what the plug-in loads from it\n";
    }
    return 0;
  }
  const std::vector<unsigned char> block =
      importScene(readText(options.importPath, in), options.importPath);
  writeResult(options.outputPath, std::string(block.begin(), block.end()), out);
  return 0;
}
