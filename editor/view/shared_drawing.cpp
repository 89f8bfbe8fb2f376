#include "editor/view/shared_drawing.h"

#include "editor/view/dpi_aware_font.h"

void makeSharedDrawingResources() {
  sharedLabelFont();
  makeSpeakerIcons();
}

void releaseViewDrawingResources() {
  delete labelFont;
  labelFont = nullptr;
  delete boldFont;
  boldFont = nullptr;
  for (DAUB_IBitmap*& icon : speakerIcons) {
    delete icon;  // the host's deleting destructor
    icon = nullptr;
  }
}
