// One description per field of an input, a speaker and the globals: its name in the code, its
// parameter name, its scene-file key, how it maps to the host's 0..1, its range and default, the
// first state version that carries it and what a change marks. The parameter map, the automation
// reports, the state block, the scene files and the editor all read these tables.
//
// The rows are in saved order: the state block writes them in that order (the flags of a record
// share one word, bit n for its n-th flag row) and the scene file lists its keys in it. The host's
// parameter order differs; the parameter column gives it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "model/channels.h"
#include "model/field_values.h"

// The host's parameter order within each group.
enum InputParameter : int {
  kInGain,
  kInX,
  kInY,
  kInZ,
  kInLfeSend,
  kInDiffuse,
  kInBias,
  kInAngle,
  kInMute,
  kInSolo
};
enum SpeakerParameter : int { kSpkGain, kSpkX, kSpkY, kSpkZ, kSpkInfluence, kSpkMute, kSpkSolo };
enum GlobalParameter : int { kGlobalScaleX, kGlobalScaleY, kGlobalScaleZ, kGlobalCenterTrim };
constexpr int kNoParameter = -1;

template <typename Record>
struct RecordField {
  double Record::*real;        // a real field, or
  std::uint8_t Record::*flag;  // a flag (0 or 1)
  const char* parameterWord;   // "in 1 gain", "front left gain"; null: the host does not see it
  int parameterOffset;         // among the record's parameters; kNoParameter
  const char* jsonKey;
  ValueMapping mapping;
  ValueRange range;
  int sinceVersion;   // older blocks lack it: it takes range.fallback
  ChangeMarks marks;  // what a change through its parameter marks
};

constexpr ChangeMarks kOwnRowLevels{GainRows::Own, kChangeLevels};
constexpr ChangeMarks kOwnRowInputs{GainRows::Own, kChangeInputs};
constexpr ChangeMarks kInputSwitch{GainRows::None, kChangeLevels | kChangeInputs};
constexpr ChangeMarks kAllRowsLevels{GainRows::All, kChangeLevels};
constexpr ChangeMarks kAllRowsSpeakers{GainRows::All, kChangeSpeakers};
constexpr ChangeMarks kAllRowsLevelsSpeakers{GainRows::All, kChangeLevels | kChangeSpeakers};
constexpr ChangeMarks kSpeakerSwitch{GainRows::None, kChangeLevels | kChangeSpeakers};
constexpr ChangeMarks kNotAParameter{GainRows::None, 0};

constexpr int kFirstVersion = 0;
constexpr int kVersionWithInfluence = 2;
constexpr int kVersionWithGain = 3;
constexpr int kVersionWithOptions = 3;
constexpr int kVersionWithFaderOffsets = 4;

