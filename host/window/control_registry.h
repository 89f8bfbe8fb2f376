// Creators of custom control classes that plug-ins register with the window layer. The editor
// back-end asks them, in registration order, to make the controls of a dialog template.
#pragma once

#include <vector>

#include "platform/plask_api.h"

// [UI thread] A creator registered twice is kept once.
void registerControlCreator(PlaskControlCreator creator);
void unregisterControlCreator(PlaskControlCreator creator);
std::vector<PlaskControlCreator> registeredControlCreators();
