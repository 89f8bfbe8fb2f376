// Placeholder until the inline view lands.
#include "plugin/editor_link.h"

VstIntPtr handleInlineMessage(PannerPlugin& /*plugin*/, int /*message*/, VstIntPtr /*value*/,
                              void* /*ptr*/) {
  return 0;
}
