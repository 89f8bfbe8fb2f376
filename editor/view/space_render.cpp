// Placeholder until the room drawing lands.
#include "editor/view/space_render.h"

#include "plugin/editor_link.h"

const DAUB_pixel inputPalette[kInputPaletteSize] = {};

void renderSpace(PannerPlugin& /*plugin*/, DAUB_IBitmap* /*front*/, DAUB_IBitmap* /*back*/,
                 std::uint32_t /*flags*/) {}

void drawEllipse(DAUB_IBitmap* /*bitmap*/, DAUB_pixel /*color*/, float /*cx*/, float /*cy*/,
                 float /*rx*/, float /*ry*/, float /*angleRad*/, float /*alpha*/) {}

void releaseSharedDrawingResources() {}
