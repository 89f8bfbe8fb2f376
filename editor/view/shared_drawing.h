// Drawing resources every instance of the process shares: the label font and the two speaker
// icons. Made on first use, deleted with the last instance.
#pragma once

#include "platform/daub.h"

constexpr int kSpeakerIconActive = 0;
constexpr int kSpeakerIconDimmed = 1;
constexpr int kSpeakerIconSize = 16;

// 16 x 16 icons drawn from speakerGlyph; null when the host makes no bitmaps.
extern DAUB_IBitmap* speakerIcons[2];

// The 10 x 6 alpha map of a speaker, narrow end up.
constexpr int kSpeakerGlyphWidth = 10;
constexpr int kSpeakerGlyphHeight = 6;
extern const unsigned char speakerGlyph[kSpeakerGlyphWidth * kSpeakerGlyphHeight];

// [UI thread] Makes both speaker icons unless they exist (or the host makes no bitmaps).
void makeSpeakerIcons();

// [UI thread] Makes the label font and the speaker icons if they are not made yet.
void makeSharedDrawingResources();

// [UI thread, last instance closed] Deletes the label and bold fonts and the speaker icons.
void releaseViewDrawingResources();
