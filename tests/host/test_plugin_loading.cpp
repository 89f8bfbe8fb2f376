// Loading plug-ins in-process: the window layer and module binding, the host callback's answers,
// buffers that follow channel-count changes, idle calls, and the errors for files that are no
// plug-in.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "host/core/host_error.h"
#include "host/core/plugin_instance.h"
#include "host/core/plugin_module.h"
#include "platform/host_functions.h"
#include "tests/host/temp_config.h"

namespace {

const std::string kProbeDir = PROBE_DIR;
constexpr std::int32_t kReportEdit = 1000;
constexpr std::int32_t kChangeOutputs = 1001;
constexpr std::int32_t kAnnounceCounts = 1002;
constexpr std::int32_t kCallWindowLayer = 1003;

// The probe's state block: key=value lines.
std::map<std::string, std::string> reportOf(PluginInstance& instance) {
  const std::vector<unsigned char> bytes = instance.chunk();
  std::istringstream lines(std::string(bytes.begin(), bytes.end()));
  std::map<std::string, std::string> report;
  std::string line;
  while (std::getline(lines, line)) {
    const auto equals = line.find('=');
    report[line.substr(0, equals)] = line.substr(equals + 1);
  }
  return report;
}

std::string errorOf(const std::string& path) {
  try {
    const PluginModule module(path);
    const PluginInstance instance(module, HostConfig{});
  } catch (const HostError& error) {
    return error.what();
  }
  return "";
}

class ProbeHost : public ::testing::Test {
 protected:
  TempConfig config_;
  PluginModule module_{kProbeDir + "/probe.so"};
};

}  // namespace

TEST_F(ProbeHost, BindsWindowLayerAndModuleBeforeTheInstance) {
  HostConfig config;
  config.trackChannels = 3;
  PluginInstance instance(module_, config);
  EXPECT_TRUE(module_.exportsWindowBinding());
  EXPECT_STREQ(module_.entryName(), "VSTPluginMain");
  const auto report = reportOf(instance);
  EXPECT_EQ(report.at("bound_names"), "335");  // every name of the list resolved
  EXPECT_EQ(report.at("dll_main"), "1");
  EXPECT_EQ(report.at("track_channels"), "3");  // the channel-count query
  EXPECT_EQ(report.at("ini_file"), config_.dir() + "/spatiola/spatiola.ini");
  EXPECT_EQ(report.at("slider_top_db"), "12.000");
  EXPECT_EQ(instance.inputCount(), 3);
  EXPECT_EQ(instance.outputCount(), 3);
  char text[16] = {};
  instance.dispatch("effVendorSpecific", effVendorSpecific, kCallWindowLayer, 0, text);
  EXPECT_STREQ(text, "window");  // the bound lstrcpyn, cut at 7 - 1 characters
}

TEST_F(ProbeHost, IdentityStringsAndParameters) {
  PluginInstance instance(module_, HostConfig{});
  EXPECT_EQ(instance.effectName(), "Probe");
  EXPECT_EQ(instance.vendorString(), "Host Tests");
  EXPECT_EQ(instance.productString(), "Probe Plug-in");
  EXPECT_EQ(instance.vendorVersion(), 7);
  EXPECT_EQ(instance.parameterCount(), 2);
  EXPECT_EQ(instance.findParameter("mode, with comma"), 1);
  EXPECT_EQ(instance.findParameter("Gain"), -1);  // names match exactly
  instance.setParameter(0, 0.25f);
  EXPECT_FLOAT_EQ(instance.parameter(0), 0.25f);
  EXPECT_EQ(instance.parameterDisplay(0), "0.250");
  EXPECT_EQ(instance.parameterLabel(0), "x2");
}

