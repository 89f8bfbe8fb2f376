// The editor dialog in the host's headless window system.
#include "tests/editor/editor_host.h"

namespace {

TEST(EditorDialog, Smoke) {
  EditorHost host(2, 256);
  ASSERT_NE(host.open(), nullptr);
  host.tick();
  std::string error;
  EXPECT_TRUE(host.system->renderToPng(host.frame, "/tmp/x/editor.png", &error)) << error;
}

}  // namespace
