// Placeholder until the space view control lands.
#include "plugin/editor_link.h"

PlaskControlCreator spaceViewControlCreator() {
  return nullptr;
}
