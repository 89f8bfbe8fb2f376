// Loading plug-ins in-process: the window layer and module binding, the host callback's answers,
// buffers that follow channel-count changes, idle calls, and the errors for files that are no
// plug-in.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <tuple>

#include "host/runtime/plugin_instance.h"
#include "host/runtime/plugin_module.h"
#include "platform/host_functions.h"
#include "tests/host/runtime/test_support.h"
#include "tests/host/services/temp_config.h"

namespace {

const std::string kProbeDir = PROBE_DIR;
constexpr std::int32_t kReportEdit = 1000;
constexpr std::int32_t kChangeOutputs = 1001;
constexpr std::int32_t kAnnounceCounts = 1002;

// The probe's state block: what it was offered, as key=value lines.
std::string reportOf(PluginInstance& instance) {
  const std::vector<unsigned char> bytes = instance.chunk();
  return {bytes.begin(), bytes.end()};
}

// Each recorded host event as (kind, index, value, render position).
using Event = std::tuple<HostEventKind, std::int32_t, float, std::int64_t>;
std::vector<Event> eventsOf(const PluginInstance& instance) {
  std::vector<Event> events;
  for (const HostEvent& e : instance.events())
    events.emplace_back(e.kind, e.index, e.value, e.samplePosition);
  return events;
}

// Every call the probes in this process were given, in order, comma-separated.
std::string probeCallLog(const std::string& path) {
  void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle == nullptr) return {};
  const auto log = reinterpret_cast<const char* (*)()>(dlsym(handle, "probe_call_log"));
  const std::string text = log != nullptr ? log() : "";
  dlclose(handle);
  return text;
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
  // The channel-count query, every name of the window layer (lstrcpyn called through it cuts at
  // 7 - 1 characters), DllMain, its own file through the window layer, two host functions.
  EXPECT_EQ(reportOf(instance),
            "track_channels=3\nbound_names=335\nlstrcpyn=window\ndll_main=1\nmodule_file=" +
                kProbeDir + "/probe.so\nini_file=" + config_.dir() +
                "/spatiola/spatiola.ini\nslider_top_db=12.000\n"
                "idle_calls=0\nprocess_calls=0\ngain=0.500000\n"
                "calls=open,rate 48000,block 512,precision 1\n");
  EXPECT_EQ(std::pair(instance.inputCount(), instance.outputCount()), std::pair(3, 3));
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
  instance.process(0);  // never reaches the probe, which crashes on an empty block
  EXPECT_EQ(std::pair(instance.outputBuffer(1)[9], instance.outputBuffer(0)[9]),
            std::pair(0.45, 0.0));
  // An idle call after every block.
  EXPECT_TRUE(contains(reportOf(instance), "idle_calls=2\nprocess_calls=2\n"));
}

// The probe, like plug-ins of common frameworks, ignores parameters and state before effOpen.
TEST_F(ProbeHost, CallsComeInTheOrderEstablishedHostsUse) {
  HostConfig config;
  config.sampleRate = 44100.0;
  config.blockSize = 32;
  {
    PluginInstance instance(module_, config);
    instance.setParameter(0, 0.25f);
    instance.setChunk({'g', 'a', 'i', 'n', '=', '1'});
    instance.start();
    instance.process(32);
    instance.stop();
    instance.start();
    EXPECT_EQ(instance.parameter(0), 1.0f);
  }  // closed while running
  const std::string log = probeCallLog(kProbeDir + "/probe.so");
  EXPECT_TRUE(
      log.ends_with("open,rate 44100,block 32,precision 1,set 0 0.250,chunk,mains 1,"
                    "start,process 32,stop,mains 0,mains 1,start,stop,mains 0,close"))
      << log;
}

TEST_F(ProbeHost, ChannelCountChangesResizeTheBuffers) {
  PluginInstance instance(module_, HostConfig{});
  EXPECT_EQ(instance.dispatch("effVendorSpecific", effVendorSpecific, kChangeOutputs, 6), 1);
  EXPECT_EQ(eventsOf(instance).back(), Event(HostEventKind::IOChanged, 0, 0.0f, 0));
  instance.start();
  instance.inputBuffer(0)[0] = 0.5;
  instance.process(1);
  EXPECT_EQ(std::pair(instance.outputBuffer(0)[0], instance.outputBuffer(5)[0]),
            std::pair(0.5, 0.0));
  // The extension's count notification re-reads the counts too.
  instance.effect().numOutputs = 4;
  const VstIntPtr packed = (4 << 20) | (2 << 12) | 0xF00;
  instance.dispatch("effVendorSpecific", effVendorSpecific, kAnnounceCounts, packed);
  EXPECT_EQ(instance.outputCount(), 4);
  EXPECT_EQ(eventsOf(instance).back(), Event(HostEventKind::ChannelCounts, packed, 0.0f, 0));
}