namespace field_rows {
using M = ValueMapping;
using In = InputChannel;
using Spk = Speaker;

// clang-format off
inline constexpr RecordField<InputChannel> kInputFields[] = {
  // field            flag           word        parameter     key             mapping    range           since             marks
  {&In::gain,         nullptr,       "gain",     kInGain,      "gain",         M::Level,  kLevelRange,    kVersionWithGain, kOwnRowLevels},
  {&In::lfeSend,      nullptr,       "LFE send", kInLfeSend,   "lfeSend",      M::Level,  kSendRange,     kFirstVersion,    kOwnRowLevels},
  {&In::x,            nullptr,       "X",        kInX,         "x",            M::Signed, kPositionRange, kFirstVersion,    kOwnRowInputs},
  {&In::y,            nullptr,       "Y",        kInY,         "y",            M::Signed, kPositionRange, kFirstVersion,    kOwnRowInputs},
  {&In::z,            nullptr,       "Z",        kInZ,         "z",            M::Signed, kPositionRange, kFirstVersion,    kOwnRowInputs},
  {&In::diffuse,      nullptr,       "diffuse",  kInDiffuse,   "diffuse",      M::Unit,   kDiffuseRange,  kFirstVersion,    kOwnRowInputs},
  {&In::diffuseBias,  nullptr,       "bias",     kInBias,      "diffuseBias",  M::Signed, kSignedRange,   kFirstVersion,    kOwnRowInputs},
  {&In::diffuseAngle, nullptr,       "angle",    kInAngle,     "diffuseAngle", M::Unit,   kSignedRange,   kFirstVersion,    kOwnRowInputs},
  {nullptr,           &In::mute,     "mute",     kInMute,      "mute",         M::Switch, kFlagRange,     kFirstVersion,    kInputSwitch},
  {nullptr,           &In::solo,     "solo",     kInSolo,      "solo",         M::Switch, kFlagRange,     kFirstVersion,    kInputSwitch},
  {nullptr,           &In::selected, nullptr,    kNoParameter, "selected",     M::Switch, kFlagRange,     kFirstVersion,    kNotAParameter},
  {nullptr,           &In::reverse,  nullptr,    kNoParameter, "reverse",      M::Switch, kFlagRange,     kFirstVersion,    kNotAParameter},
};

inline constexpr RecordField<Speaker> kSpeakerFields[] = {
  // field          flag         word         parameter      key          mapping    range            since                  marks
  {&Spk::gain,      nullptr,     "gain",      kSpkGain,      "gain",      M::Level,  kLevelRange,     kVersionWithGain,      kAllRowsLevels},
  {&Spk::x,         nullptr,     "X",         kSpkX,         "x",         M::Signed, kPositionRange,  kFirstVersion,         kAllRowsSpeakers},
  {&Spk::y,         nullptr,     "Y",         kSpkY,         "y",         M::Signed, kPositionRange,  kFirstVersion,         kAllRowsSpeakers},
  {&Spk::z,         nullptr,     "Z",         kSpkZ,         "z",         M::Signed, kPositionRange,  kFirstVersion,         kAllRowsSpeakers},
  {&Spk::influence, nullptr,     "influence", kSpkInfluence, "influence", M::Double, kInfluenceRange, kVersionWithInfluence, kAllRowsLevelsSpeakers},
  {nullptr,         &Spk::mute,  "mute",      kSpkMute,      "mute",      M::Switch, kFlagRange,      kFirstVersion,         kSpeakerSwitch},
  {nullptr,         &Spk::solo,  "solo",      kSpkSolo,      "solo",      M::Switch, kFlagRange,      kFirstVersion,         kSpeakerSwitch},
  {nullptr,         &Spk::isLfe, nullptr,     kNoParameter,  "lfe",       M::Switch, kFlagRange,      kFirstVersion,         kNotAParameter},
};
// clang-format on
}  // namespace field_rows
using field_rows::kInputFields;
using field_rows::kSpeakerFields;
using InputChannelField = RecordField<InputChannel>;
using SpeakerField = RecordField<Speaker>;

// The globals of the state block's header, between the version and the two counts.
enum class GlobalId : std::uint8_t {
  LayoutPreset,
  UserSpeakerCount,
  InputFaderOffset,
  SpeakerFaderOffset,
  GroupKnobModes,
  OptionFlags,
  CenterTrim,
  Zoom,
  SpaceScaleX,
  SpaceScaleY,
  SpaceScaleZ,
};

enum class GlobalKind : std::uint8_t {
  Real,        // a double
  Integer,     // 32-bit integers, `count` of them, each a multiple of `step`
  OptionBits,  // optionFlags: known bits only
};

struct GlobalField {
  GlobalId id;  // names its field: globalReal(), globalIntegers()
  GlobalKind kind;
  const char* parameterName;  // the whole name; null: the host does not see it
  int parameterOffset;        // kNoParameter
  const char* jsonKey;        // "a.b": key b of the object a
  ValueMapping mapping;
  ValueRange range;
  int sinceVersion;
  ChangeMarks marks;
  int count;
  int step;
};

