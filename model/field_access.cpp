#include "model/field_access.h"

const double* globalReal(const PannerPlugin& plugin, GlobalId id) {
  switch (id) {
    case GlobalId::CenterTrim:
      return &plugin.model.centerTrim;
    case GlobalId::Zoom:
      return &plugin.view.zoom;
    case GlobalId::SpaceScaleX:
      return &plugin.model.spaceScaleX;
    case GlobalId::SpaceScaleY:
      return &plugin.model.spaceScaleY;
    case GlobalId::SpaceScaleZ:
      return &plugin.model.spaceScaleZ;
    default:
      return nullptr;
  }
}

const std::int32_t* globalIntegers(const PannerPlugin& plugin, GlobalId id) {
  switch (id) {
    case GlobalId::LayoutPreset:
      return &plugin.model.layoutPreset;
    case GlobalId::UserSpeakerCount:
      return &plugin.model.userSpeakerCount;
    case GlobalId::InputFaderOffset:
      return &plugin.editor.inputFaderOffset;
    case GlobalId::SpeakerFaderOffset:
      return &plugin.editor.speakerFaderOffset;
    case GlobalId::GroupKnobModes:
      return plugin.editor.groupKnobModes;
    default:
      return nullptr;
  }
}

double* globalReal(PannerPlugin& plugin, GlobalId id) {
  return const_cast<double*>(globalReal(static_cast<const PannerPlugin&>(plugin), id));
}

std::int32_t* globalIntegers(PannerPlugin& plugin, GlobalId id) {
  return const_cast<std::int32_t*>(globalIntegers(static_cast<const PannerPlugin&>(plugin), id));
}
