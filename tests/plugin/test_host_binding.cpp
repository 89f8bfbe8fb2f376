// Localized dialog creation, linked in directly.
#include <gtest/gtest.h>

#include <string>

#include "plugin/host_api.h"
#include "plugin/window_layer.h"

namespace {

struct DialogCall {
  int resourceId = 0;
  HWND parent = nullptr;
  DLGPROC procedure = nullptr;
  LPARAM param = 0;
  int calls = 0;
} dialog;

HWND createDialog(PlaskDialogResource*, int resourceId, HWND parent, DLGPROC procedure,
                  LPARAM param) {
  dialog = {resourceId, parent, procedure, param, dialog.calls + 1};
  return reinterpret_cast<HWND>(0x1234);
}

INT_PTR ownProcedure(HWND, UINT, WPARAM, LPARAM) {
  return 0;
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
  const HWND parent = reinterpret_cast<HWND>(0x77);
  EXPECT_EQ(createLocalizedDialog(nullptr, 101, parent, &ownProcedure, 42, 1), nullptr);
  EXPECT_EQ(dialog.calls, 0);  // only modeless dialogs are made
  EXPECT_EQ(createLocalizedDialog(nullptr, 101, parent, &ownProcedure, 42, 0),
            reinterpret_cast<HWND>(0x1234));
  EXPECT_EQ(dialog.resourceId, 101);
  EXPECT_EQ(dialog.parent, parent);
  EXPECT_EQ(dialog.procedure, &ownProcedure);  // without the host's hook: ours, as given
  EXPECT_EQ(dialog.param, 42);
  hostApi.__localizePrepareDialog = &prepareDialog;
  createLocalizedDialog(nullptr, 101, parent, &ownProcedure, 42, 0);
  EXPECT_EQ(prepare.context, "spatiola_");
  EXPECT_EQ(prepare.resourceId, 101);
  EXPECT_EQ(prepare.words, 5);
  EXPECT_TRUE(prepare.fifthWasNull);
  EXPECT_EQ(dialog.procedure, &localizedProcedure);
  EXPECT_EQ(dialog.param, reinterpret_cast<LPARAM>(prepare.scratch));
  plaskSlots[static_cast<int>(PlaskId::PLASK_CreateDialog)] = nullptr;
  hostApi = HostApi{};
}