// Edits are recorded as automation events at the render position.
TEST_F(ProbeHost, CallbackAnswersTheStandardRequestsAndRecordsEdits) {
  HostConfig config;
  config.sampleRate = 44100.0;
  config.blockSize = 256;
  PluginInstance instance(module_, config);
  const auto answer = [&](std::int32_t opcode, void* ptr = nullptr, std::int32_t index = 0,
                          VstIntPtr value = 0) {
    return instance.answer(opcode, index, value, ptr, 0);
  };
  char vendor[64] = {}, product[64] = {}, acceptIo[] = "acceptIOChanges", sends[] = "sendVstEvents";
  ParameterListChange change{4, -10};
  instance.setSamplePosition(88200);
  EXPECT_EQ((std::array{answer(audioMasterVersion), answer(audioMasterGetSampleRate),
                        answer(audioMasterGetBlockSize), answer(audioMasterGetCurrentProcessLevel),
                        answer(audioMasterGetVendorString, vendor),
                        answer(audioMasterGetProductString, product),
                        answer(audioMasterCanDo, acceptIo), answer(audioMasterCanDo, sends),
                        answer(kHostExtensionOpcode, nullptr, kHostChannelCountIndex, 5),
                        answer(audioMasterVendorSpecific, &change, kHostExtensionOpcode,
                               kHostNotifyParameterList)}),
            (std::array<VstIntPtr, 10>{2400, 44100, 256, 1, 1, 1, 1, 0, 2, 1}));
  EXPECT_EQ(std::string(vendor) + "/" + product, "Tolvek/Spatiola Host");
  const auto* time = reinterpret_cast<const VstTimeInfo*>(answer(audioMasterGetTime));  // NOLINT
  ASSERT_NE(time, nullptr);
  // Two seconds at 120 bpm, playing.
  EXPECT_EQ((std::array{time->samplePos, time->sampleRate, time->ppqPos}),
            (std::array{88200.0, 44100.0, 4.0}));
  EXPECT_NE(time->flags & kVstTransportPlaying, 0);
  instance.dispatch("effVendorSpecific", effVendorSpecific, kReportEdit);
  EXPECT_EQ(eventsOf(instance),
            (std::vector<Event>{{HostEventKind::ParameterListMoved, 4, -10.0f, 88200},
                                {HostEventKind::BeginEdit, 0, 0.0f, 88200},
                                {HostEventKind::Automate, 0, 0.75f, 88200},
                                {HostEventKind::EndEdit, 0, 0.0f, 88200}}));
}

TEST_F(ProbeHost, LegacyEntryAndSinglePrecisionVariantsLoad) {
  const PluginModule legacy(kProbeDir + "/probe_legacy.so");
  EXPECT_STREQ(legacy.entryName(), "main");
  EXPECT_EQ(PluginInstance(legacy, HostConfig{}).effectName(), "Probe");
  const PluginModule floatModule(kProbeDir + "/probe_float.so");
  PluginInstance instance(floatModule, HostConfig{});
  EXPECT_FALSE(instance.hasDoublePrecision());
  instance.start();
  instance.inputBuffer(0)[0] = 0.25;
  instance.process(1);
  EXPECT_DOUBLE_EQ(instance.outputBuffer(0)[0], 0.25);
}

// Loading errors name the file and what is wrong; refusing plug-ins and crashes inside a call are
// covered end to end.
TEST(PluginErrors, NameTheFileAndWhatIsWrong) {
  const TempConfig config;
  const std::string text = config.dir() + "/text.so", elf32 = config.dir() + "/elf32.so";
  std::ofstream(text) << "hello";
  // An ELF header of a 32-bit x86 shared library: class 1, little-endian, type 3, machine 3.
  using namespace std::string_literals;
  std::ofstream(elf32, std::ios::binary) << "\177ELF\1\1\1"s + std::string(9, '\0') + "\3\0\3\0"s;
  const std::pair<std::string, std::string> cases[] = {
      {"/nonexistent/missing.so",
       "cannot read the plug-in /nonexistent/missing.so: no such file or folder"},
      {"/usr/lib/x86_64-linux-gnu/libsndfile.so.1",
       "/usr/lib/x86_64-linux-gnu/libsndfile.so.1 is not a VST 2.x plug-in: it exports neither "
       "VSTPluginMain nor main"},
      {text, text + " is not a plug-in: it is no shared library (ELF) file"},
      {elf32, elf32 + " is a 32-bit plug-in, and this host runs only 64-bit ones; there is no "
                      "32-bit spatiola host to run it"},
      {kProbeDir + "/probe_needs_library.so",
       "the plug-in " + kProbeDir +
           "/probe_needs_library.so needs the library libprobe_dependency.so, which is not "
           "installed (or not where the loader looks)"}};
  for (const auto& [path, message] : cases) {
    EXPECT_EQ(errorOf([&] { PluginInstance(PluginModule(path), HostConfig{}); }), message);
  }
}
