// Localized dialog creation, linked in directly. The host toolkit's hook keeps our procedure, so
// the editor's end-to-end tests cover that way; here a hook that replaces it.
#include <gtest/gtest.h>

#include <string>

#include "plugin/host_api.h"
#include "plugin/window_layer.h"

namespace {

struct DialogCall {
  int resourceId = 0;
  DLGPROC procedure = nullptr;
  LPARAM param = 0;
  int calls = 0;
} dialog;

HWND createDialog(PlaskDialogResource*, int resourceId, HWND, DLGPROC procedure, LPARAM param) {
  dialog = {resourceId, procedure, param, dialog.calls + 1};
  return reinterpret_cast<HWND>(0x1234);
}

INT_PTR localizedProcedure(HWND, UINT, WPARAM, LPARAM) {
  return 1;
}

struct PrepareCall {
  std::string context;
  int resourceId = 0;
  void** scratch = nullptr;
  int words = 0;
  bool fifthWasNull = false;
} prepare;

DLGPROC prepareDialog(const char* context, HINSTANCE, int resourceId, DLGPROC, LPARAM,
                      void** scratch, int words) {
  prepare = {context, resourceId, scratch, words, scratch[4] == nullptr};
  return &localizedProcedure;
}

}  // namespace

TEST(LocalizedDialog, TheHostsHookReplacesProcedureAndParameterOfModelessDialogs) {
  plaskSlots[static_cast<int>(PlaskId::PLASK_CreateDialog)] =
      reinterpret_cast<PlaskGenericFn>(&createDialog);
  hostApi.__localizePrepareDialog = &prepareDialog;
  EXPECT_EQ(createLocalizedDialog(nullptr, 101, nullptr, nullptr, 42, 1), nullptr);
  EXPECT_EQ(dialog.calls, 0);  // only modeless dialogs are made
  EXPECT_EQ(createLocalizedDialog(nullptr, 101, nullptr, nullptr, 42, 0),
            reinterpret_cast<HWND>(0x1234));
  EXPECT_EQ(std::tuple(prepare.context, prepare.resourceId, prepare.words, prepare.fifthWasNull),
            std::tuple("spatiola_", 101, 5, true));
  EXPECT_EQ(std::tuple(dialog.resourceId, dialog.procedure, dialog.param),
            std::tuple(101, &localizedProcedure, reinterpret_cast<LPARAM>(prepare.scratch)));
  plaskSlots[static_cast<int>(PlaskId::PLASK_CreateDialog)] = nullptr;
  hostApi = HostApi{};
}
