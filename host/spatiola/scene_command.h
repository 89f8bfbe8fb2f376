// spatiola scene export STATE.bin > scene.json, spatiola scene import scene.json > STATE.bin.
#pragma once

#include <CLI/CLI.hpp>
#include <istream>
#include <ostream>
#include <string>

struct SceneOptions {
  std::string exportPath;  // state block to read
  std::string importPath;  // JSON to read ("-": standard input)
  std::string outputPath;  // empty: standard output
};

void addSceneCommand(CLI::App& app, SceneOptions& options);
// `notes` tells when an exported block is not one the plug-in wrote.
int runScene(const SceneOptions& options, std::istream& in, std::ostream& out, std::ostream& notes);
