// A tiny VST 2.x plug-in the host tests load: it scales every input by 2 x "gain" and reports,
// as its state block of key=value lines, what the host offered it and the calls it made. Like
// plug-ins of common frameworks it ignores parameters and state before effOpen; like some, it
// crashes on an empty block. PROBE_PROCESS_SLEEP_US slows every block; PROBE_INPUTS sets its
// input count. Variants by define: crash (in effSetChunk), refusing (null from its entry), legacy
// (only "main"), float (no doubles), inline (paints what the host passed; "mode" >= 0.5
// declines), synth (no inputs or state), needs-library (links one the loader cannot find).
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <tuple>

#include "platform/daub.h"
#include "platform/host_functions.h"
#include "platform/plask_api.h"
#include "platform/vst2.h"

#ifdef PROBE_NEEDS_LIBRARY
extern "C" int probeDependencyVersion();
#endif

namespace {

constexpr std::int32_t kProbeId = fourCharCode('p', 'r', 'b', 'e');
constexpr int kParameterCount = 2;
// effVendorSpecific indexes the tests use to make the probe call its host.
constexpr std::int32_t kReportEdit = 1000;      // begin edit, automate, end edit of parameter 0
constexpr std::int32_t kChangeOutputs = 1001;   // value: new output count, then IOChanged
constexpr std::int32_t kAnnounceCounts = 1002;  // the extension's channel-count notification

struct Probe {
  AEffect effect{};
  audioMasterCallback host = nullptr;
  DAUB_ClearFn clear = nullptr;
  DAUB_FillRectFn fillRect = nullptr;
  float gain = 0.5f, mode = 0.0f;
  bool open = false;
  int trackChannels = 0, idleCalls = 0, processCalls = 0;
  useconds_t sleepPerBlock = 0;
  std::string iniFile;
  double sliderAtTop = 0.0;
  std::string chunk;
  std::string calls;  // this instance's, comma-separated
};

int boundNames = 0, dllMainCalls = 0;    // the module's binding, before any instance
char copiedThroughWindowLayer[16] = "";  // lstrcpyn called through the bound table
HINSTANCE boundModule = nullptr;
DWORD (*boundModuleFileName)(HINSTANCE, char*, DWORD) = nullptr;
std::string callLog;  // every instance's calls, for probe_call_log()

void logCall(Probe& probe, const std::string& call) {
  for (std::string* log : {&probe.calls, &callLog}) *log += (log->empty() ? "" : ",") + call;
}

Probe* probeOf(AEffect* effect) {
  return effect == nullptr ? nullptr : static_cast<Probe*>(effect->object);
}

float& parameter(Probe& probe, std::int32_t index) {
  return index == 0 ? probe.gain : probe.mode;
}

VstIntPtr call(Probe& probe, std::int32_t opcode, std::int32_t index = 0, VstIntPtr value = 0,
               void* ptr = nullptr, float opt = 0.0f) {
  return probe.host(&probe.effect, opcode, index, value, ptr, opt);
}

std::string report(const Probe& probe) {
  char text[2048], moduleFile[512] = "";
  if (boundModuleFileName != nullptr)
    boundModuleFileName(boundModule, moduleFile, sizeof moduleFile);
  std::snprintf(text, sizeof(text),
                "track_channels=%d\nbound_names=%d\nlstrcpyn=%s\ndll_main=%d\nmodule_file=%s\n"
                "ini_file=%s\nslider_top_db=%.3f\nidle_calls=%d\nprocess_calls=%d\ngain=%.6f\n",
                probe.trackChannels, boundNames, copiedThroughWindowLayer, dllMainCalls, moduleFile,
                probe.iniFile.c_str(), probe.sliderAtTop, probe.idleCalls, probe.processCalls,
                probe.gain);
  return text + ("calls=" + probe.calls + "\n");
}

void setChunk(Probe& probe, const char* data, VstIntPtr length) {
#ifdef PROBE_CRASH_IN_SETCHUNK
  raise(SIGSEGV);
#endif
  logCall(probe, probe.open ? "chunk" : "chunk ignored");
  if (!probe.open) return;
  const std::string text(data, static_cast<std::size_t>(length));
  const auto at = text.find("gain=");
  if (at != std::string::npos) probe.gain = std::strtof(text.c_str() + at + 5, nullptr);
}

#ifdef PROBE_INLINE_VIEW
constexpr std::int32_t kInlineView = 16;
constexpr int kInlinePaint = 15;

// Paints only for a block that matches the bitmap: background 0xFF102030, a red square at the
// origin whose side is 8 px at the bitmap's advisory scale.
VstIntPtr paintInline(Probe& probe, DAUB_IBitmap* bitmap, const void* block) {
  std::int32_t fields[10] = {};  // width at byte 20, height at 24, must-be-zero at 36
  if (block != nullptr) std::memcpy(fields, block, sizeof fields);
  if (bitmap == nullptr || block == nullptr || probe.clear == nullptr || probe.mode >= 0.5f ||
      fields[5] != bitmap->getWidth() || fields[6] != bitmap->getHeight() || fields[9] != 0) {
    return 0;
  }
  const auto scale256 = static_cast<int>(bitmap->Extended(DAUB_EXT_GET_ADVISORY_SCALE, nullptr));
  const int side = 8 * (scale256 == 0 ? 256 : scale256) / 256;
  probe.clear(bitmap, 0xFF102030u);
  probe.fillRect(bitmap, 0, 0, side, side, 0xFFFF0000u, 1.0f, 0);
  return 1;
}
#endif

VstIntPtr vendorSpecific(Probe& probe, std::int32_t index, VstIntPtr value, void* ptr, float opt) {
#ifdef PROBE_INLINE_VIEW
  if (index == kInlineView) {
    if (static_cast<int>(opt) != kInlinePaint) return 0;
    return paintInline(probe, reinterpret_cast<DAUB_IBitmap*>(value), ptr);  // NOLINT
  }
#else
  (void)opt;
  (void)ptr;
#endif
  switch (index) {
    case kReportEdit:
      call(probe, audioMasterBeginEdit, 0);
      call(probe, audioMasterAutomate, 0, 0, nullptr, 0.75f);
      call(probe, audioMasterEndEdit, 0);
      return 1;
    case kChangeOutputs:
      probe.effect.numOutputs = static_cast<std::int32_t>(value);
      return call(probe, audioMasterIOChanged);
    case kAnnounceCounts:
      probe.effect.numParams = kParameterCount;
      return call(probe, audioMasterVendorSpecific, kHostExtensionOpcode, kHostNotifyChannelCounts,
                  reinterpret_cast<void*>(value));  // NOLINT(performance-no-int-to-ptr)
    default:
      return 0;
  }
}

VstIntPtr copyText(void* ptr, const char* text) {
  if (ptr != nullptr) std::strcpy(static_cast<char*>(ptr), text);
  return 1;
}

// Calls only logged, with their value ('v'), their float argument ('o') or nothing (' ').
constexpr std::tuple<std::int32_t, const char*, char> kLoggedCalls[] = {
    {effSetSampleRate, "rate", 'o'},
    {effSetBlockSize, "block", 'v'},
    {effSetProcessPrecision, "precision", 'v'},
    {effMainsChanged, "mains", 'v'},
    {effStartProcess, "start", ' '},
    {effStopProcess, "stop", ' '}};

VstIntPtr dispatcher(AEffect* effect, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                     void* ptr, float opt) {
  Probe* probe = probeOf(effect);
  if (probe == nullptr) return 0;
  for (const auto& [logged, name, argument] : kLoggedCalls) {
    if (logged != opcode) continue;
    const VstIntPtr number = argument == 'o' ? static_cast<VstIntPtr>(opt) : value;
    logCall(*probe, argument == ' ' ? name : name + (" " + std::to_string(number)));
    return 0;
  }
  switch (opcode) {
    case effOpen:
      logCall(*probe, "open");
      probe->open = true;
      call(*probe, audioMasterNeedIdle);
      return 0;
    case effClose:
      logCall(*probe, "close");
      delete probe;
      return 0;
    case effGetParamName:
      return copyText(ptr, index == 0 ? "gain" : "mode, with comma");
    case effGetParamDisplay:  // blank before effOpen, as frameworks without their instance
      if (probe->open) std::snprintf(static_cast<char*>(ptr), 9, "%.3f", parameter(*probe, index));
      return 1;
    case effGetParamLabel:
      return copyText(ptr, index == 0 ? "x2" : "");
    case effGetEffectName:
      return copyText(ptr, "Probe");
    case effGetVendorString:
      return copyText(ptr, "Host Tests");
    case effGetProductString:
      return copyText(ptr, "Probe Plug-in");
    case effGetVendorVersion:
      return 7;
    case effGetVstVersion:
      return 2400;
    case effGetPlugCategory:
      return kPlugCategEffect;
    case effIdle:
      ++probe->idleCalls;
      return 1;
    case effGetChunk:
      probe->chunk = report(*probe);
      *static_cast<void**>(ptr) = probe->chunk.data();
      return static_cast<VstIntPtr>(probe->chunk.size());
    case effSetChunk:
      setChunk(*probe, static_cast<const char*>(ptr), value);
      return 0;
    case effVendorSpecific:
      return vendorSpecific(*probe, index, value, ptr, opt);
#ifdef PROBE_INLINE_VIEW
    case effCanDo:
      return ptr != nullptr &&
                     std::strcmp(static_cast<const char*>(ptr), "hasTolvekEmbeddedUI") == 0
                 ? static_cast<std::int32_t>(0xbeef0000u)
                 : 0;
#endif
    default:
      return 0;
  }
}

template <typename Sample>
void scale(AEffect* effect, Sample** inputs, Sample** outputs, std::int32_t frames) {
  Probe* probe = probeOf(effect);
  if (probe == nullptr) return;
  if (frames == 0) raise(SIGSEGV);  // as some plug-ins do on an empty block
  ++probe->processCalls;
  logCall(*probe, "process " + std::to_string(frames));
  if (probe->sleepPerBlock > 0) usleep(probe->sleepPerBlock);
  const Sample factor = static_cast<Sample>(2.0f * probe->gain);
  for (int c = 0; c < effect->numOutputs; ++c) {
    for (int f = 0; f < frames; ++f) {
      outputs[c][f] = c < effect->numInputs ? inputs[c][f] * factor : Sample(0);
    }
  }
}

void setParameter(AEffect* effect, std::int32_t index, float value) {
  Probe* probe = probeOf(effect);
  if (probe == nullptr) return;
  char text[48];
  std::snprintf(text, sizeof text, "set %d %.3f%s", index, value, probe->open ? "" : " ignored");
  logCall(*probe, text);
  if (probe->open) parameter(*probe, index) = value;
}

float getParameter(AEffect* effect, std::int32_t index) {
  Probe* probe = probeOf(effect);
  return probe == nullptr || !probe->open ? 0.0f : parameter(*probe, index);
}

template <typename Fn>
Fn lookup(audioMasterCallback host, const char* name) {
  return reinterpret_cast<Fn>(  // NOLINT(performance-no-int-to-ptr): addresses come as integers
      host(nullptr, kHostExtensionOpcode, kHostFunctionLookupIndex, 0, const_cast<char*>(name), 0));
}

AEffect* createProbe(audioMasterCallback host) {
  auto* probe = new Probe;
  probe->host = host;
  if (const auto iniFile = lookup<get_ini_fileFn>(host, "get_ini_file")) probe->iniFile = iniFile();
  probe->clear = lookup<DAUB_ClearFn>(host, "DAUB_Clear");
  probe->fillRect = lookup<DAUB_FillRectFn>(host, "DAUB_FillRect");
  if (const auto slider = lookup<SLIDER2DBFn>(host, "SLIDER2DB"))
    probe->sliderAtTop = slider(1000.0);
  probe->trackChannels =
      static_cast<int>(host(nullptr, kHostExtensionOpcode, kHostChannelCountIndex,
                            kHostChannelCountQueryValue, nullptr, 0));
  const int channels = probe->trackChannels > 0 ? probe->trackChannels : 2;
  if (const char* sleep = std::getenv("PROBE_PROCESS_SLEEP_US")) {
    probe->sleepPerBlock = static_cast<useconds_t>(std::strtoul(sleep, nullptr, 10));
  }
  AEffect& e = probe->effect;
  e.magic = kEffectMagic;
  e.dispatcher = dispatcher;
  e.setParameter = setParameter;
  e.getParameter = getParameter;
  e.numPrograms = 1;
  e.numParams = kParameterCount;
  e.numInputs = e.numOutputs = channels;
  e.flags = effFlagsCanReplacing | effFlagsProgramChunks;
#ifdef PROBE_SYNTH
  e.numInputs = 0;
  e.flags = (e.flags | effFlagsIsSynth) & ~effFlagsProgramChunks;
#endif
  if (const char* inputs = std::getenv("PROBE_INPUTS")) e.numInputs = std::atoi(inputs);
#ifdef PROBE_NEEDS_LIBRARY
  e.version = probeDependencyVersion();
#endif
#ifndef PROBE_FLOAT_ONLY
  e.flags |= effFlagsCanDoubleReplacing;
  e.processDoubleReplacing = scale<double>;
#endif
  e.object = probe;
  e.uniqueID = kProbeId;
  if (e.version == 0) e.version = 3;
  e.processReplacing = scale<float>;
#ifdef PROBE_REFUSE
  delete probe;  // asked the host everything, then declines
  return nullptr;
#else
  return &e;
#endif
}

}  // namespace

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