namespace field_rows {
using G = GlobalId;
using K = GlobalKind;

// clang-format off
inline constexpr GlobalField kGlobalFields[] = {
  // id                   kind           name        parameter          key                   mapping       range                      since                     marks                   count step
  {G::LayoutPreset,       K::Integer,    nullptr,    kNoParameter,      "layout",             M::Unit,      {0, -1, kMaxLayoutPreset}, kFirstVersion,            kNotAParameter,         1,    1},
  {G::UserSpeakerCount,   K::Integer,    nullptr,    kNoParameter,      "userSpeakerCount",   M::Unit,      {0, 0, kMaxSpeakers},      kFirstVersion,            kNotAParameter,         1,    1},
  {G::InputFaderOffset,   K::Integer,    nullptr,    kNoParameter,      "inputFaderOffset",   M::Unit,      {0, 0, kMaxFaderOffset},   kVersionWithFaderOffsets, kNotAParameter,         1,    kFaderOffsetStep},
  {G::SpeakerFaderOffset, K::Integer,    nullptr,    kNoParameter,      "speakerFaderOffset", M::Unit,      {0, 0, kMaxFaderOffset},   kVersionWithFaderOffsets, kNotAParameter,         1,    kFaderOffsetStep},
  {G::GroupKnobModes,     K::Integer,    nullptr,    kNoParameter,      "groupKnobModes",     M::Unit,      {0, 0, kMaxGroupMode},     kFirstVersion,            kNotAParameter,         3,    1},
  {G::OptionFlags,        K::OptionBits, nullptr,    kNoParameter,      "options",            M::Unit,      {0, 0, 0},                 kVersionWithOptions,      kNotAParameter,         1,    1},
  {G::CenterTrim,         K::Real,       "ctr trim", kGlobalCenterTrim, "centerTrim",         M::Level,     kLevelRange,               kFirstVersion,            kAllRowsLevels,         1,    1},
  {G::Zoom,               K::Real,       nullptr,    kNoParameter,      "zoom",               M::Unit,      kZoomRange,                kFirstVersion,            kNotAParameter,         1,    1},
  {G::SpaceScaleX,        K::Real,       "scale X",  kGlobalScaleX,     "roomScale.x",        M::RoomScale, kRoomScaleRange,           kFirstVersion,            kAllRowsLevelsSpeakers, 1,    1},
  {G::SpaceScaleY,        K::Real,       "scale Y",  kGlobalScaleY,     "roomScale.y",        M::RoomScale, kRoomScaleRange,           kFirstVersion,            kAllRowsLevelsSpeakers, 1,    1},
  {G::SpaceScaleZ,        K::Real,       "scale Z",  kGlobalScaleZ,     "roomScale.z",        M::RoomScale, kRoomScaleRange,           kFirstVersion,            kAllRowsLevelsSpeakers, 1,    1},
};
// clang-format on
}  // namespace field_rows
using field_rows::kGlobalFields;

// ---- derived --------------------------------------------------------------------------------

template <typename Field, std::size_t N>
constexpr int parameterCountOf(const Field (&fields)[N]) {
  int count = 0;
  for (const Field& field : fields) count += field.parameterOffset != kNoParameter ? 1 : 0;
  return count;
}

constexpr int kGlobalParameterCount = parameterCountOf(kGlobalFields);
constexpr int kParametersPerInput = parameterCountOf(kInputFields);
constexpr int kParametersPerSpeaker = parameterCountOf(kSpeakerFields);

// The row of a group's parameter `offset`; the tables hold each offset exactly once.
template <typename Field, std::size_t N>
constexpr const Field& fieldOfParameter(const Field (&fields)[N], int offset) {
  for (const Field& field : fields) {
    if (field.parameterOffset == offset) return field;
  }
  return fields[0];
}

template <typename Field, std::size_t N>
constexpr bool parametersAreNumberedOnce(const Field (&fields)[N]) {
  const int count = parameterCountOf(fields);
  for (int offset = 0; offset < count; ++offset) {
    int rows = 0;
    for (const Field& field : fields) rows += field.parameterOffset == offset ? 1 : 0;
    if (rows != 1) return false;
  }
  return true;
}
static_assert(parametersAreNumberedOnce(kInputFields) && kParametersPerInput == 10);
static_assert(parametersAreNumberedOnce(kSpeakerFields) && kParametersPerSpeaker == 7);
static_assert(parametersAreNumberedOnce(kGlobalFields) && kGlobalParameterCount == 4);

constexpr bool idsFollowTheRows() {
  for (int row = 0; row < static_cast<int>(std::size(kGlobalFields)); ++row) {
    if (static_cast<int>(kGlobalFields[row].id) != row) return false;
  }
  return true;
}
static_assert(idsFollowTheRows());

constexpr const GlobalField& globalField(GlobalId id) {
  return kGlobalFields[static_cast<int>(id)];
}

// The flat list: the globals, then each input's parameters, then each speaker's.
constexpr int parameterCountFor(int inputCount, int speakerCount) {
  return kGlobalParameterCount + kParametersPerInput * inputCount +
         kParametersPerSpeaker * speakerCount;
}
constexpr int inputParameterIndex(int input, int offset) {
  return parameterCountFor(input, 0) + offset;
}
constexpr int speakerParameterIndex(int inputCount, int speaker, int offset) {
  return parameterCountFor(inputCount, speaker) + offset;
}
