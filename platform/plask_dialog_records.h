// The records a plug-in hands the window layer to build dialogs: the control list of
// PLASK_GenerateDialogFromList and the image record of the hot-track button. Each field of a
// control record is one word of the plug-in's width: 32-bit on 32-bit builds, pointer-sized on
// 64-bit builds. The host reads records of its own width; both layouts are checked here.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/daub.h"

// Built-in controls name their class in the first field; any other first field is the text of
// a custom control, whose class name is in the third.
template <typename Word>
struct PlaskControlRecordOf {
  Word classOrText;  // built-in: class name (kPlaskLabelClass, ...); custom: the text
  Word alignOrId;    // built-in: label alignment (-1 left, 0 centred, 1 right), else 0; custom: id
  Word textOrClass;  // built-in: the text; custom: class name
  Word idOrStyle;    // built-in: id; custom: window style
  Word x;            // x, y, width, height in template units
  Word y;
  Word width;
  Word height;
  Word styleOrExStyle;  // built-in: window style; custom: extended style
};

using PlaskControlRecord32 = PlaskControlRecordOf<std::int32_t>;
using PlaskControlRecord64 = PlaskControlRecordOf<std::int64_t>;
// This build's record.
using PlaskControlRecord = PlaskControlRecordOf<std::intptr_t>;

static_assert(sizeof(PlaskControlRecord32) == 36);
static_assert(offsetof(PlaskControlRecord32, idOrStyle) == 12);
static_assert(offsetof(PlaskControlRecord32, x) == 16);
static_assert(offsetof(PlaskControlRecord32, styleOrExStyle) == 32);
static_assert(sizeof(PlaskControlRecord64) == 72);
static_assert(offsetof(PlaskControlRecord64, idOrStyle) == 24);
static_assert(offsetof(PlaskControlRecord64, x) == 32);
static_assert(offsetof(PlaskControlRecord64, styleOrExStyle) == 64);
static_assert(sizeof(PlaskControlRecord) == 9 * sizeof(void*));

// Built-in class names of the first field; the host compares the strings, not the pointers.
#define PLASK_BUILTIN_PREFIX "__PLASK_"
constexpr const char* kPlaskLabelClass = PLASK_BUILTIN_PREFIX "LABEL";
constexpr const char* kPlaskEditClass = PLASK_BUILTIN_PREFIX "EDIT";
constexpr const char* kPlaskComboClass = PLASK_BUILTIN_PREFIX "COMBO";
constexpr const char* kPlaskButtonClass = PLASK_BUILTIN_PREFIX "BUTTON";
constexpr const char* kPlaskGroupClass = PLASK_BUILTIN_PREFIX "GROUP";

// BM_SETIMAGE's record for "HotTrackButton" (wParam 0x8001): a bitmap of three frames side by side
// (normal, under the mouse, pressed) and six reserved words, zero.
struct PlaskButtonImage {
  DAUB_IBitmap* bitmap;
  std::int32_t reserved[6];
};
static_assert(offsetof(PlaskButtonImage, reserved) == sizeof(void*));
static_assert(sizeof(PlaskButtonImage) == (sizeof(void*) == 4 ? 28 : 32));
