// The two name strips: one bitmap holds 16 input rows above 16 speaker rows, redrawn when the
// names, the selection or the rows shown change (changeFlags bit 2), and copied beside the faders
// on every paint of the dialog.
#include "editor/dialog_calls.h"
#include "editor/editor_dialog.h"
#include "editor/view/daub_calls.h"
#include "editor/view/dpi_aware_font.h"
#include "editor/view/space_render.h"
#include "model/layouts.h"

namespace {

constexpr DAUB_pixel kNameColor = 0xFF000000;
constexpr DAUB_pixel kSpeakerRowColors[2] = {0xFFF0F0F0, 0xFFE0E0E0};  // even, odd speaker
constexpr UINT kNameFlags = DT_SINGLELINE | DT_VCENTER;

struct NamesCanvas {
  DAUB_IBitmap* bitmap;
  StripGeometry geometry;
};

void drawRow(const NamesCanvas& canvas, int row, DAUB_pixel fill, const char* name, bool bold) {
  const StripGeometry& g = canvas.geometry;
  const int top = row * g.rowHeight();
  daubCall<&HostApi::DAUB_FillRect>(canvas.bitmap, 0, top, g.namesWidth(), g.rowHeight(), fill,
                                    1.0f, DAUB_BLIT_MODE_COPY);
  dpiAwareFont& font = bold ? sharedBoldFont() : sharedLabelFont();
  font.SetTextColor(kNameColor);
  RECT box{g.px(3), top + g.px(2), g.namesWidth() - g.px(8), top + g.rowHeight()};
  font.DrawText(canvas.bitmap, name, -1, &box, kNameFlags);
}

void drawInputRows(const NamesCanvas& canvas, const PannerPlugin& plugin) {
  const int offset = plugin.editor.inputFaderOffset;
  for (int row = 0; row < inputRowsShown(plugin); ++row) {
    const int i = offset + row;
    const InputChannel& input = plugin.model.inputs[i];
    drawRow(canvas, row, inputPalette[i % kInputPaletteSize], input.name, input.selected != 0);
  }
}

// In a user setup an LFE speaker is called so, whatever its name.
void drawSpeakerRows(const NamesCanvas& canvas, const PannerPlugin& plugin) {
  const int offset = plugin.editor.speakerFaderOffset;
  for (int row = 0; row < speakerRowsShown(plugin); ++row) {
    const int s = offset + row;
    const Speaker& speaker = plugin.model.speakers[s];
    const bool lfeLabel = plugin.model.layoutPreset == kLayoutUserSetup && speaker.isLfe;
    drawRow(canvas, kStripRows + row, kSpeakerRowColors[s % 2], lfeLabel ? "LFE" : speaker.name,
            s == plugin.view.dragSpeaker);
  }
}

void drawNames(const NamesCanvas& canvas, const PannerPlugin& plugin) {
  const StripGeometry& g = canvas.geometry;
  daubCall<&HostApi::DAUB_FillRect>(canvas.bitmap, 0, 0, g.namesWidth(),
                                    2 * kStripRows * g.rowHeight(), stripFaceColor(), 1.0f,
                                    DAUB_BLIT_MODE_COPY);
  drawInputRows(canvas, plugin);
  drawSpeakerRows(canvas, plugin);
}

// The bitmap at the dialog's scale, drawn when it is new or the names changed.
DAUB_IBitmap* namesBitmap(PannerPlugin& plugin, const StripGeometry& g) {
  DAUB_IBitmap*& bitmap = plugin.editor.namesBitmap;
  const int width = g.namesWidth();
  const int height = 2 * kStripRows * g.rowHeight();
  bool redraw = (plugin.model.changeFlags.fetch_and(~kChangeEditor) & kChangeEditor) != 0;
  if (bitmap == nullptr) {
    if (hostApi.DAUB_CreateBitmap == nullptr) return nullptr;
    bitmap = hostApi.DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, width, height);
    if (bitmap == nullptr) return nullptr;
    redraw = true;
  } else if (redraw) {
    bitmap->resize(width, height);
  }
  if (redraw) {
    bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &plugin.view.viewScale);
    drawNames({bitmap, g}, plugin);
  }
  return bitmap;
}

void copyRows(HDC dc, const StripGeometry& g, Strip strip, int rows, HDC source, int sourceRow) {
  if (rows <= 0) return;
  plaskCall<PlaskId::BitBlt>(dc, g.namesX(strip), g.namesTop(), g.namesWidth(),
                             rows * g.rowHeight(), source, 0, sourceRow * g.rowHeight(),
                             int{SRCCOPY});
}

}  // namespace

void paintNameStrips(PannerPlugin& plugin, HWND dialog) {
  const StripGeometry g{plugin.view.viewScale};
  DAUB_IBitmap* bitmap = namesBitmap(plugin, g);
  PAINTSTRUCT paint{};
  const HDC dc = plaskCall<PlaskId::BeginPaint>(dialog, &paint);
  if (bitmap != nullptr) {
    const HDC source = bitmap->getDC();
    copyRows(dc, g, Strip::Inputs, inputRowsShown(plugin), source, 0);
    copyRows(dc, g, Strip::Speakers, speakerRowsShown(plugin), source, kStripRows);
  }
  plaskCall<PlaskId::EndPaint>(dialog, &paint);
}
