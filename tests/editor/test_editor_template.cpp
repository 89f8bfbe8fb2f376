// Dialog resource 101 and its control records, at the plug-in's own width (both builds run it).
#include <gtest/gtest.h>

#include <cstring>

#include "editor/editor_dialog.h"
#include "plugin/editor_link.h"
#include "plugin/window_layer.h"

namespace {

std::string textAt(std::intptr_t word) {
  const auto* text = reinterpret_cast<const char*>(word);  // NOLINT(performance-no-int-to-ptr)
  return text != nullptr ? text : "(none)";
}

struct ExpectedRecord {
  int index;
  const char* first;
  std::intptr_t second;
  const char* third;
  std::intptr_t fourth;
  TemplateRect rect;
  std::intptr_t ninth;
};

TEST(EditorTemplate, RecordsCarryTheListInBothLayouts) {
  static_assert(sizeof(PlaskControlRecord) == 9 * sizeof(void*));
  const ExpectedRecord expected[] = {
      {0, "(none)", 1023, "SpatiolaWindow", 0x10000, {7, 7, 263, 242}, 0},
      {1, "__PLASK_LABEL", -1, "Input channels:", 1259, {299, 10, 50, 8}, 0},
      {3, "__PLASK_COMBO", 0, "(none)", 1131, {279, 23, 70, 30}, 0x210003},
      {6, "LFE", 1230, "Button", 0x10003, {412, 24, 25, 10}, 0},
      {21, "__PLASK_LABEL", 0, "(info)", 1287, {277, 122, 167, 8}, 0},
      {52, "Reverse", 1292, "HotTrackButton", 0x4B, {114, 260, 8, 6}, 0},
      {160, "Solo", 1217, "HotTrackButton", 0x4B, {252, 410, 8, 6}, 0},
      {192, "(none)", 1275, "KESTELhfader", 0x10000, {337, 410, 50, 10}, 0}};
  const PlaskControlRecord* records = editorTemplateRecords();
  for (const ExpectedRecord& e : expected) {
    const PlaskControlRecord& r = records[e.index];
    EXPECT_EQ(textAt(r.classOrText), e.first) << e.index;
    EXPECT_EQ(r.alignOrId, e.second) << e.index;
    EXPECT_EQ(textAt(r.textOrClass), e.third) << e.index;
    EXPECT_EQ(r.idOrStyle, e.fourth) << e.index;
    EXPECT_EQ((std::array<std::intptr_t, 5>{r.x, r.y, r.width, r.height, r.styleOrExStyle}),
              (std::array<std::intptr_t, 5>{e.rect.x, e.rect.y, e.rect.w, e.rect.h, e.ninth}))
        << e.index;
  }
}

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
