// Where a flat parameter index points in the model.
#pragma once

#include "model/field_table.h"
#include "model/panner_plugin.h"

enum class ParameterGroup { None, Global, Input, Speaker };

struct ParameterSlot {
  ParameterGroup group;
  int channel;  // input or speaker index; the global's index for globals
  int field;    // the parameter's offset within its input or speaker
};

// [under modelMutex] Resolves `index` against numParams and the current counts.
ParameterSlot locateParameter(const PannerPlugin& plugin, int index);
