// The host's inline copy of the room picture: messages arrive through the dispatcher with the
// host's bitmap and an information block, and edit the same model as the editor's view.
#include <cstring>

#include "editor/view/daub_calls.h"
#include "editor/view/space_mouse.h"
#include "editor/view/space_render.h"
#include "plugin/editor_link.h"
#include "plugin/window_layer.h"

namespace {

constexpr int kQueryMessage = 0;
constexpr int kSpaceViewItem = 1023;
constexpr std::uint32_t kPaintOnlyIfChanged = 1;

// The fields of the host's block that the view reads.
struct InlineDrawInfo {
  std::int32_t width;
  std::int32_t height;
  std::int32_t mouseX;
  std::int32_t mouseY;
  std::uint32_t flags;
};

InlineDrawInfo readDrawInfo(const void* block) {
  InlineDrawInfo info{};
  std::memcpy(&info, static_cast<const unsigned char*>(block) + 20, sizeof info);
  return info;
}

// The host passes its bitmap as the message's value.
DAUB_IBitmap* hostBitmapOf(VstIntPtr value) {
  return reinterpret_cast<DAUB_IBitmap*>(value);  // NOLINT(performance-no-int-to-ptr)
}

bool pictureChanged(const PannerPlugin& plugin) {
  return plugin.view.inlineRedraw.load() != 0 ||
         (plugin.model.changeFlags.load() & (kChangeSpeakers | kChangeInputs)) != 0;
}

VstIntPtr paintInline(PannerPlugin& plugin, DAUB_IBitmap* bitmap, const void* block) {
  if (bitmap == nullptr || block == nullptr) return 0;
  const InlineDrawInfo info = readDrawInfo(block);
  if ((info.flags & kPaintOnlyIfChanged) != 0 && !pictureChanged(plugin)) return 0;
  plugin.view.inlineRedraw = 0;
  plugin.view.inlineScale = advisoryScale256(bitmap);
  renderSpace(plugin, bitmap, nullptr, kChangeSpeakers | kChangeInputs);
  return 1;
}

// The host's own meanings: a flag word in ptReserved.x and a minimum width.
VstIntPtr answerMinMaxInfo(void* block) {
  if (block == nullptr) return 1;
  const std::int32_t reserved = 0x10000;
  const std::int32_t minTrackWidth = 20;
  std::memcpy(block, &reserved, sizeof reserved);
  std::memcpy(static_cast<unsigned char*>(block) + 24, &minTrackWidth, sizeof minTrackWidth);
  return 1;
}

void invalidateEditorView(const PannerPlugin& plugin) {
  if (plugin.host.editorWindow == nullptr) return;
  const HWND view = plaskCall<PlaskId::GetDlgItem>(plugin.host.editorWindow, kSpaceViewItem);
  plaskCall<PlaskId::InvalidateRect>(view, static_cast<const RECT*>(nullptr), BOOL{0});
}

// False when the message changed nothing the editor must show.
bool routeMouse(PannerPlugin& plugin, int message, const InlineDrawInfo& m) {
  switch (message) {
    case WM_MOUSEMOVE:
      return dragTo(plugin, m.mouseX, m.mouseY, m.width, m.height);
    case WM_LBUTTONDOWN:
      hitTestAndGrab(plugin, m.mouseX, m.mouseY, m.width, m.height, true);
      break;
    case WM_LBUTTONUP:
      finishDrag(plugin);
      break;
    case WM_RBUTTONDOWN:
      startBandSelect(plugin, m.mouseX, m.mouseY);
      break;
    default:
      finishBandSelect(plugin, m.mouseX, m.mouseY, m.width, m.height);
      break;
  }
  return true;
}

// Without the block there is no mouse position: nothing is done.
VstIntPtr handleInlineMouse(PannerPlugin& plugin, int message, const void* block) {
  if (block == nullptr) return 0;
  if (routeMouse(plugin, message, readDrawInfo(block))) invalidateEditorView(plugin);
  return 1;
}

}  // namespace

VstIntPtr handleInlineMessage(PannerPlugin& plugin, int message, VstIntPtr value, void* ptr) {
  switch (message) {
    case kQueryMessage:
      return 1;
    case WM_PAINT:
      return paintInline(plugin, hostBitmapOf(value), ptr);
    case WM_GETMINMAXINFO:
      return answerMinMaxInfo(ptr);
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
      return handleInlineMouse(plugin, message, ptr);
    default:
      return 0;
  }
}
