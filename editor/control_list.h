// The editor dialog's controls, once: id, class, text, template rectangle, style and what each
// shows. The template records, the refresh, the relayout and the tests all walk this list.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "model/field_table.h"
#include "platform/win32_controls.h"

enum class ControlClass : std::uint8_t {
  // Built into the window layer: the record names the class in its first field.
  Label,
  Edit,
  Combo,
  PushButton,
  GroupBox,
  // Custom: the record names the class in its third field.
  Button,  // check boxes and radio buttons
  Knob,
  Fader,
  Meter,
  HotTrack,
  SpaceView,
};

constexpr bool isBuiltinClass(ControlClass c) {
  return c <= ControlClass::GroupBox;
}

constexpr const char* classNameOf(ControlClass c) {
  constexpr const char* kNames[] = {
      "__PLASK_LABEL", "__PLASK_EDIT", "__PLASK_COMBO", "__PLASK_BUTTON", "__PLASK_GROUP", "Button",
      "KESTELknob",    "KESTELhfader", "KESTELhorzvu",  "HotTrackButton", "SpatiolaWindow"};
  return kNames[static_cast<int>(c)];
}

// What a control shows of the model; the refresh sets it, the handlers of user input read it.
enum class Shows : std::uint8_t {
  Nothing,
  InputCount,         // edit: "%d"
  SpeakerCount,       // edit: "%d"; enabled in a user setup
  SpeakerCountLabel,  // enabled in a user setup
  LayoutPreset,       // combo selection
  AnyLfe,             // check box; enabled in a user setup
  GroupMode,          // combo of group-edit row `row`: modes, then "To <speaker>"
  RelativeInfluence,  // radio button
  AbsoluteInfluence,  // radio button
  Normalize,          // check box, enabled in Absolute mode
  RoomScale,          // fader: `global`, 500 per unit
  Zoom,               // fader
  CenterTrim,         // fader on the dB law, and its value text
  CenterTrimText,     // edit: "-inf" or "%.1f" dB
  InputFaderMode,     // combo: "Gain", "LFE"
  SpeakerFaderMode,   // combo: "Gain", "Influence"
  InputDisplay,       // combo of first rows, shown past 16 inputs
  SpeakerDisplay,     // combo of first rows, shown past 16 speakers
  StripMeter,         // meter of `strip` row `row`
  StripButton,        // image of flag `flag` of `strip` row `row`
  StripFader,         // fader of `strip` row `row`
};

enum class Strip : std::uint8_t { None, Inputs, Speakers };

// The flags a strip button shows, in the order of the process-wide button images.
enum class StripFlag : std::uint8_t { Mute, Solo, Reverse };
constexpr int kStripFlagCount = 3;

// A rectangle in template units (1.9 pixels each at 100 %).
struct TemplateRect {
  int x;
  int y;
  int w;
  int h;
};

struct EditorControl {
  int id;
  ControlClass cls;
  const char* text;  // null: none
  int alignment;     // labels: -1 left, 0 centred
  TemplateRect rect;
  std::uint32_t style;
  Shows shows;
  Strip strip;
  int row;  // strip row 0..15, or group-edit row 0..2
  StripFlag flag;
  GlobalId global;  // RoomScale: which scale
};

// Control ids.
namespace item {
constexpr int kSpaceView = 1023;
constexpr int kInputCount = 1231;
constexpr int kLayout = 1131;
constexpr int kSpeakerCount = 1222;
constexpr int kSpeakersLabel = 1226;
constexpr int kLfe = 1230;
constexpr int kGroupBox = 1227;
constexpr int kGroupMode = 1128;    // + row
constexpr int kGroupKnob = 1134;    // + row
constexpr int kGroupReset = 1236;   // + row
constexpr int kGroupInvert = 1233;  // + row
constexpr int kLock = 1286;
constexpr int kInfo = 1287;
constexpr int kRelative = 1290;
constexpr int kAbsolute = 1291;
constexpr int kNormalize = 1288;
constexpr int kSpaceX = 1075;  // + axis
constexpr int kZoom = 1078;
constexpr int kCenterTrim = 1079;
constexpr int kCenterTrimText = 1257;
constexpr int kInputBox = 1000;
constexpr int kSpeakerBox = 1001;
constexpr int kInputDisplayLabel = 1278;
constexpr int kInputDisplay = 1279;
constexpr int kInputFadersLabel = 1276;
constexpr int kInputFaderMode = 1277;
constexpr int kSpeakerDisplayLabel = 1280;
constexpr int kSpeakerDisplay = 1281;
constexpr int kSpeakerFadersLabel = 1282;
constexpr int kSpeakerFaderMode = 1283;
// The strips: the first id of each family of 16, row k adds k.
constexpr int kInputMeter = 1108;
constexpr int kInputMute = 1142;
constexpr int kInputSolo = 1162;
constexpr int kInputReverse = 1292;
constexpr int kSpeakerMeter = 1088;
constexpr int kSpeakerMute = 1182;
constexpr int kSpeakerSolo = 1202;
constexpr int kInputFader = 1239;
constexpr int kSpeakerFader = 1260;
}  // namespace item

