// The SpaceView control: a child window of the editor dialog that shows the room picture and
// passes the mouse on to the room editing.
#include <cstring>

#include "editor/view/daub_calls.h"
#include "editor/view/position_readout.h"
#include "editor/view/space_mouse.h"
#include "editor/view/space_render.h"
#include "plugin/editor_link.h"
#include "plugin/host_api.h"
#include "plugin/window_layer.h"

namespace {

constexpr UINT_PTR kDragRefreshTimer = 1;

struct ClientSize {
  int width;
  int height;
};

ClientSize clientSize(HWND window) {
  RECT r{};
  plaskCall<PlaskId::GetClientRect>(window, &r);
  return {r.right - r.left, r.bottom - r.top};
}

int mouseX(LPARAM lParam) {
  return static_cast<short>(lParam & 0xFFFF);
}
int mouseY(LPARAM lParam) {
  return static_cast<short>((lParam >> 16) & 0xFFFF);
}

PannerPlugin* pluginOf(HWND view) {
  const HWND parent = plaskCall<PlaskId::GetParent>(view);
  const LONG_PTR userData = plaskCall<PlaskId::GetWindowLong>(parent, GWL_USERDATA);
  return reinterpret_cast<PannerPlugin*>(userData);  // NOLINT(performance-no-int-to-ptr)
}

// The bitmaps are made at the first paint's size; a new back layer must be drawn in full.
void makeViewBitmaps(PannerPlugin& plugin, ClientSize size) {
  if (hostApi.DAUB_CreateBitmap == nullptr) return;
  if (plugin.view.viewFront == nullptr) {
    plugin.view.viewFront = hostApi.DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, size.width, size.height);
  }
  if (plugin.view.viewBack == nullptr) {
    plugin.view.viewBack = hostApi.DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, size.width, size.height);
    plugin.model.changeFlags |= kChangeSpeakers;
  }
}

void applyViewScale(PannerPlugin& plugin, HWND view) {
  if (hostApi.GetWindowDPIScalingForDialog == nullptr) return;
  plugin.view.viewScale = hostApi.GetWindowDPIScalingForDialog(view);
  for (DAUB_IBitmap* bitmap : {plugin.view.viewFront, plugin.view.viewBack}) {
    if (bitmap != nullptr) bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &plugin.view.viewScale);
  }
}

// The change bits are taken in one step, so that a change made while drawing is not lost.
void paintView(PannerPlugin& plugin, HWND view) {
  const ClientSize size = clientSize(view);
  makeViewBitmaps(plugin, size);
  applyViewScale(plugin, view);
  const std::uint32_t flags =
      plugin.model.changeFlags.fetch_and(~(kChangeSpeakers | kChangeInputs));
  if ((flags & (kChangeSpeakers | kChangeInputs)) != 0) plugin.view.inlineRedraw = 1;
  renderSpace(plugin, plugin.view.viewFront, plugin.view.viewBack, flags);
  PAINTSTRUCT paint{};
  const HDC dc = plaskCall<PlaskId::BeginPaint>(view, &paint);
  if (plugin.view.viewFront != nullptr) {
    plaskCall<PlaskId::BitBlt>(dc, 0, 0, size.width, size.height, plugin.view.viewFront->getDC(), 0,
                               0, 0);
  }
  plaskCall<PlaskId::EndPaint>(view, &paint);
}

LRESULT setArrowCursor() {
  plaskCall<PlaskId::PLASK_SetCursor>(plaskCall<PlaskId::PLASK_LoadCursor>(IDC_ARROW));
  return 1;
}

bool holdsCapture(HWND view) {
  return plaskCall<PlaskId::GetCapture>() == view;
}

bool dragging(const PannerPlugin& plugin) {
  return plugin.view.dragInput >= 0 || plugin.view.dragSpeaker >= 0;
}

void leftButtonDown(PannerPlugin& plugin, HWND view, LPARAM lParam) {
  const ClientSize size = clientSize(view);
  if (hitTestAndGrab(plugin, mouseX(lParam), mouseY(lParam), size.width, size.height, false)) {
    plaskCall<PlaskId::SetCapture>(view);
  }
  showPositionReadout(plugin, plugin.view.dragInput, plugin.view.dragSpeaker);
}

