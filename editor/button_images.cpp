// The strip buttons' images: a letter on the image colour ("on") or on the face colour ("off"),
// in three frames (normal, under the mouse, pressed) that the host lights and shades itself.
#include "editor/editor_shared.h"
#include "editor/view/daub_calls.h"
#include "editor/view/dpi_aware_font.h"
#include "editor/view/space_projection.h"

namespace {

constexpr int kButtonSize100 = 12;
constexpr int kFrames = 3;
constexpr DAUB_pixel kFrameColor = 0xFF000000;

struct ImageLook {
  const char* letter;
  DAUB_pixel onColor;
};
// By StripFlag: mute, solo, reverse.
constexpr ImageLook kLooks[kStripFlagCount] = {
    {"M", 0xFFE04040}, {"S", 0xFFFFE020}, {"R", 0xFF20E0FF}};

DAUB_IBitmap* makeImage(const ImageLook& look, DAUB_pixel face, int side, int scale256) {
  DAUB_IBitmap* bitmap = hostApi.DAUB_CreateBitmap(DAUB_BITMAP_MEMORY, kFrames * side, side);
  if (bitmap == nullptr) return nullptr;
  bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &scale256);
  daubCall<&HostApi::DAUB_FillRect>(bitmap, 0, 0, side, side, face, 1.0f, DAUB_BLIT_MODE_COPY);
  daubCall<&HostApi::DAUB_FillRect>(bitmap, side, 0, 2 * side, side, face, 1.0f,
                                    DAUB_BLIT_MODE_COPY);
  dpiAwareFont& font = sharedLabelFont();
  font.SetTextColor(kFrameColor);
  for (int frame = 0; frame < kFrames; ++frame) {
    const int left = frame * side;
    daubCall<&HostApi::DAUB_DrawRect>(bitmap, left, 0, side - 1, side - 1, kFrameColor, 1.0f,
                                      DAUB_BLIT_MODE_COPY);
    RECT box{left, 0, left + side, side};
    font.DrawText(bitmap, look.letter, -1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
  return bitmap;
}

bool anyMuteOrSoloMissing() {
  for (const StripFlag flag : {StripFlag::Mute, StripFlag::Solo}) {
    const int i = static_cast<int>(flag);
    if (buttonImages.off[i].bitmap == nullptr || buttonImages.on[i].bitmap == nullptr) return true;
  }
  return false;
}

}  // namespace

void makeButtonImages(int scale256) {
  if (!anyMuteOrSoloMissing() || hostApi.DAUB_CreateBitmap == nullptr) return;
  // An image a button of another dialog still shows is kept: buttons reference, never copy.
  const int side = scaledSize(kButtonSize100, scale256);
  const DAUB_pixel face = stripFaceColor();
  for (int i = 0; i < kStripFlagCount; ++i) {
    if (buttonImages.off[i].bitmap == nullptr) {
      buttonImages.off[i] = {makeImage(kLooks[i], face, side, scale256), {}};
    }
    if (buttonImages.on[i].bitmap == nullptr) {
      buttonImages.on[i] = {makeImage(kLooks[i], kLooks[i].onColor, side, scale256), {}};
    }
  }
}

void releaseButtonImages() {
  for (PlaskButtonImage* images : {buttonImages.off, buttonImages.on}) {
    for (int i = 0; i < kStripFlagCount; ++i) {
      delete images[i].bitmap;  // the host's deleting destructor
      images[i].bitmap = nullptr;
    }
  }
}