constexpr int kStripRows = 16;
constexpr int kGroupRows = 3;
constexpr int kEditorControlCount = 193;

namespace control_rows {

constexpr std::uint32_t kCombo = CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;
constexpr std::uint32_t kCheck = BS_AUTOCHECKBOX | WS_TABSTOP;
constexpr std::uint32_t kHotTrackStyle = 0x4B;
constexpr int kLeft = -1;
constexpr int kCentred = 0;
constexpr GlobalId kNoGlobal = GlobalId::LayoutPreset;

using C = ControlClass;
using S = Shows;

constexpr EditorControl fixed(int id, C cls, const char* text, TemplateRect rect,
                              std::uint32_t style = 0, S shows = S::Nothing, int row = 0,
                              GlobalId global = kNoGlobal) {
  return {id, cls, text, 0, rect, style, shows, Strip::None, row, StripFlag::Mute, global};
}
constexpr EditorControl label(int id, const char* text, TemplateRect rect, int alignment = kLeft) {
  return {id,         C::Label,    text, alignment,       rect,     0,
          S::Nothing, Strip::None, 0,    StripFlag::Mute, kNoGlobal};
}

// clang-format off
inline constexpr EditorControl kFixedControls[] = {
  fixed(item::kSpaceView, C::SpaceView, nullptr, {7, 7, 263, 242}, WS_TABSTOP),
  label(1259, "Input channels:", {299, 10, 50, 8}),
  fixed(item::kInputCount, C::Edit, nullptr, {356, 8, 17, 13}, ES_AUTOHSCROLL, S::InputCount),
  fixed(item::kLayout, C::Combo, nullptr, {279, 23, 70, 30}, kCombo, S::LayoutPreset),
  fixed(item::kSpeakerCount, C::Edit, nullptr, {356, 23, 17, 13}, ES_AUTOHSCROLL, S::SpeakerCount),
  {item::kSpeakersLabel, C::Label, "speakers", kLeft, {376, 24, 29, 8}, 0, S::SpeakerCountLabel, Strip::None, 0, StripFlag::Mute, kNoGlobal},
  fixed(item::kLfe, C::Button, "LFE", {412, 24, 25, 10}, kCheck, S::AnyLfe),
  fixed(item::kGroupBox, C::GroupBox, "Edit selected inputs", {276, 41, 168, 77}),
  fixed(1128, C::Combo, nullptr, {282, 54, 76, 30}, kCombo, S::GroupMode, 0),
  fixed(1134, C::Knob, nullptr, {362, 52, 14, 14}, WS_TABSTOP),
  fixed(1236, C::PushButton, "Reset", {380, 54, 28, 14}),
  fixed(1233, C::PushButton, "Invert", {412, 54, 28, 14}),
  fixed(1129, C::Combo, nullptr, {282, 71, 76, 30}, kCombo, S::GroupMode, 1),
  fixed(1135, C::Knob, nullptr, {362, 70, 14, 14}, WS_TABSTOP),
  fixed(1237, C::PushButton, "Reset", {380, 70, 28, 14}),
  fixed(1234, C::PushButton, "Invert", {412, 70, 28, 14}),
  fixed(1130, C::Combo, nullptr, {282, 87, 76, 30}, kCombo, S::GroupMode, 2),
  fixed(1136, C::Knob, nullptr, {362, 87, 14, 14}, WS_TABSTOP),
  fixed(1238, C::PushButton, "Reset", {380, 86, 28, 14}),
  fixed(1235, C::PushButton, "Invert", {412, 86, 28, 14}),
  fixed(item::kLock, C::Button, "Lock input channel positions and levels", {292, 104, 140, 10}, kCheck),
  label(item::kInfo, "(info)", {277, 122, 167, 8}, kCentred),
  label(0, "Speaker influence:", {281, 133, 60, 8}),
  fixed(item::kRelative, C::Button, "Relative", {345, 132, 42, 10}, BS_AUTORADIOBUTTON, S::RelativeInfluence),
  fixed(item::kAbsolute, C::Button, "Absolute", {389, 132, 43, 10}, BS_AUTORADIOBUTTON, S::AbsoluteInfluence),
  fixed(item::kNormalize, C::Button, "Normalize multichannel gain", {310, 145, 102, 10}, kCheck, S::Normalize),
  fixed(1002, C::GroupBox, "Space size", {276, 158, 168, 55}),
  label(1223, "X width:", {295, 170, 26, 8}),
  fixed(1075, C::Fader, nullptr, {324, 167, 111, 13}, WS_TABSTOP, S::RoomScale, 0, GlobalId::SpaceScaleX),
  label(1224, "Y depth:", {294, 184, 28, 8}),
  fixed(1076, C::Fader, nullptr, {324, 181, 111, 13}, WS_TABSTOP, S::RoomScale, 0, GlobalId::SpaceScaleY),
  label(1225, "Z height:", {292, 198, 29, 8}),
  fixed(1077, C::Fader, nullptr, {324, 195, 111, 13}, WS_TABSTOP, S::RoomScale, 0, GlobalId::SpaceScaleZ),
  label(1228, "Zoom:", {300, 221, 21, 8}),
  fixed(item::kZoom, C::Fader, nullptr, {324, 217, 111, 13}, WS_TABSTOP, S::Zoom),
  label(1229, "Center trim:", {279, 237, 36, 8}),
  fixed(item::kCenterTrim, C::Fader, nullptr, {319, 235, 78, 13}, WS_TABSTOP, S::CenterTrim),
  fixed(item::kCenterTrimText, C::Edit, nullptr, {400, 235, 26, 14}, ES_AUTOHSCROLL, S::CenterTrimText),
  label(1258, "dB", {428, 236, 10, 8}),
  fixed(item::kInputBox, C::GroupBox, "Inputs", {7, 251, 217, 162}),
  fixed(item::kSpeakerBox, C::GroupBox, "Speakers (outputs)", {227, 251, 217, 162}),
  label(item::kInputDisplayLabel, "Display:", {9, 418, 26, 8}),
  fixed(item::kInputDisplay, C::Combo, nullptr, {38, 416, 56, 30}, kCombo, S::InputDisplay),
  label(item::kInputFadersLabel, "Input faders:", {130, 419, 40, 8}),
  fixed(item::kInputFaderMode, C::Combo, nullptr, {173, 416, 52, 30}, kCombo, S::InputFaderMode),
  label(item::kSpeakerDisplayLabel, "Display:", {231, 418, 26, 8}),
  fixed(item::kSpeakerDisplay, C::Combo, nullptr, {260, 416, 57, 30}, kCombo, S::SpeakerDisplay),
  label(item::kSpeakerFadersLabel, "Speaker faders:", {333, 418, 51, 8}),
  fixed(item::kSpeakerFaderMode, C::Combo, nullptr, {387, 415, 52, 30}, kCombo, S::SpeakerFaderMode),
};
// clang-format on

// One family of 16 strip controls: row k has id firstId + k at template y = 260 + 10 k.
struct StripFamily {
  int firstId;
  ControlClass cls;
  const char* text;
  int x;
  int w;
  int h;
  std::uint32_t style;
  Shows shows;
  Strip strip;
  StripFlag flag;
};

constexpr int kStripTopUnits = 260;
constexpr int kStripRowUnits = 10;

// clang-format off
inline constexpr StripFamily kInputRowFamilies[] = {
  {item::kInputMeter,   C::Meter,    nullptr,   42,  67, 6, WS_TABSTOP,     S::StripMeter,  Strip::Inputs, StripFlag::Mute},
  {item::kInputMute,    C::HotTrack, "Mute",    18,   8, 6, kHotTrackStyle, S::StripButton, Strip::Inputs, StripFlag::Mute},
  {item::kInputSolo,    C::HotTrack, "Solo",    29,   8, 6, kHotTrackStyle, S::StripButton, Strip::Inputs, StripFlag::Solo},
  {item::kInputReverse, C::HotTrack, "Reverse", 114,  8, 6, kHotTrackStyle, S::StripButton, Strip::Inputs, StripFlag::Reverse},
};
inline constexpr StripFamily kSpeakerRowFamilies[] = {
  {item::kSpeakerMeter, C::Meter,    nullptr,   264, 67, 6, WS_TABSTOP,     S::StripMeter,  Strip::Speakers, StripFlag::Mute},
  {item::kSpeakerMute,  C::HotTrack, "Mute",    240,  8, 6, kHotTrackStyle, S::StripButton, Strip::Speakers, StripFlag::Mute},
  {item::kSpeakerSolo,  C::HotTrack, "Solo",    252,  8, 6, kHotTrackStyle, S::StripButton, Strip::Speakers, StripFlag::Solo},
};
inline constexpr StripFamily kInputFaders =
  {item::kInputFader,   C::Fader,    nullptr,   129, 50, 10, WS_TABSTOP,    S::StripFader,  Strip::Inputs, StripFlag::Mute};
inline constexpr StripFamily kSpeakerFaders =
  {item::kSpeakerFader, C::Fader,    nullptr,   337, 50, 10, WS_TABSTOP,    S::StripFader,  Strip::Speakers, StripFlag::Mute};
// clang-format on

constexpr EditorControl stripControl(const StripFamily& family, int row) {
  return {family.firstId + row,
          family.cls,
          family.text,
          0,
          {family.x, kStripTopUnits + kStripRowUnits * row, family.w, family.h},
          family.style,
          family.shows,
          family.strip,
          row,
          family.flag,
          kNoGlobal};
}

// The list in template order: the fixed controls, the input rows (meter, mute, solo, reverse per
// row), the speaker rows (meter, mute, solo), the 16 input faders, the 16 speaker faders.
constexpr std::array<EditorControl, kEditorControlCount> buildList() {
  std::array<EditorControl, kEditorControlCount> list{};
  std::size_t n = 0;
  for (const EditorControl& control : kFixedControls) list[n++] = control;
  for (int row = 0; row < kStripRows; ++row) {
    for (const StripFamily& family : kInputRowFamilies) list[n++] = stripControl(family, row);
  }
  for (int row = 0; row < kStripRows; ++row) {
    for (const StripFamily& family : kSpeakerRowFamilies) list[n++] = stripControl(family, row);
  }
  for (int row = 0; row < kStripRows; ++row) list[n++] = stripControl(kInputFaders, row);
  for (int row = 0; row < kStripRows; ++row) list[n++] = stripControl(kSpeakerFaders, row);
  return list;
}

}  // namespace control_rows

