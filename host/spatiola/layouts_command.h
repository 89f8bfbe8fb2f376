// spatiola layouts [--json]: every speaker layout preset of Spatiola with its speakers' names,
// positions and influence, so that a user can see where a render sends each input.
#pragma once

#include <CLI/CLI.hpp>
#include <ostream>

struct LayoutsOptions {
  bool json = false;
};

void addLayoutsCommand(CLI::App& app, LayoutsOptions& options);
int runLayouts(const LayoutsOptions& options, std::ostream& out);
