// The AEffect dispatcher: one short case per opcode, each calling a named helper.
#include <algorithm>
#include <cstring>
#include <limits>

#include "model/host_link.h"
#include "model/parameters.h"
#include "platform/host_functions.h"
#include "platform/spatiola_identity.h"
#include "plugin/channel_arrangement.h"
#include "plugin/editor_link.h"
#include "plugin/host_api.h"
#include "plugin/plugin_entry.h"
#include "plugin/state_chunk.h"
#include "plugin/window_layer.h"

namespace {

constexpr std::size_t kTextLength = 256;
constexpr int kNameLimit = 32;
constexpr int kEditorDialogResource = 101;
constexpr short kDefaultEditorWidth = 520;
constexpr short kDefaultEditorHeight = 640;
constexpr VstIntPtr kVstVersion = 2400;
constexpr std::int32_t kVendorInlineView = effEditDraw;

PannerPlugin* instanceOf(AEffect* effect) {
  return effect == nullptr ? nullptr : static_cast<PannerPlugin*>(effect->object);
}

// Copies with the window layer's lstrcpyn; a host that lends none still gets the text.
void copyName(void* ptr, const char* text) {
  auto* destination = static_cast<char*>(ptr);
  if (plaskAvailable<PlaskId::lstrcpyn>()) {
    plaskCall<PlaskId::lstrcpyn>(destination, text, kNameLimit);
    return;
  }
  std::strncpy(destination, text, kNameLimit - 1);
  destination[kNameLimit - 1] = '\0';
}

VstIntPtr openEditor(PannerPlugin& plugin, void* parent) {
  if (plugin.host.editorWindow != nullptr)
    plaskCall<PlaskId::DestroyWindow>(plugin.host.editorWindow);
  const DLGPROC procedure = editorDialogProcedure();
  if (procedure == nullptr) return 0;
  const HWND window =
      createLocalizedDialog(nullptr, kEditorDialogResource, static_cast<HWND>(parent), procedure,
                            reinterpret_cast<LPARAM>(&plugin), 0);
  return window != nullptr ? 1 : 0;
}

VstIntPtr editorRectangle(PannerPlugin& plugin, void* ptr) {
  if (ptr == nullptr) return 0;
  ERect& rect = plugin.host.editorRect;
  RECT client{};
  if (plugin.host.editorWindow != nullptr &&
      plaskCall<PlaskId::GetClientRect>(plugin.host.editorWindow, &client)) {
    rect = ERect{static_cast<short>(client.top), static_cast<short>(client.left),
                 static_cast<short>(client.bottom), static_cast<short>(client.right)};
  } else {
    rect = ERect{0, 0, kDefaultEditorHeight, kDefaultEditorWidth};
  }
  *static_cast<ERect**>(ptr) = &rect;
  return 1;
}

VstIntPtr parameterDisplay(PannerPlugin& plugin, std::int32_t index, void* ptr) {
  if (ptr == nullptr) return 0;
  getParameterDisplay(plugin, index, static_cast<char*>(ptr), kTextLength, false, 0.0f);
  return 1;
}

VstIntPtr parameterName(PannerPlugin& plugin, std::int32_t index, void* ptr) {
  if (ptr != nullptr) getParameterName(plugin, index, static_cast<char*>(ptr), kTextLength);
  return 0;
}

VstIntPtr stateChunk(PannerPlugin& plugin, void* ptr) {
  if (ptr == nullptr) return 0;
  return writeStateChunk(plugin, static_cast<void**>(ptr));
}

VstIntPtr loadStateChunk(PannerPlugin& plugin, VstIntPtr length, void* ptr) {
  std::int32_t bytes = 0;
  if (ptr != nullptr && length > 0)
    bytes = length > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(length);
  readStateChunk(plugin, ptr, bytes);
  return 0;
}

VstIntPtr speakerArrangement(PannerPlugin& plugin, VstIntPtr inputArrangement, void* ptr) {
  if (inputArrangement == 0 || ptr == nullptr) return 0;
  const auto* outputs = static_cast<const VstSpeakerArrangement*>(ptr);
  changeArrangementFromStandardCall(plugin, outputs->numChannels);
  return 0;
}

VstIntPtr canDo(const void* ptr) {
  if (ptr == nullptr) return 0;
  const auto* text = static_cast<const char*>(ptr);
  if (std::strcmp(text, "hasTolvekExtensions") == 0) return kExtensionCanDoAnswer;
  if (std::strcmp(text, "hasTolvekViewAsConfig") == 0) return kExtensionCanDoAnswer;
  if (std::strcmp(text, "wantsChannelCountNotifications") == 0) return 1;
  if (std::strcmp(text, "hasTolvekEmbeddedUI") == 0) return kExtensionCanDoAnswer;
  return 0;
}

// The inline view's message number travels in a float; one that no int can hold (NaN, infinities,
// beyond +-2^31) names no message and is not handed on.
VstIntPtr inlineMessage(PannerPlugin& plugin, float opt, VstIntPtr value, void* ptr) {
  if (!(opt >= -2147483648.0f && opt < 2147483648.0f)) return 0;
  return handleInlineMessage(plugin, static_cast<int>(opt), value, ptr);
}

// A 64-bit host value that names a parameter or a count: saturated rather than wrapped, so that
// 2^32 + 3 never reaches parameter 3.
std::int32_t saturatedInt(VstIntPtr value) {
  constexpr VstIntPtr kLow = std::numeric_limits<std::int32_t>::min();
  constexpr VstIntPtr kHigh = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(value, kLow, kHigh));
}

