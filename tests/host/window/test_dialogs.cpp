// Dialogs from the plug-in's records (the native width; the layout is asserted beside it): the
// template at the dialog's scale, custom control creators, WM_INITDIALOG, controls made one by one.
#include <array>

#include "host/window/control_registry.h"
#include "host/window/dialogs/control_records.h"
#include "tests/host/window/test_dialog.h"

using namespace winsys;

namespace {

HWND probeCreator(HWND parent, int id, const char* className, int style, int x, int y, int w,
                  int h) {
  if (std::string(className) != "ProbeView") return nullptr;
  return WindowSystem::current()->create({.className = "ProbeView",
                                          .style = style | WS_VISIBLE,
                                          .rect = sized(x, y, w, h),
                                          .parent = parent,
                                          .id = id,
                                          .proc = recordingWindowProc});
}

class Dialogs : public WindowTest {
 protected:
  HWND open(int scale256) {
    registerControlCreator(probeCreator);
    const HWND top = frame(800, 600, scale256);
    dialog = createDialog(*system, &testDialogResource, 77, top, recordingDialogProc, 0x1234);
    unregisterControlCreator(probeCreator);
    return dialog;
  }
  RECT rectOf(int id) { return driver->rectIn(driver->control(dialog, id), dialog); }
  HWND dialog = nullptr;
};

}  // namespace

// Positions at 100 % and of the host's controls at 200 % are pinned by the reference pictures.
TEST_F(Dialogs, CustomAndUnknownControlsComeOutAtTheDialogsScale) {
  open(512);
  ASSERT_NE(dialog, nullptr);
  const RECT client = window(dialog)->clientRect();
  EXPECT_EQ((std::array{client.right, client.bottom}), (std::array{600, 400}));
  const std::tuple<int, const char*, RECT> table[] = {
      {kCombo, "ComboBox", {16, 72, 256, 120}},  // one row high, not 60 units
      {kProbe, "ProbeView", {416, 16, 576, 176}},
      {kUnknown, "NoSuchClass", {416, 200, 496, 240}}};
  for (const auto& [id, className, rect] : table) {
    const HWND control = driver->control(dialog, id);
    ASSERT_NE(control, nullptr) << id;
    EXPECT_EQ(window(control)->className, className);
    EXPECT_TRUE(window(control)->visible) << id;
    const RECT r = rectOf(id);
    EXPECT_EQ((std::array{r.left, r.top, r.right, r.bottom}),
              (std::array{rect.left, rect.top, rect.right, rect.bottom}))
        << id;
  }
}

TEST_F(Dialogs, InitDialogGetsTheParameterAndMakeFunctionsUseTheCurrentParameters) {
  open(256);
  const std::vector<Recorded> init = received(WM_INITDIALOG);
  ASSERT_EQ(init.size(), 1u);
  EXPECT_EQ(init[0].lParam, 0x1234);
  EXPECT_EQ(init[0].wParam, reinterpret_cast<WPARAM>(driver->control(dialog, kEdit)))
      << "the first tab stop";
  EXPECT_FALSE(window(dialog)->visible) << "shown by its procedure, not by the layer";
  EXPECT_EQ(createDialog(*system, &testDialogResource, 78, dialog, recordingDialogProc, 0),
            nullptr);
  // After the template the caller's parameters hold: unscaled, in the parent given.
  makeSetCurParms(*system, 1.0f, 1.0f, 5, 0, dialog, false, false);
  const HWND edit = makeControl(*system, {"Edit", "", true, 99, 0, 0, 10, 20, 94, 24});
  EXPECT_EQ(driver->rectIn(edit, dialog).left, 15);
  EXPECT_EQ(driver->rectIn(edit, dialog).right, 109);
  EXPECT_EQ(system->childById(window(dialog), 99), window(edit));
}
