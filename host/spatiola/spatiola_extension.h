// What the generic commands may ask of Spatiola: its layouts, its input count, its speakers' names
// and the benchmark's moving inputs.
#pragma once

#include "host/cli/plugin_extension.h"

const PluginExtension& spatiolaExtension();
