// Timer 1 of the editor dialog, every 50 ms: what the model changed becomes a refresh, a relayout
// and repaints; the meters show the peaks since the last tick, which then fall back.
#include "editor/dialog_calls.h"
#include "editor/editor_dialog.h"

namespace {

constexpr double kRowAbsentDb = -120.0;
constexpr double kPeakFall = 0.8;
constexpr double kPeakFloor = 1e-8;

void sendToDialog(HWND dialog, UINT message) {
  plaskCall<PlaskId::SendMessage>(dialog, message, WPARAM{0}, LPARAM{0});
}

// Answers changeFlags as the tick acts on it, with what a relayout adds.
std::uint32_t applyChanges(PannerPlugin& plugin, HWND dialog) {
  std::uint32_t flags = plugin.model.changeFlags.load();
  if ((flags & kChangeCounts) != 0) {
    constexpr std::uint32_t kRelayoutAdds = kChangeEditor | kChangeLevels | kChangeSpeakers;
    flags = plugin.model.changeFlags.fetch_or(kRelayoutAdds) | kRelayoutAdds;
    sendToDialog(dialog, WM_EDITOR_REFRESH);
    sendToDialog(dialog, WM_EDITOR_RELAYOUT);
  } else if ((flags & kChangeLevels) != 0) {
    sendToDialog(dialog, WM_EDITOR_REFRESH);
  }
  return flags;
}

void invalidateChanged(HWND dialog, std::uint32_t flags) {
  if ((flags & kChangeEditor) != 0) {
    plaskCall<PlaskId::InvalidateRect>(dialog, static_cast<const RECT*>(nullptr), BOOL{0});
  }
  if ((flags & (kChangeSpeakers | kChangeInputs)) != 0) {
    plaskCall<PlaskId::InvalidateRect>(dialogItem(dialog, item::kSpaceView),
                                       static_cast<const RECT*>(nullptr), BOOL{0});
  }
}

// The peak falls unless the audio thread raised it meanwhile: a raise always wins.
double takePeak(std::atomic<double>& peak) {
  double value = peak.load(std::memory_order_relaxed);
  const double fallen = kPeakFall * value < kPeakFloor ? 0.0 : kPeakFall * value;
  peak.compare_exchange_strong(value, fallen, std::memory_order_relaxed);
  return value;
}

void feedMeters(HWND dialog, Strip strip, std::atomic<double> (&peaks)[kMeterSlots], int rows) {
  for (int row = 0; row < kStripRows; ++row) {
    const double peak = takePeak(peaks[row]);
    const double level = row < rows ? levelDb(peak) : kRowAbsentDb;
    const double levels[2] = {level, level};
    sendToItem(dialog, stripControlId(strip, Shows::StripMeter, row), WM_KESTEL_VULEVELS, 0,
               pointerParam(levels));
  }
}

}  // namespace

void editorRefreshTick(PannerPlugin& plugin, HWND dialog) {
  invalidateChanged(dialog, applyChanges(plugin, dialog));
  feedMeters(dialog, Strip::Inputs, plugin.mix.inputPeaks, inputRowsShown(plugin));
  feedMeters(dialog, Strip::Speakers, plugin.mix.speakerPeaks, speakerRowsShown(plugin));
}
