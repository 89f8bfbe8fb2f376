// Placeholder until the position readout lands.
#include "editor/view/position_readout.h"

void appendFormat(char* /*buffer*/, int /*capacity*/, const char* /*format*/, ...) {}
void formatPosition(char* text, int capacity, double /*x*/, double /*y*/, double /*z*/) {
  if (capacity > 0) text[0] = '\0';
}
void showPositionReadout(PannerPlugin& /*plugin*/, int /*inputIndex*/, int /*speakerIndex*/) {}
void setInfoText(PannerPlugin& /*plugin*/, const char* /*text*/) {}
