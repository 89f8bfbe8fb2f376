// What every editor dialog of the process shares: the counter that marks programmatic control
// changes, the column origins measured at the last opening, the rename field (one per process)
// and the strip buttons' images. [UI thread] for all of it; no lock.
#pragma once

#include "editor/control_list.h"
#include "model/panner_plugin.h"
#include "platform/host_functions.h"
#include "platform/plask_dialog_records.h"

// Non-zero while the dialog sets control values itself: the notifications those changes cause are
// not the user's and the command handlers ignore them.
extern int updatingControls;

// Raises updatingControls for a scope.
class UpdatingControls {
 public:
  UpdatingControls() { ++updatingControls; }
  ~UpdatingControls() { --updatingControls; }
  UpdatingControls(const UpdatingControls&) = delete;
  UpdatingControls& operator=(const UpdatingControls&) = delete;
};

// Measured from the strip group boxes when a dialog opens, in its client pixels.
struct ColumnOrigins {
  int inputX;
  int speakerX;
  int stripTop;
};
extern ColumnOrigins columnOrigins;

// The in-place rename field of a channel name; at most one in the process.
struct RenameState {
  HWND renameEdit = nullptr;
  PannerPlugin* renameOwner = nullptr;
  int renameIndex = 0;  // inputs first, then speakers
  AcceleratorRegister renameAccelerator{};
};
extern RenameState renameState;

// [UI thread] Closes the rename field without taking its text when `plugin`'s dialog owns it.
void cancelRenameOf(PannerPlugin& plugin);

// The images of the strips' buttons, "off" and "on" for each flag; each bitmap holds three frames
// of b x b pixels side by side. Referenced, not copied, by the buttons: they live until the last
// instance goes.
struct ButtonImages {
  PlaskButtonImage off[kStripFlagCount];
  PlaskButtonImage on[kStripFlagCount];
};
extern ButtonImages buttonImages;

// [UI thread] Makes all six images at `scale256` when any of the mute or solo images is missing.
void makeButtonImages(int scale256);
// [UI thread, last instance closed] Deletes the six images.
void releaseButtonImages();

// COLORREF 0x00BBGGRR of the window layer's GetSysColor as an opaque DAUB pixel 0xFFRRGGBB.
constexpr DAUB_pixel pixelOfColorRef(int colorRef) {
  const auto c = static_cast<std::uint32_t>(colorRef);
  return 0xFF000000u | ((c & 0xFFu) << 16) | (c & 0xFF00u) | ((c >> 16) & 0xFFu);
}
static_assert(pixelOfColorRef(0x00332211) == 0xFF112233);

// [UI thread] The window layer's system colour 2, the face of the strips' images and names.
DAUB_pixel stripFaceColor();
