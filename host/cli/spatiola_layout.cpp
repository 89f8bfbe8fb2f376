#include "host/cli/spatiola_layout.h"

#include "host/cli/plugin_setup.h"
#include "host/core/host_error.h"
#include "host/core/plugin_instance.h"

void applySpatiolaLayout(PluginInstance& instance, const std::string& layout) {
  if (!isSpatiola(instance.effect())) {
    throw HostError("--layout applies to Spatiola only; " + instance.module().path() +
                    " is another plug-in");
  }
  throw HostError("--layout '" + layout + "' needs the model library, which this build lacks");
}
