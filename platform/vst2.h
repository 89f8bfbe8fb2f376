// VST 2.x plug-in ABI, written from the published interface: the records, opcodes and flags that
// Spatiola and its host exchange. Plain C layout; shared by the plug-in, the host and the tests.
#pragma once

#include <cstddef>
#include <cstdint>

struct AEffect;

using VstIntPtr = std::intptr_t;

// Host callback and plug-in slots. All use the platform's default C calling convention.
using audioMasterCallback = VstIntPtr (*)(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                          VstIntPtr value, void* ptr, float opt);
using AEffectDispatcherProc = VstIntPtr (*)(AEffect* effect, std::int32_t opcode,
                                            std::int32_t index, VstIntPtr value, void* ptr,
                                            float opt);
using AEffectProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs,
                                    std::int32_t sampleFrames);
using AEffectProcessDoubleProc = void (*)(AEffect* effect, double** inputs, double** outputs,
                                          std::int32_t sampleFrames);
using AEffectSetParameterProc = void (*)(AEffect* effect, std::int32_t index, float parameter);
using AEffectGetParameterProc = float (*)(AEffect* effect, std::int32_t index);

constexpr std::int32_t kEffectMagic = 0x56737450;  // 'VstP'

struct AEffect {
  std::int32_t magic;
  AEffectDispatcherProc dispatcher;
  AEffectProcessProc process;  // old accumulating form
  AEffectSetParameterProc setParameter;
  AEffectGetParameterProc getParameter;
  std::int32_t numPrograms;
  std::int32_t numParams;
  std::int32_t numInputs;
  std::int32_t numOutputs;
  std::int32_t flags;
  VstIntPtr resvd1;
  VstIntPtr resvd2;
  std::int32_t initialDelay;
  std::int32_t realQualities;
  std::int32_t offQualities;
  float ioRatio;
  void* object;
  void* user;
  std::int32_t uniqueID;
  std::int32_t version;
  AEffectProcessProc processReplacing;
  AEffectProcessDoubleProc processDoubleReplacing;
  char future[56];
};

struct ERect {
  std::int16_t top;
  std::int16_t left;
  std::int16_t bottom;
  std::int16_t right;
};

struct VstSpeakerProperties {
  float azimuth;
  float elevation;
  float radius;
  float reserved;
  char name[64];
  std::int32_t type;
  char future[28];
};

struct VstSpeakerArrangement {
  std::int32_t type;
  std::int32_t numChannels;
  VstSpeakerProperties speakers[8];
};

// effGetInputProperties / effGetOutputProperties: how a plug-in names one of its channels.
struct VstPinProperties {
  char label[64];
  std::int32_t flags;
  std::int32_t arrangementType;
  char shortLabel[8];
  char future[48];
};

struct VstTimeInfo {
  double samplePos;
  double sampleRate;
  double nanoSeconds;
  double ppqPos;
  double tempo;
  double barStartPos;
  double cycleStartPos;
  double cycleEndPos;
  std::int32_t timeSigNumerator;
  std::int32_t timeSigDenominator;
  std::int32_t smpteOffset;
  std::int32_t smpteFrameRate;
  std::int32_t samplesToNextClock;
  std::int32_t flags;
};

// VstTimeInfo::flags
enum VstTimeInfoFlags : std::int32_t {
  kVstTransportChanged = 1,
  kVstTransportPlaying = 1 << 1,
  kVstNanosValid = 1 << 8,
  kVstPpqPosValid = 1 << 9,
  kVstTempoValid = 1 << 10,
  kVstTimeSigValid = 1 << 13,
};

// AEffect::flags
enum VstAEffectFlags : std::int32_t {
  effFlagsHasEditor = 1,
  effFlagsCanReplacing = 1 << 4,
  effFlagsProgramChunks = 1 << 5,
  effFlagsIsSynth = 1 << 8,
  effFlagsNoSoundInStop = 1 << 9,
  effFlagsCanDoubleReplacing = 1 << 12,
};

// Dispatcher opcodes (host -> plug-in).
enum AEffectOpcodes : std::int32_t {
  effOpen = 0,
  effClose,
  effSetProgram,
  effGetProgram,
  effSetProgramName,
  effGetProgramName,
  effGetParamLabel,
  effGetParamDisplay,
  effGetParamName,
  effGetVu,
  effSetSampleRate,
  effSetBlockSize,
  effMainsChanged,
  effEditGetRect,
  effEditOpen,
  effEditClose,
  effEditDraw,
  effEditMouse,
  effEditKey,
  effEditIdle,
  effEditTop,
  effEditSleep,
  effIdentify,
  effGetChunk,
  effSetChunk,
  effProcessEvents,
  effCanBeAutomated,
  effString2Parameter,
  effGetNumProgramCategories,
  effGetProgramNameIndexed,
  effCopyProgram,
  effConnectInput,
  effConnectOutput,
  effGetInputProperties,
  effGetOutputProperties,
  effGetPlugCategory,
  effGetCurrentPosition,
  effGetDestinationBuffer,
  effOfflineNotify,
  effOfflinePrepare,
  effOfflineRun,
  effProcessVarIo,
  effSetSpeakerArrangement,
  effSetBlockSizeAndSampleRate,
  effSetBypass,
  effGetEffectName,
  effGetErrorText,
  effGetVendorString,
  effGetProductString,
  effGetVendorVersion,
  effVendorSpecific,
  effCanDo,
  effGetTailSize,
  effIdle,
  effGetIcon,
  effSetViewPosition,
  effGetParameterProperties,
  effKeysRequired,
  effGetVstVersion,
  effEditKeyDown,
  effEditKeyUp,
  effSetEditKnobMode,
  effGetMidiProgramName,
  effGetCurrentMidiProgram,
  effGetMidiProgramCategory,
  effHasMidiProgramsChanged,
  effGetMidiKeyName,
  effBeginSetProgram,
  effEndSetProgram,
  effGetSpeakerArrangement,
  effShellGetNextPlugin,
  effStartProcess,
  effStopProcess,
  effSetTotalSampleToProcess,
  effSetPanLaw,
  effBeginLoadBank,
  effBeginLoadProgram,
  effSetProcessPrecision,
  effGetNumMidiInputChannels,
  effGetNumMidiOutputChannels,
};
static_assert(effStopProcess == 72 && effGetVstVersion == 58 && effCanDo == 51);

