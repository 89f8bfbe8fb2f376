// One edit of the dialog reported to the host as automation. Never called under modelMutex: the
// host may call back into the plug-in. [UI thread]
#pragma once

#include "model/host_link.h"

inline void reportParameter(PannerPlugin& plugin, int index, double normalised) {
  callHost(plugin, audioMasterAutomate, index, 0, nullptr, static_cast<float>(normalised));
}

inline void endParameterEdit(PannerPlugin& plugin, int index) {
  callHost(plugin, audioMasterEndEdit, index, 0, nullptr, 0.0f);
}