VstIntPtr vendorSpecific(PannerPlugin* plugin, std::int32_t index, VstIntPtr value, void* ptr,
                         float opt) {
  if (plugin == nullptr) return 0;
  if (ptr != nullptr) {
    if (index == kVendorIgnoredIndex || index == effString2Parameter) return 0;
    if (index == effGetParamDisplay) {
      getParameterDisplay(*plugin, saturatedInt(value), static_cast<char*>(ptr), kTextLength, true,
                          opt);
      return kVendorDisplayAnswer;
    }
  }
  if (index == effSetSpeakerArrangement) {
    changeArrangementFromExtension(*plugin, saturatedInt(value));
    return 0;
  }
  if (index == kVendorInlineView) return inlineMessage(*plugin, opt, value, ptr);
  return 0;
}

VstIntPtr closeInstance(PannerPlugin& plugin) {
  destroyInstance(&plugin);
  delete &plugin;
  return 0;
}

VstIntPtr requestIdle(AEffect* effect) {
  if (hostCallback != nullptr) hostCallback(effect, audioMasterNeedIdle, 0, 0, nullptr, 0.0f);
  return 0;
}

VstIntPtr switchedOff(PannerPlugin& plugin, VstIntPtr value) {
  if (value == 0) resetMeters(plugin);
  return 0;
}

VstIntPtr copyText(void* ptr, const char* text) {
  if (ptr != nullptr) copyName(ptr, text);
  return 0;
}

VstIntPtr emptyLabel(void* ptr) {
  if (ptr != nullptr) static_cast<char*>(ptr)[0] = '\0';
  return 0;
}

VstIntPtr closeEditor(PannerPlugin& plugin) {
  if (plugin.host.editorWindow != nullptr)
    plaskCall<PlaskId::DestroyWindow>(plugin.host.editorWindow);
  return 0;
}

VstIntPtr canBeAutomated(const AEffect* effect, std::int32_t index) {
  return index >= 0 && index < effect->numParams ? 1 : 0;
}

VstIntPtr idle(PannerPlugin* plugin) {
  processPendingArrangement(plugin);
  return 1;
}

// Opcodes that answer without an instance, or whose answer does not depend on one.
bool answerWithoutInstance(AEffect* effect, std::int32_t opcode, void* ptr, VstIntPtr& result) {
  switch (opcode) {
    case effOpen:
      result = requestIdle(effect);
      return true;
    case effGetPlugCategory:
      result = kPlugCategEffect;
      return true;
    case effGetEffectName:
      result = copyText(ptr, kSpatiolaEffectName);
      return true;
    case effGetVendorString:
      result = copyText(ptr, kSpatiolaVendor);
      return true;
    case effGetProductString:
      result = copyText(ptr, kSpatiolaProductName);
      return true;
    case effCanDo:
      result = canDo(ptr);
      return true;
    case effGetTailSize:
      result = 1;
      return true;
    case effGetVstVersion:
      result = kVstVersion;
      return true;
    default:
      return false;
  }
}

VstIntPtr dispatchToInstance(PannerPlugin& plugin, AEffect* effect, std::int32_t opcode,
                             std::int32_t index, VstIntPtr value, void* ptr) {
  switch (opcode) {
    case effClose:
      return closeInstance(plugin);
    case effGetParamLabel:
      return emptyLabel(ptr);
    case effGetParamDisplay:
      return parameterDisplay(plugin, index, ptr);
    case effGetParamName:
      return parameterName(plugin, index, ptr);
    case effMainsChanged:
      return switchedOff(plugin, value);
    case effEditGetRect:
      return editorRectangle(plugin, ptr);
    case effEditOpen:
      return openEditor(plugin, ptr);
    case effEditClose:
      return closeEditor(plugin);
    case effGetChunk:
      return stateChunk(plugin, ptr);
    case effSetChunk:
      return loadStateChunk(plugin, value, ptr);
    case effCanBeAutomated:
      return canBeAutomated(effect, index);
    case effSetSpeakerArrangement:
      return speakerArrangement(plugin, value, ptr);
    case effStopProcess:
      return switchedOff(plugin, value);
    default:
      return 0;
  }
}

VstIntPtr dispatch(AEffect* effect, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                   void* ptr, float opt) {
  VstIntPtr result = 0;
  if (answerWithoutInstance(effect, opcode, ptr, result)) return result;
  PannerPlugin* plugin = instanceOf(effect);
  if (opcode == effVendorSpecific) return vendorSpecific(plugin, index, value, ptr, opt);
  if (opcode == effIdle) return idle(plugin);
  if (plugin == nullptr) return 0;
  return dispatchToInstance(*plugin, effect, opcode, index, value, ptr);
}

}  // namespace

// [host, UI thread] The host's only way to ask the plug-in for anything but audio and parameters.
VstIntPtr dispatcher(AEffect* effect, std::int32_t opcode, std::int32_t index, VstIntPtr value,
                     void* ptr, float opt) {
  try {
    return dispatch(effect, opcode, index, value, ptr, opt);
  } catch (...) {
    return 0;
  }
}
