// The look of the host's controls: one calm light palette (non-premultiplied 0xAARRGGBB) and the
// sizes, at 100 %, that scale with the dialog.
#pragma once

#include <cstdint>

namespace winsys::theme {

constexpr std::uint32_t kFace = 0xFFECECEC;   // dialog background
constexpr std::uint32_t kField = 0xFFFFFFFF;  // edits, lists, menus
constexpr std::uint32_t kFieldDisabled = 0xFFF3F3F3;
constexpr std::uint32_t kText = 0xFF1F1F1F;
constexpr std::uint32_t kTextDisabled = 0xFF9C9C9C;
constexpr std::uint32_t kBorder = 0xFFB4B4B4;
constexpr std::uint32_t kBorderHot = 0xFF8A8A8A;
constexpr std::uint32_t kBorderDisabled = 0xFFD0D0D0;
constexpr std::uint32_t kButton = 0xFFF9F9F9;
constexpr std::uint32_t kButtonHot = 0xFFFFFFFF;
constexpr std::uint32_t kButtonPressed = 0xFFDCDCDC;
constexpr std::uint32_t kAccent = 0xFF2D6CDF;  // focus, selection, checked marks
constexpr std::uint32_t kAccentText = 0xFFFFFFFF;
constexpr std::uint32_t kFocusRing = 0x802D6CDF;
constexpr std::uint32_t kSelectionUnfocused = 0xFFC8D6EE;
constexpr std::uint32_t kGroupLine = 0xFFC6C6C6;
constexpr std::uint32_t kTrack = 0xFFD2D2D2;
constexpr std::uint32_t kTrackFill = 0xFF5B8DE8;
constexpr std::uint32_t kTrackFillDisabled = 0xFFB9C4D8;
constexpr std::uint32_t kTick = 0xFF6E6E6E;
constexpr std::uint32_t kMeterBack = 0xFF2A2A2A;
constexpr std::uint32_t kMeterGreen = 0xFF3CC35A;
constexpr std::uint32_t kMeterYellow = 0xFFE8CF3A;
constexpr std::uint32_t kMeterOrange = 0xFFF08C2E;
constexpr std::uint32_t kMeterRed = 0xFFE5423A;
constexpr std::uint32_t kLocked = 0xFFB06A2E;     // the lock mark of host controls
constexpr std::uint32_t kImageFace = 0xFFD4D4D4;  // system colour 2, behind button images
constexpr std::uint32_t kShadow = 0x30000000;     // under pop-ups

// Sizes in pixels at 100 %.
constexpr double kFontEmPx = 12.0;
constexpr double kCornerPx = 3.0;
constexpr double kComboHeightPx = 24.0;
constexpr double kListItemPx = 22.0;
constexpr double kMenuItemPx = 24.0;
constexpr double kCheckBoxPx = 13.0;
constexpr double kTextPadPx = 5.0;

}  // namespace winsys::theme
