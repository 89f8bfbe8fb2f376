// The flat parameter list the host sees: 4 globals, 10 per input, 7 per speaker.
#pragma once

#include <cstddef>

#include "model/field_table.h"
#include "model/panner_plugin.h"

// [any thread] The normalised value, 0 for an index outside 0..numParams-1.
float getParameterValue(PannerPlugin& plugin, int index);

// [any thread] A host-side change: stores the field, marks gain rows and change flags. Ignored
// while a channel-count change is pending, for indexes outside the list and for non-finite values;
// values outside 0..1 are clamped.
void setParameterValue(PannerPlugin& plugin, int index, float value);

// [UI thread] Name of parameter `index` into buffer (length bytes, terminated).
void getParameterName(PannerPlugin& plugin, int index, char* buffer, std::size_t length);

// [UI thread] Display text of the given normalised value (clamped to 0..1), or of the current one
// when hasValue is false or the given value is not finite. Empty past the list.
void getParameterDisplay(PannerPlugin& plugin, int index, char* buffer, std::size_t length,
                         bool hasValue, float value);

// [UI thread] Reports an editor mute or solo click of an input or a speaker as automation.
void notifyMuteSolo(PannerPlugin& plugin, int index, bool isInput, bool isMute);

// [UI thread] Reports the selected inputs' parameters after a group edit in `mode`.
void notifyGroupEdit(PannerPlugin& plugin, int mode, bool endEdit);

// AEffect slots. [any thread]
float getParameterSlot(AEffect* effect, std::int32_t index);
void setParameterSlot(AEffect* effect, std::int32_t index, float value);
