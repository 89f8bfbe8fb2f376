// A record of every call a plug-in makes to its host, one JSON object per line, so that an editing
// session can be checked or repeated exactly. [the instance's thread]
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "platform/vst2.h"

// "audioMasterAutomate", ...; the host-extension opcode is "hostExtension"; others "opcode <n>".
std::string hostOpcodeName(std::int32_t opcode);

// One line: {"opcode":NAME,"index":N,"value":V} with, for audioMasterAutomate, the parameter's
// normalised value as V; and for the vendor-specific notifications and the host-extension requests
// their arguments (the moved parameter range, the channel counts, the function looked up).
void writeHostCall(std::ostream& out, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                   const void* ptr, float opt);
