#include "editor/view/daub_calls.h"
#include "editor/view/shared_drawing.h"

// clang-format off
const unsigned char speakerGlyph[kSpeakerGlyphWidth * kSpeakerGlyphHeight] = {
    0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00,
    0x00, 0x00, 0xC0, 0xFF, 0xFF, 0xFF, 0xFF, 0xC0, 0x00, 0x00,
    0x00, 0xC0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xC0, 0x00,
    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
};
// clang-format on

DAUB_IBitmap* speakerIcons[2] = {nullptr, nullptr};

namespace {

constexpr DAUB_pixel kIconColors[2] = {0xFFFFFF00, 0xFF808000};

DAUB_IBitmap* makeSpeakerIcon(DAUB_pixel color) {
  DAUB_IBitmap* icon =
      hostApi.DAUB_CreateBitmap(DAUB_BITMAP_MEMORY, kSpeakerIconSize, kSpeakerIconSize);
  if (icon == nullptr) return nullptr;
  daubCall<&HostApi::DAUB_Clear>(icon, DAUB_pixel{0});
  daubCall<&HostApi::DAUB_DrawGlyph>(icon, 3, 5, color, speakerGlyph, kSpeakerGlyphWidth,
                                     kSpeakerGlyphHeight, 1.0f, DAUB_BLIT_MODE_COPY);
  return icon;
}

}  // namespace

// [UI thread] Both icons or neither: they are made together on first use.
void makeSpeakerIcons() {
  if (speakerIcons[0] != nullptr || hostApi.DAUB_CreateBitmap == nullptr) return;
  for (int i = 0; i < 2; ++i) speakerIcons[i] = makeSpeakerIcon(kIconColors[i]);
}
