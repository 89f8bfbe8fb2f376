// spatiola demo: a four-source scene rendered through Spatiola to 5.1, with its room as PNG.
#pragma once

#include <ostream>
#include <string>

struct DemoOptions {
  std::string pluginPath;
  std::string directory = "spatiola-demo";
  double seconds = 8.0;
};
int runDemo(const DemoOptions& options, std::ostream& out, std::ostream& notes);
