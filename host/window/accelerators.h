// The keyboard hooks plug-ins register with plugin_register("<accelerator", record) and remove
// with "-accelerator". The on-screen back-end offers key messages to them, newest first.
#pragma once

#include <vector>

#include "platform/host_functions.h"

// The host function plugin_register: 1 when the record was added or removed; 0 for other names,
// a null record, or a removal of a record that was not registered.
int pluginRegister(const char* name, void* record);

std::vector<AcceleratorRegister*> registeredAccelerators();
