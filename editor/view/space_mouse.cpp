// Placeholder until the mouse editing lands.
#include "editor/view/space_mouse.h"

bool hitTestAndGrab(PannerPlugin& /*plugin*/, int /*mouseX*/, int /*mouseY*/, int /*width*/,
                    int /*height*/, bool /*inlineView*/) {
  return false;
}
bool dragTo(PannerPlugin& /*plugin*/, int /*mouseX*/, int /*mouseY*/, int /*width*/,
            int /*height*/) {
  return false;
}
void finishDrag(PannerPlugin& /*plugin*/) {}
void finishBandSelect(PannerPlugin& /*plugin*/, int /*mouseX*/, int /*mouseY*/, int /*width*/,
                      int /*height*/) {}
void startBandSelect(PannerPlugin& /*plugin*/, int /*mouseX*/, int /*mouseY*/) {}
void resetPositions(PannerPlugin& /*plugin*/) {}
