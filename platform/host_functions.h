// The host's extension services: functions fetched by name through the VST callback, the
// channel-count query and the vendor-specific notifications. Shared by plug-in and host.
#pragma once

#include <cstdint>
#include <iterator>
#include <string_view>

#include "platform/daub.h"
#include "platform/win32_types.h"

// Callback arguments of the extension requests (passed as 32-bit opcode and index).
constexpr std::int32_t kHostExtensionOpcode = static_cast<std::int32_t>(0xdeadbeefu);
constexpr std::int32_t kHostFunctionLookupIndex = static_cast<std::int32_t>(0xdeadf00du);
constexpr std::int32_t kHostChannelCountIndex = static_cast<std::int32_t>(0xdeadf00eu);
constexpr std::intptr_t kHostChannelCountQueryValue = 5;

// audioMasterVendorSpecific notifications, index kHostExtensionOpcode:
//   value 0:  ptr -> ParameterListChange (parameters appeared or disappeared)
//   value 13: ptr is an integer: a packed channel-count report or a bare speaker count
constexpr std::intptr_t kHostNotifyParameterList = 0;
constexpr std::intptr_t kHostNotifyChannelCounts = 13;

// {first parameter index that moved, number added (negative when removed)}
struct ParameterListChange {
  std::int32_t firstIndex;
  std::int32_t delta;
};
static_assert(sizeof(ParameterListChange) == 8);

// effCanDo answer of the extension capabilities: the 32-bit pattern, widened as a negative value.
constexpr std::intptr_t kExtensionCanDoAnswer = static_cast<std::int32_t>(0xbeef0000u);
static_assert(kExtensionCanDoAnswer < 0);
// effVendorSpecific index of a parameter-display request for a given value.
constexpr std::intptr_t kVendorDisplayAnswer = 0xbeef;
constexpr std::int32_t kVendorIgnoredIndex = static_cast<std::int32_t>(0xdeadbef0u);

// Keyboard hook record registered with plugin_register("<accelerator", record).
struct AcceleratorRegister {
  int (*translate)(MSG* message, AcceleratorRegister* record);
  bool isLocal;
  void* context;
};

// clang-format off
using GetResourcePathFn = const char* (*)();
using get_ini_fileFn = const char* (*)();
using GetIconThemePointerFn = void* (*)(const char* name);
using SLIDER2DBFn = double (*)(double sliderPosition);
using DB2SLIDERFn = double (*)(double levelDb);
using plugin_registerFn = int (*)(const char* name, void* record);
using fxGetSafeModeFn = int (*)(const char* pluginPath);
using fxSetSafeModeFn = void (*)(const char* pluginPath, int flags);
using GetMainHwndFn = HWND (*)();
using GetWindowDPIScalingForDialogFn = int (*)(HWND window);
using vac_createGroupsFromTabFn = void* (*)(void* tab);
using localizeFuncFn = const char* (*)(const char* text, const char* context, int flags);
using localizeMenuFn = void (*)(const char* context, HMENU menu, const char* prefix);
using localizeInitializeDialogFn = void (*)(HWND window, const char* context);
using localizePrepareDialogFn = DLGPROC (*)(const char* context, HINSTANCE module,
                                            int resourceId, DLGPROC dialogProc, LPARAM param,
                                            void** scratch, int scratchWords);
// clang-format on

// The 39 host functions in lookup order: X(name, signature).
// clang-format off
#define HOST_FUNCTION_LIST(X)                                      \
  X(GetResourcePath, GetResourcePathFn)                            \
  X(get_ini_file, get_ini_fileFn)                                  \
  X(GetIconThemePointer, GetIconThemePointerFn)                    \
  X(SLIDER2DB, SLIDER2DBFn)                                        \
  X(DB2SLIDER, DB2SLIDERFn)                                        \
  X(plugin_register, plugin_registerFn)                            \
  X(fxGetSafeMode, fxGetSafeModeFn)                                \
  X(fxSetSafeMode, fxSetSafeModeFn)                                \
  X(GetMainHwnd, GetMainHwndFn)                                    \
  X(GetWindowDPIScalingForDialog, GetWindowDPIScalingForDialogFn)  \
  X(DAUB_CreateBitmap, DAUB_CreateBitmapFn)                        \
  X(DAUB_GetPixel, DAUB_GetPixelFn)                                \
  X(DAUB_PutPixel, DAUB_PutPixelFn)                                \
  X(DAUB_LineInt, DAUB_LineIntFn)                                  \
  X(DAUB_Line, DAUB_LineFn)                                        \
  X(DAUB_ThickFLine, DAUB_ThickFLineFn)                            \
  X(DAUB_Circle, DAUB_CircleFn)                                    \
  X(DAUB_FillCircle, DAUB_FillCircleFn)                            \
  X(DAUB_FillRect, DAUB_FillRectFn)                                \
  X(DAUB_DrawRect, DAUB_DrawRectFn)                                \
  X(DAUB_BorderedRect, DAUB_BorderedRectFn)                        \
  X(DAUB_Clear, DAUB_ClearFn)                                      \
  X(DAUB_Blit, DAUB_BlitFn)                                        \
  X(DAUB_RotatedBlit, DAUB_RotatedBlitFn)                          \
  X(DAUB_DrawGlyph, DAUB_DrawGlyphFn)                              \
  X(DAUB_CreateFont, DAUB_CreateFontFn)                            \
  X(DAUB_FillTriangle, DAUB_FillTriangleFn)                        \
  X(DAUB_Arc, DAUB_ArcFn)                                          \
  X(DAUB_FillTrapezoid, DAUB_FillTrapezoidFn)                      \
  X(DAUB_FillConvexPolygon, DAUB_FillConvexPolygonFn)              \
  X(DAUB_Copy, DAUB_CopyFn)                                        \
  X(DAUB_ScaledBlit, DAUB_ScaledBlitFn)                            \
  X(DAUB_MeasureText, DAUB_MeasureTextFn)                          \
  X(DAUB_DrawText, DAUB_DrawTextFn)                                \
  X(vac_createGroupsFromTab, vac_createGroupsFromTabFn)            \
  X(__localizeFunc, localizeFuncFn)                                \
  X(__localizeMenu, localizeMenuFn)                                \
  X(__localizeInitializeDialog, localizeInitializeDialogFn)        \
  X(__localizePrepareDialog, localizePrepareDialogFn)
// clang-format on

constexpr int kHostFunctionCount = 39;

// The names in lookup order, as the host's table and the plug-in's fetch walk them.
constexpr std::string_view kHostFunctionNames[] = {
#define HOST_FUNCTION_NAME(name, type) #name,
    HOST_FUNCTION_LIST(HOST_FUNCTION_NAME)
#undef HOST_FUNCTION_NAME
};
static_assert(std::size(kHostFunctionNames) == kHostFunctionCount);
static_assert(kHostFunctionNames[1] == "get_ini_file" &&
              kHostFunctionNames[9] == "GetWindowDPIScalingForDialog" &&
              kHostFunctionNames[10] == "DAUB_CreateBitmap" &&
              kHostFunctionNames[33] == "DAUB_DrawText" &&
              kHostFunctionNames[38] == "__localizePrepareDialog");
