// The dialog's options menu: one flag that the host keeps per plug-in file and reads when it
// loads the plug-in, so a change takes effect only after the plug-in is added again.
#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "plugin/host_api.h"

namespace {

constexpr UINT_PTR kAdjustChannelsItem = 100;
constexpr int kAdjustChannelsBit = 8;
constexpr UINT kMenuFlags = TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON;
constexpr DWORD kModulePathBytes = 1024;
static_assert(kMenuFlags == 0x182);

}  // namespace

void showOptionsMenu(HWND dialog, LPARAM lParam) {
  char path[kModulePathBytes] = {};
  plaskCall<PlaskId::GetModuleFileName>(moduleHandle, path, kModulePathBytes);
  const int flags = hostApi.fxGetSafeMode != nullptr ? hostApi.fxGetSafeMode(path) : 0;
  const HMENU menu = plaskCall<PlaskId::CreatePopupMenu>();
  const UINT checked = (flags & kAdjustChannelsBit) != 0 ? MF_CHECKED : 0;
  plaskCall<PlaskId::PLASK_InsertMenu>(
      menu, 0, MF_BYPOSITION | MF_STRING | checked, kAdjustChannelsItem,
      "Adjust inputs/outputs to match changes in track channel count");
  const int x = signedLowWord(static_cast<std::uintptr_t>(lParam));
  const int y = signedHighWord(static_cast<std::uintptr_t>(lParam));
  const int chosen = plaskCall<PlaskId::TrackPopupMenu>(menu, int{kMenuFlags}, x, y, 0, dialog,
                                                        static_cast<const RECT*>(nullptr));
  plaskCall<PlaskId::DestroyMenu>(menu);
  if (chosen != static_cast<int>(kAdjustChannelsItem)) return;
  if (hostApi.fxSetSafeMode != nullptr) hostApi.fxSetSafeMode(path, flags ^ kAdjustChannelsBit);
  plaskCall<PlaskId::MessageBox>(
      dialog, "Remove and re-add (or offline and online) plug-in for change to take effect",
      "VST: effSetSpeakerArrangement setting tweak", int{MB_OK});
}