// Callback opcodes (plug-in -> host).
enum AudioMasterOpcodes : std::int32_t {
  audioMasterAutomate = 0,
  audioMasterVersion,
  audioMasterCurrentId,
  audioMasterIdle,
  audioMasterPinConnected,
  audioMasterWantMidi = 6,
  audioMasterGetTime,
  audioMasterProcessEvents,
  audioMasterSetTime,
  audioMasterTempoAt,
  audioMasterGetNumAutomatableParameters,
  audioMasterGetParameterQuantization,
  audioMasterIOChanged,
  audioMasterNeedIdle,
  audioMasterSizeWindow,
  audioMasterGetSampleRate,
  audioMasterGetBlockSize,
  audioMasterGetInputLatency,
  audioMasterGetOutputLatency,
  audioMasterGetPreviousPlug,
  audioMasterGetNextPlug,
  audioMasterWillReplaceOrAccumulate,
  audioMasterGetCurrentProcessLevel,
  audioMasterGetAutomationState,
  audioMasterOfflineStart,
  audioMasterOfflineRead,
  audioMasterOfflineWrite,
  audioMasterOfflineGetCurrentPass,
  audioMasterOfflineGetCurrentMetaPass,
  audioMasterSetOutputSampleRate,
  audioMasterGetOutputSpeakerArrangement,
  audioMasterGetVendorString,
  audioMasterGetProductString,
  audioMasterGetVendorVersion,
  audioMasterVendorSpecific,
  audioMasterSetIcon,
  audioMasterCanDo,
  audioMasterGetLanguage,
  audioMasterOpenWindow,
  audioMasterCloseWindow,
  audioMasterGetDirectory,
  audioMasterUpdateDisplay,
  audioMasterBeginEdit,
  audioMasterEndEdit,
  audioMasterOpenFileSelector,
  audioMasterCloseFileSelector,
  audioMasterEditFile,
  audioMasterGetChunkFile,
  audioMasterGetInputSpeakerArrangement,
};
static_assert(audioMasterIOChanged == 13 && audioMasterVendorSpecific == 35 &&
              audioMasterEndEdit == 44);

enum VstPlugCategory : std::int32_t { kPlugCategUnknown = 0, kPlugCategEffect = 1 };

constexpr std::int32_t fourCharCode(char a, char b, char c, char d) {
  return static_cast<std::int32_t>(
      (static_cast<std::uint32_t>(static_cast<unsigned char>(a)) << 24) |
      (static_cast<std::uint32_t>(static_cast<unsigned char>(b)) << 16) |
      (static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << 8) |
      static_cast<std::uint32_t>(static_cast<unsigned char>(d)));
}
static_assert(kEffectMagic == fourCharCode('V', 's', 't', 'P'));

// The record layouts are fixed by the binary interface; check them for the width being built.
static_assert(sizeof(ERect) == 8);
static_assert(sizeof(VstSpeakerProperties) == 112);
static_assert(sizeof(VstSpeakerArrangement) == 904);
static_assert(offsetof(VstSpeakerArrangement, numChannels) == 4);
static_assert(sizeof(VstPinProperties) == 128 && offsetof(VstPinProperties, shortLabel) == 72);
static_assert(sizeof(VstTimeInfo) == 88);
static_assert(offsetof(VstTimeInfo, timeSigNumerator) == 64);
static_assert(offsetof(AEffect, magic) == 0);
static_assert(offsetof(AEffect, numPrograms) == 5 * sizeof(void*));
#if UINTPTR_MAX == 0xffffffffu
static_assert(sizeof(AEffect) == 144);
static_assert(offsetof(AEffect, dispatcher) == 4);
static_assert(offsetof(AEffect, numParams) == 24);
static_assert(offsetof(AEffect, flags) == 36);
static_assert(offsetof(AEffect, resvd1) == 40);
static_assert(offsetof(AEffect, initialDelay) == 48);
static_assert(offsetof(AEffect, ioRatio) == 60);
static_assert(offsetof(AEffect, object) == 64);
static_assert(offsetof(AEffect, uniqueID) == 72);
static_assert(offsetof(AEffect, processReplacing) == 80);
static_assert(offsetof(AEffect, processDoubleReplacing) == 84);
static_assert(offsetof(AEffect, future) == 88);
#else
static_assert(sizeof(AEffect) == 192);
static_assert(offsetof(AEffect, dispatcher) == 8);
static_assert(offsetof(AEffect, numParams) == 44);
static_assert(offsetof(AEffect, flags) == 56);
static_assert(offsetof(AEffect, resvd1) == 64);
static_assert(offsetof(AEffect, initialDelay) == 80);
static_assert(offsetof(AEffect, ioRatio) == 92);
static_assert(offsetof(AEffect, object) == 96);
static_assert(offsetof(AEffect, uniqueID) == 112);
static_assert(offsetof(AEffect, processReplacing) == 120);
static_assert(offsetof(AEffect, processDoubleReplacing) == 128);
static_assert(offsetof(AEffect, future) == 136);
#endif