// The calls of every instance so far, for tests that load the probe in their own process.
PROBE_EXPORT const char* probe_call_log() {
  return callLog.c_str();
}

PROBE_EXPORT int PLASK_dllMain(HINSTANCE module, int reason, PlaskGetter getter) {
  if (reason != 1) return 1;
  if (getter == nullptr) return 0;
  boundNames = 0;
  for (const char* name : kPlaskNames) boundNames += getter(name) != nullptr ? 1 : 0;
  if (const auto copy = reinterpret_cast<char* (*)(char*, const char*, int)>(getter("lstrcpyn")))
    copy(copiedThroughWindowLayer, "window layer", 7);
  boundModule = module;
  boundModuleFileName =
      reinterpret_cast<DWORD (*)(HINSTANCE, char*, DWORD)>(getter("GetModuleFileName"));
  return 1;
}

PROBE_EXPORT int DllMain(HINSTANCE /*module*/, int reason) {
  if (reason == 1) ++dllMainCalls;
  return 1;
}

#ifdef PROBE_LEGACY_MAIN
PROBE_EXPORT AEffect* legacyEntry(audioMasterCallback host) __asm__("main");
PROBE_EXPORT AEffect* legacyEntry(audioMasterCallback host) {
  return createProbe(host);
}
#else
PROBE_EXPORT AEffect* VSTPluginMain(audioMasterCallback host) {
  return createProbe(host);
}
#endif