// A drag step refreshes the whole editor at once through its timer.
void mouseMove(PannerPlugin& plugin, HWND view, LPARAM lParam) {
  if (!holdsCapture(view) || !(dragging(plugin) || plugin.view.bandActive)) return;
  const ClientSize size = clientSize(view);
  if (dragTo(plugin, mouseX(lParam), mouseY(lParam), size.width, size.height)) {
    plaskCall<PlaskId::SendMessage>(plaskCall<PlaskId::GetParent>(view), UINT{WM_TIMER},
                                    kDragRefreshTimer, LPARAM{0});
  }
  showPositionReadout(plugin, plugin.view.dragInput, plugin.view.dragSpeaker);
}

void leftButtonUp(PannerPlugin& plugin, HWND view) {
  if (!holdsCapture(view) || !dragging(plugin)) return;
  plaskCall<PlaskId::ReleaseCapture>();
  finishDrag(plugin);
}

void rightButtonDown(PannerPlugin& plugin, HWND view, LPARAM lParam) {
  startBandSelect(plugin, mouseX(lParam), mouseY(lParam));
  plaskCall<PlaskId::SetCapture>(view);
}

void rightButtonUp(PannerPlugin& plugin, HWND view, LPARAM lParam) {
  if (!holdsCapture(view) || !plugin.view.bandActive) return;
  plaskCall<PlaskId::ReleaseCapture>();
  const ClientSize size = clientSize(view);
  finishBandSelect(plugin, mouseX(lParam), mouseY(lParam), size.width, size.height);
}

// Messages the view handles itself; false sends the message on to DefWindowProc.
bool handleViewMessage(PannerPlugin& plugin, HWND view, UINT message, LPARAM lParam) {
  switch (message) {
    case WM_LBUTTONDOWN:
      leftButtonDown(plugin, view, lParam);
      return true;
    case WM_LBUTTONUP:
      leftButtonUp(plugin, view);
      return true;
    case WM_LBUTTONDBLCLK:
      resetPositions(plugin);
      return true;
    case WM_RBUTTONDOWN:
      rightButtonDown(plugin, view, lParam);
      return true;
    case WM_RBUTTONUP:
      rightButtonUp(plugin, view, lParam);
      return true;
    case WM_PAINT:
      paintView(plugin, view);
      return false;
    case WM_MOUSEMOVE:
      mouseMove(plugin, view, lParam);
      return false;
    default:
      return false;
  }
}

// [UI thread] The SpaceView's procedure; the instance is the parent dialog's user data.
INT_PTR spaceViewProcedure(HWND view, UINT message, WPARAM wParam, LPARAM lParam) {
  PannerPlugin* plugin = pluginOf(view);
  if (plugin != nullptr) {
    if (message == WM_SETCURSOR) return setArrowCursor();
    if (handleViewMessage(*plugin, view, message, lParam)) return 0;
  }
  return plaskCall<PlaskId::DefWindowProc>(view, message, wParam, lParam);
}

// [UI thread] The window layer's creator for custom control classes of dialog templates.
HWND createSpaceView(HWND parent, int id, const char* className, int /*style*/, int x, int y, int w,
                     int h) {
  if (className == nullptr || std::strcmp(className, "SpatiolaWindow") != 0) return nullptr;
  const HWND view = createLocalizedDialog(moduleHandle, 0, parent, &spaceViewProcedure, 0, 0);
  if (view == nullptr) return nullptr;
  plaskCall<PlaskId::SetWindowLong>(view, GWL_ID, LONG_PTR{id});
  plaskCall<PlaskId::SetWindowPos>(view, HWND{nullptr}, x, y, w, h,
                                   UINT{SWP_NOZORDER | SWP_NOACTIVATE});
  plaskCall<PlaskId::ShowWindow>(view, int{SW_SHOWNORMAL});
  return view;
}

}  // namespace

PlaskControlCreator spaceViewControlCreator() {
  return &createSpaceView;
}
