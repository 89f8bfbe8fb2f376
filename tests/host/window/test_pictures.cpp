// The controls' drawing compared with reviewed reference PNGs at 100 % and 200 %, with a small
// tolerance for rasterizer rounding. To accept a deliberate change of the look, regenerate them
// with
//   SPATIOLA_UPDATE_REFERENCE_IMAGES=1 ./build/test_window --gtest_filter='Pictures*'
// and review the new files before committing. A mismatch leaves <name>.actual.png in the test's
// working directory.
#include <cstdlib>

#include "host/graphics/bitmap.h"
#include "host/graphics/drawing.h"
#include "host/graphics/png_io.h"
#include "tests/host/graphics/reference_png.h"
#include "tests/host/window/test_dialog.h"

using namespace winsys;

namespace {

constexpr int kTolerancePerChannel = 8;

class Pictures : public WindowTest {
 public:
  // The test dialog with every control in a state worth seeing; one control disabled.
  HWND dressedDialog(int scale256) {
    const HWND top = frame(700, 500, scale256);
    dialog = createDialog(*system, &testDialogResource, 77, top, recordingDialogProc, 0);
    system->show(window(dialog), true);
    for (const char* item : {"Gain", "LFE"})
      send(kCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
    send(kCombo, CB_SETCURSEL, 1, 0);
    send(kEdit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("Front L"));
    send(kLock, BM_SETCHECK, BST_CHECKED, 0);
    send(kRadioB, BM_SETCHECK, BST_CHECKED, 0);
    system->enable(window(driver->control(dialog, kRadioA)), false);
    send(kFader, TBM_SETTIC, 0, 708);
    send(kFader, TBM_SETPOS, 1, 600);
    send(kFader, WM_KESTEL_SETPROPERTY, kKestelPropertyName, reinterpret_cast<LPARAM>("Zoom"));
    send(kFader, WM_KESTEL_SETPROPERTY, kKestelPropertyValue, reinterpret_cast<LPARAM>("-3.0"));
    const double levels[2] = {-6.5, -20.0};
    send(kMeter, WM_KESTEL_VULEVELS, 0, reinterpret_cast<LPARAM>(levels));
    send(kKnob, WM_KESTEL_KNOBSTYLE, kKnobStyleCentreMark | kKnobStyleEndless, 0);
    const int side = 12 * scale256 / 256;
    image.reset(graphics::DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, 3 * side, side));
    graphics::DAUB_FillRect(image.get(), 0, 0, 3 * side, side, 0xFFE04040, 1.0f, 0);
    for (int frame = 0; frame < 3; ++frame) {
      graphics::DAUB_DrawRect(image.get(), frame * side, 0, side - 1, side - 1, 0xFF000000, 1.0f,
                              0);
    }
    const PlaskButtonImage record{image.get(), {}};
    send(kHot, BM_SETIMAGE, kHotTrackImageKind, reinterpret_cast<LPARAM>(&record));
    system->setFocus(window(driver->control(dialog, kEdit)));
    return dialog;
  }
  LRESULT send(int id, UINT message, WPARAM wParam, LPARAM lParam) {
    return system->send(driver->control(dialog, id), message, wParam, lParam);
  }
  void expectMatchesReference(HWND which, const std::string& name) {
    const std::unique_ptr<graphics::CairoBitmap> actual = system->render(window(which));
    expectMatchesReferencePng(actual.get(), WINDOW_REFERENCE_DIR, name, kTolerancePerChannel);
  }

  HWND dialog = nullptr;
  std::unique_ptr<DAUB_IBitmap> image;
};

}  // namespace

TEST_F(Pictures, DialogAt100Percent) {
  expectMatchesReference(dressedDialog(256), "controls_100");
}

TEST_F(Pictures, HostControlsAt200PercentAndAnOpenList) {
  dressedDialog(512);
  expectMatchesReference(driver->control(dialog, kGroup), "host_controls_200");
  driver->click(driver->control(dialog, kCombo));
  driver->move(driver->control(dialog, kCombo), {40, 70});  // over the list's first row
  expectMatchesReference(system->topLevelWindows().front(), "open_list_200");
}