TEST_F(ProbeHost, ProcessesInDoublePrecisionAndIdlesAfterEachBlock) {
  HostConfig config;
  config.blockSize = 64;
  PluginInstance instance(module_, config);
  ASSERT_TRUE(instance.hasDoublePrecision());
  instance.start();  // effOpen asks for idle calls
  EXPECT_TRUE(instance.wantsIdle());
  instance.setParameter(0, 0.25f);  // x0.5
  for (int f = 0; f < 64; ++f) instance.inputBuffer(1)[f] = 0.1 * f;
  instance.process(64);
  instance.process(10);
  EXPECT_DOUBLE_EQ(instance.outputBuffer(1)[9], 0.45);
  EXPECT_DOUBLE_EQ(instance.outputBuffer(0)[9], 0.0);
  const auto report = reportOf(instance);
  EXPECT_EQ(report.at("process_calls"), "3");  // the empty block of start, then two
  EXPECT_EQ(report.at("idle_calls"), "3");     // after every block
}

TEST_F(ProbeHost, RecordsEditsAsAutomationEventsAtTheRenderPosition) {
  PluginInstance instance(module_, HostConfig{});
  instance.setSamplePosition(4800);
  instance.dispatch("effVendorSpecific", effVendorSpecific, kReportEdit);
  ASSERT_EQ(instance.events().size(), 3u);
  EXPECT_EQ(instance.events()[0].kind, HostEventKind::BeginEdit);
  EXPECT_EQ(instance.events()[1].kind, HostEventKind::Automate);
  EXPECT_FLOAT_EQ(instance.events()[1].value, 0.75f);
  EXPECT_EQ(instance.events()[1].samplePosition, 4800);
  EXPECT_EQ(instance.events()[2].kind, HostEventKind::EndEdit);
  instance.clearEvents();
  EXPECT_TRUE(instance.events().empty());
}

TEST_F(ProbeHost, ChannelCountChangesResizeTheBuffers) {
  PluginInstance instance(module_, HostConfig{});
  EXPECT_EQ(instance.dispatch("effVendorSpecific", effVendorSpecific, kChangeOutputs, 6), 1);
  EXPECT_EQ(instance.outputCount(), 6);
  EXPECT_EQ(instance.events().back().kind, HostEventKind::IOChanged);
  instance.start();
  instance.inputBuffer(0)[0] = 0.5;
  instance.process(1);
  EXPECT_DOUBLE_EQ(instance.outputBuffer(0)[0], 0.5);
  EXPECT_DOUBLE_EQ(instance.outputBuffer(5)[0], 0.0);
  // The extension's count notification re-reads the counts too.
  instance.effect().numOutputs = 4;
  const VstIntPtr packed = (4 << 20) | (2 << 12) | 0xF00;
  instance.dispatch("effVendorSpecific", effVendorSpecific, kAnnounceCounts, packed);
  EXPECT_EQ(instance.outputCount(), 4);
  EXPECT_EQ(instance.events().back().kind, HostEventKind::ChannelCounts);
  EXPECT_EQ(instance.events().back().index, packed);
}

