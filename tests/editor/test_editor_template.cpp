// Dialog resource 101 and what it asks of the template builder, at the plug-in's own width (both
// builds run it); the records themselves are read by the headless host's editor tests.
#include <gtest/gtest.h>

#include <cstring>

#include "editor/editor_dialog.h"
#include "plugin/editor_link.h"
#include "plugin/window_layer.h"

namespace {

// The records are read by a host built at the same width.
static_assert(sizeof(PlaskControlRecord) == 9 * sizeof(void*));

// What the template builder asks of the window layer.
std::vector<std::string> builderCalls;
void makeSetCurParms(float xScale, float yScale, int x, int y, HWND parent, bool, bool autoSize) {
  builderCalls.push_back(std::to_string(xScale) + " " + std::to_string(yScale) + " " +
                         std::to_string(x + y) + (parent != nullptr ? " parent" : "") +
                         (autoSize ? " auto" : ""));
}
void generateFromList(const void* records, int count) {
  builderCalls.push_back(records == editorTemplateRecords() ? "records " + std::to_string(count)
                                                            : "other");
}

TEST(EditorTemplate, ResourceBuildsAllRecordsWithoutAutomaticSizing) {
  const PlaskDialogResource* resource = pluginDialogResources();
  ASSERT_NE(resource, nullptr);
  EXPECT_EQ(std::make_tuple(resource->resourceId, std::string(resource->title),
                            resource->windowFlags, resource->width, resource->height),
            std::make_tuple(101, std::string(), 13, 851, 817));
  EXPECT_EQ(resource->next, nullptr);
  PlaskGenericFn& parms = plaskSlots[static_cast<int>(PlaskId::PLASK_MakeSetCurParms)];
  PlaskGenericFn& generate = plaskSlots[static_cast<int>(PlaskId::PLASK_GenerateDialogFromList)];
  parms = reinterpret_cast<PlaskGenericFn>(&makeSetCurParms);
  generate = reinterpret_cast<PlaskGenericFn>(&generateFromList);
  const HWND parent = reinterpret_cast<HWND>(0x10);
  resource->createFunc(parent, resource->windowFlags);
  resource->createFunc(parent, 1);
  parms = generate = nullptr;
  EXPECT_EQ(builderCalls,
            (std::vector<std::string>{"1.900000 1.900000 0 parent", "records 193",
                                      "1.900000 1.900000 0 parent auto", "records 193"}));
}

}  // namespace
