#include "model/field_access.h"

const double* globalReal(const PannerPlugin& plugin, GlobalId id) {
  switch (id) {
    case GlobalId::CenterTrim:
      return &plugin.centerTrim;
    case GlobalId::Zoom:
      return &plugin.zoom;
    case GlobalId::SpaceScaleX:
      return &plugin.spaceScaleX;
    case GlobalId::SpaceScaleY:
      return &plugin.spaceScaleY;
    case GlobalId::SpaceScaleZ:
      return &plugin.spaceScaleZ;
    default:
      return nullptr;
  }
}

const std::int32_t* globalIntegers(const PannerPlugin& plugin, GlobalId id) {
  switch (id) {
    case GlobalId::LayoutPreset:
      return &plugin.layoutPreset;
    case GlobalId::UserSpeakerCount:
      return &plugin.userSpeakerCount;
    case GlobalId::InputFaderOffset:
      return &plugin.inputFaderOffset;
    case GlobalId::SpeakerFaderOffset:
      return &plugin.speakerFaderOffset;
    case GlobalId::GroupKnobModes:
      return plugin.groupKnobModes;
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
