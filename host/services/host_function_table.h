// The host functions a plug-in fetches by name through the callback (opcode 0xdeadbeef, index
// 0xdeadf00d): the one table built from HOST_FUNCTION_LIST.
#pragma once

// The function's address, or null for names the host does not offer.
void* findHostFunction(const char* name);

struct HostFunctionInfo {
  const char* name;
  bool offered;
};
// All 39 names in lookup order, with whether the host answers them.
const HostFunctionInfo* hostFunctionTable();
