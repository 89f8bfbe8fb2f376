// The record of a plug-in's calls to its host: one JSON object per line, with the arguments of
// the extension's requests and notifications.
#include <gtest/gtest.h>

#include <sstream>

#include "host/runtime/host_call_log.h"
#include "platform/host_functions.h"

namespace {

TEST(HostCallLog, OneLinePerCallWithTheExtensionsArguments) {
  ParameterListChange change{24, -14};
  const struct {
    std::int32_t opcode, index;
    VstIntPtr value;
    const void* ptr;
    float opt;
    const char* line;
  } cases[] = {
      {audioMasterAutomate, 5, 0, nullptr, 0.4375f,
       R"({"opcode":"audioMasterAutomate","index":5,"value":0.4375})"},
      {audioMasterAutomate, 6, 0, nullptr, 0.1f,
       R"({"opcode":"audioMasterAutomate","index":6,"value":0.100000001})"},
      {audioMasterVendorSpecific, kHostExtensionOpcode, kHostNotifyParameterList, &change, 0.0f,
       R"({"opcode":"audioMasterVendorSpecific","index":-559038737,"value":0,)"
       R"("notification":"parameterList","firstIndex":24,"delta":-14})"},
      {audioMasterVendorSpecific, kHostExtensionOpcode, kHostNotifyChannelCounts,
       reinterpret_cast<const void*>(std::intptr_t{6}), 0.0f,
       R"({"opcode":"audioMasterVendorSpecific","index":-559038737,"value":13,)"
       R"("notification":"channelCounts","counts":6})"},
      {kHostExtensionOpcode, kHostFunctionLookupIndex, 0, "DB2\"SLIDER", 0.0f,
       R"({"opcode":"hostExtension","index":-559026163,"value":0,"request":"lookup",)"
       R"("name":"DB2\"SLIDER"})"},
      {99, 0, 0, nullptr, 0.0f, R"({"opcode":"opcode 99","index":0,"value":0})"},
  };
  for (const auto& c : cases) {
    std::ostringstream out;
    writeHostCall(out, c.opcode, c.index, c.value, c.ptr, c.opt);
    EXPECT_EQ(out.str(), std::string(c.line) + "\n");
  }
}

}  // namespace
