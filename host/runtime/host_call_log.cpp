#include "host/runtime/host_call_log.h"

#include <array>
#include <cstdio>

#include "platform/host_functions.h"

namespace {

// clang-format off
constexpr std::array<const char*, audioMasterGetInputSpeakerArrangement + 1> kOpcodeNames = {
    "audioMasterAutomate", "audioMasterVersion", "audioMasterCurrentId", "audioMasterIdle",
    "audioMasterPinConnected", "opcode 5", "audioMasterWantMidi", "audioMasterGetTime",
    "audioMasterProcessEvents", "audioMasterSetTime", "audioMasterTempoAt",
    "audioMasterGetNumAutomatableParameters", "audioMasterGetParameterQuantization",
    "audioMasterIOChanged", "audioMasterNeedIdle", "audioMasterSizeWindow",
    "audioMasterGetSampleRate", "audioMasterGetBlockSize", "audioMasterGetInputLatency",
    "audioMasterGetOutputLatency", "audioMasterGetPreviousPlug", "audioMasterGetNextPlug",
    "audioMasterWillReplaceOrAccumulate", "audioMasterGetCurrentProcessLevel",
    "audioMasterGetAutomationState", "audioMasterOfflineStart", "audioMasterOfflineRead",
    "audioMasterOfflineWrite", "audioMasterOfflineGetCurrentPass",
    "audioMasterOfflineGetCurrentMetaPass", "audioMasterSetOutputSampleRate",
    "audioMasterGetOutputSpeakerArrangement", "audioMasterGetVendorString",
    "audioMasterGetProductString", "audioMasterGetVendorVersion", "audioMasterVendorSpecific",
    "audioMasterSetIcon", "audioMasterCanDo", "audioMasterGetLanguage", "audioMasterOpenWindow",
    "audioMasterCloseWindow", "audioMasterGetDirectory", "audioMasterUpdateDisplay",
    "audioMasterBeginEdit", "audioMasterEndEdit", "audioMasterOpenFileSelector",
    "audioMasterCloseFileSelector", "audioMasterEditFile", "audioMasterGetChunkFile",
    "audioMasterGetInputSpeakerArrangement"};
// clang-format on
static_assert(std::string_view(kOpcodeNames[audioMasterVendorSpecific]) ==
                  "audioMasterVendorSpecific" &&
              std::string_view(kOpcodeNames[audioMasterEndEdit]) == "audioMasterEndEdit");

// Plug-in names are C strings of any bytes: quotes, backslashes and controls are escaped.
std::string quoted(const char* text) {
  std::string out = "\"";
  for (const char* c = text; *c != '\0'; ++c) {
    const auto byte = static_cast<unsigned char>(*c);
    if (byte == '"' || byte == '\\') {
      out += '\\';
      out += *c;
    } else if (byte < 0x20) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
      out += escaped;
    } else {
      out += *c;
    }
  }
  return out + "\"";
}

// A float that reads back to the same float.
std::string number(float value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
  return text;
}

std::string vendorArguments(std::int32_t index, VstIntPtr value, const void* ptr) {
  if (index != kHostExtensionOpcode) return "";
  if (value == kHostNotifyParameterList && ptr != nullptr) {
    const auto* change = static_cast<const ParameterListChange*>(ptr);
    return ",\"notification\":\"parameterList\",\"firstIndex\":" +
           std::to_string(change->firstIndex) + ",\"delta\":" + std::to_string(change->delta);
  }
  if (value == kHostNotifyChannelCounts) {
    return ",\"notification\":\"channelCounts\",\"counts\":" +
           std::to_string(reinterpret_cast<std::intptr_t>(ptr));
  }
  return "";
}

std::string extensionArguments(std::int32_t index, const void* ptr) {
  if (index == kHostFunctionLookupIndex && ptr != nullptr) {
    return ",\"request\":\"lookup\",\"name\":" + quoted(static_cast<const char*>(ptr));
  }
  if (index == kHostChannelCountIndex) return ",\"request\":\"channelCount\"";
  return "";
}

}  // namespace

std::string hostOpcodeName(std::int32_t opcode) {
  if (opcode == kHostExtensionOpcode) return "hostExtension";
  if (opcode >= 0 && opcode < static_cast<std::int32_t>(kOpcodeNames.size())) {
    return kOpcodeNames[static_cast<std::size_t>(opcode)];
  }
  return "opcode " + std::to_string(opcode);
}

void writeHostCall(std::ostream& out, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                   const void* ptr, float opt) {
  std::string line = "{\"opcode\":" + quoted(hostOpcodeName(opcode).c_str()) +
                     ",\"index\":" + std::to_string(index) + ",\"value\":";
  line += opcode == audioMasterAutomate ? number(opt) : std::to_string(value);
  if (opcode == audioMasterVendorSpecific) line += vendorArguments(index, value, ptr);
  if (opcode == kHostExtensionOpcode) line += extensionArguments(index, ptr);
  out << line << "}\n" << std::flush;  // complete up to a crash
}