inline constexpr std::array<EditorControl, kEditorControlCount> kEditorControls =
    control_rows::buildList();

static_assert(std::size(control_rows::kFixedControls) + kStripRows * 9 == kEditorControlCount);

constexpr bool idsAreDistinct() {
  for (std::size_t i = 0; i < kEditorControls.size(); ++i) {
    for (std::size_t j = i + 1; j < kEditorControls.size(); ++j) {
      if (kEditorControls[i].id != 0 && kEditorControls[i].id == kEditorControls[j].id) {
        return false;
      }
    }
  }
  return true;
}
static_assert(idsAreDistinct());
static_assert(kEditorControls[49].id == item::kInputMeter && kEditorControls[52].id == 1292 &&
              kEditorControls[113].id == item::kSpeakerMeter &&
              kEditorControls[161].id == item::kInputFader && kEditorControls[192].id == 1275);

// The control with this id; null when the list has none.
constexpr const EditorControl* findEditorControl(int id) {
  for (const EditorControl& control : kEditorControls) {
    if (control.id == id) return &control;
  }
  return nullptr;
}

// The id of `strip`'s control of kind `shows` (and `flag`, for buttons) in row `row`.
constexpr int stripControlId(Strip strip, Shows shows, int row, StripFlag flag = StripFlag::Mute) {
  const bool inputs = strip == Strip::Inputs;
  switch (shows) {
    case Shows::StripMeter:
      return (inputs ? item::kInputMeter : item::kSpeakerMeter) + row;
    case Shows::StripFader:
      return (inputs ? item::kInputFader : item::kSpeakerFader) + row;
    default:
      break;
  }
  constexpr int kInputButtons[] = {item::kInputMute, item::kInputSolo, item::kInputReverse};
  constexpr int kSpeakerButtons[] = {item::kSpeakerMute, item::kSpeakerSolo, 0};
  return (inputs ? kInputButtons : kSpeakerButtons)[static_cast<int>(flag)] + row;
}
static_assert(stripControlId(Strip::Speakers, Shows::StripButton, 15, StripFlag::Solo) == 0x4C1);
static_assert(findEditorControl(1292 + 15)->flag == StripFlag::Reverse);