TEST_F(ProbeHost, CallbackAnswersTheStandardRequests) {
  HostConfig config;
  config.sampleRate = 44100.0;
  config.blockSize = 256;
  PluginInstance instance(module_, config);
  EXPECT_EQ(instance.answer(audioMasterVersion, 0, 0, nullptr, 0), 2400);
  EXPECT_EQ(instance.answer(audioMasterGetSampleRate, 0, 0, nullptr, 0), 44100);
  EXPECT_EQ(instance.answer(audioMasterGetBlockSize, 0, 0, nullptr, 0), 256);
  EXPECT_EQ(instance.answer(audioMasterGetCurrentProcessLevel, 0, 0, nullptr, 0), 1);
  char text[64] = {};
  EXPECT_EQ(instance.answer(audioMasterGetVendorString, 0, 0, text, 0), 1);
  EXPECT_STREQ(text, "Tolvek");
  EXPECT_EQ(instance.answer(audioMasterGetProductString, 0, 0, text, 0), 1);
  EXPECT_STREQ(text, "Spatiola Host");
  char acceptIo[] = "acceptIOChanges";
  char sendEvents[] = "sendVstEvents";
  EXPECT_EQ(instance.answer(audioMasterCanDo, 0, 0, acceptIo, 0), 1);
  EXPECT_EQ(instance.answer(audioMasterCanDo, 0, 0, sendEvents, 0), 0);
  instance.setSamplePosition(88200);
  const auto* time = reinterpret_cast<const VstTimeInfo*>(  // NOLINT(performance-no-int-to-ptr)
      instance.answer(audioMasterGetTime, 0, 0, nullptr, 0));
  ASSERT_NE(time, nullptr);
  EXPECT_DOUBLE_EQ(time->samplePos, 88200.0);
  EXPECT_DOUBLE_EQ(time->sampleRate, 44100.0);
  EXPECT_DOUBLE_EQ(time->ppqPos, 4.0);  // two seconds at 120 bpm
  EXPECT_NE(time->flags & kVstTransportPlaying, 0);
  char name[] = "DB2SLIDER";
  EXPECT_NE(instance.answer(kHostExtensionOpcode, kHostFunctionLookupIndex, 0, name, 0), 0);
  EXPECT_EQ(instance.answer(kHostExtensionOpcode, kHostChannelCountIndex, 5, nullptr, 0), 2);
  ParameterListChange change{4, -10};
  EXPECT_EQ(instance.answer(audioMasterVendorSpecific, kHostExtensionOpcode,
                            kHostNotifyParameterList, &change, 0),
            1);
  EXPECT_EQ(instance.events().back().kind, HostEventKind::ParameterListMoved);
  EXPECT_EQ(instance.events().back().index, 4);
  EXPECT_FLOAT_EQ(instance.events().back().value, -10.0f);
}

TEST_F(ProbeHost, FallsBackToSinglePrecision) {
  const PluginModule floatModule(kProbeDir + "/probe_float.so");
  PluginInstance instance(floatModule, HostConfig{});
  EXPECT_FALSE(instance.hasDoublePrecision());
  instance.start();
  instance.inputBuffer(0)[0] = 0.25;
  instance.process(1);
  EXPECT_DOUBLE_EQ(instance.outputBuffer(0)[0], 0.25);
}

TEST_F(ProbeHost, LoadsTheLegacyMainEntryPoint) {
  const PluginModule legacy(kProbeDir + "/probe_legacy.so");
  EXPECT_STREQ(legacy.entryName(), "main");
  PluginInstance instance(legacy, HostConfig{});
  EXPECT_EQ(instance.effectName(), "Probe");
}

TEST(PluginErrors, NameTheFileAndWhatIsWrong) {
  TempConfig config;
  const std::string text = config.dir() + "/notes.so";
  std::ofstream(text) << "not a shared object\n";
  EXPECT_NE(errorOf(text).find(text + " is not a plug-in:"), std::string::npos) << errorOf(text);
  const std::string missing = config.dir() + "/missing.so";
  EXPECT_NE(errorOf(missing).find("cannot read the plug-in " + missing), std::string::npos);
  // A real library that is not a plug-in.
  const std::string sndfile = "/usr/lib/x86_64-linux-gnu/libsndfile.so.1";
  EXPECT_NE(errorOf(sndfile).find("exports neither VSTPluginMain nor main"), std::string::npos)
      << errorOf(sndfile);
  const std::string refusing = kProbeDir + "/probe_refusing.so";
  EXPECT_NE(errorOf(refusing).find("refused to create an instance"), std::string::npos)
      << errorOf(refusing);
}

TEST(PluginErrors, ACrashInAPluginCallNamesThePluginAndTheCall) {
  const std::string path = kProbeDir + "/probe_crash.so";
  EXPECT_EXIT(
      {
        const PluginModule module(path);
        PluginInstance instance(module, HostConfig{});
        instance.setChunk({1, 2, 3});
      },
      ::testing::ExitedWithCode(128 + 11),
      "spatiola: the plug-in " + path + " crashed in effSetChunk \\(signal 11\\)");
}
