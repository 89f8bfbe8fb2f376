// The typed channel counts and centre trim, applied 500 ms after the last key so that "1" on the
// way to "12" never lays out one channel.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "editor/dialog_calls.h"
#include "editor/dialog_handlers.h"
#include "editor/edit_reports.h"
#include "editor/editor_dialog.h"
#include "model/counts.h"
#include "model/field_table.h"
#include "plugin/host_api.h"

namespace {

constexpr int kCountTextBytes = 256;
constexpr double kMaxTrim = 4.0;
constexpr double kSilentTrim = 1e-6;
constexpr int kFaderTop = 1000;

void applyTypedCount(PannerPlugin& plugin, HWND dialog, bool inputs) {
  char text[kCountTextBytes] = {};
  plaskCall<PlaskId::GetDlgItemText>(dialog, inputs ? item::kInputCount : item::kSpeakerCount, text,
                                     kCountTextBytes);
  const long n = std::strtol(text, nullptr, 10);
  const int current = inputs ? plugin.inputCount() : plugin.speakerCount();
  if (n < 1 || n > kMaxInputs || n == current) return;
  markArrangementPending(plugin);
  if (inputs) {
    setInputCount(plugin, static_cast<int>(n));
  } else {
    setSpeakerCount(plugin, static_cast<int>(n));
  }
  plugin.model.changeFlags.fetch_or(kChangeCounts);
}

double sliderOfDb(double levelDb) {
  return hostApi.DB2SLIDER != nullptr ? hostApi.DB2SLIDER(levelDb) : 0.0;
}

// A text that is no number reads as 0 dB; the edit keeps what was typed.
void applyTypedTrim(PannerPlugin& plugin, HWND dialog) {
  char text[kCountTextBytes] = {};
  plaskCall<PlaskId::GetDlgItemText>(dialog, item::kCenterTrimText, text, kCountTextBytes);
  const double typedDb = std::strtod(text, nullptr);
  const double a = std::exp(typedDb * kNepersPerDb);
  const double trim = a < kSilentTrim ? 0.0 : std::min(a, kMaxTrim);
  if (trim == plugin.model.centerTrim) return;
  const double position = sliderOfDb(trim == 0.0 ? kFloorDb : levelDb(trim));
  {
    ModelLock lock(plugin);
    plugin.model.centerTrim = trim;
  }
  {
    const UpdatingControls updating;
    setFaderPosition(dialog, item::kCenterTrim,
                     std::min(kFaderTop, static_cast<int>(std::lround(position))));
    setFaderText(dialog, item::kCenterTrim, kKestelPropertyValue, text);
  }
  reportParameter(plugin, kGlobalCenterTrim, trim / kMaxTrim);
  endParameterEdit(plugin, kGlobalCenterTrim);
  ModelLock lock(plugin);
  markInputsDirty(plugin, kDirtyAllInputs);
}

}  // namespace

void applyTypedEdit(PannerPlugin& plugin, HWND dialog, UINT_PTR timer) {
  plaskCall<PlaskId::KillTimer>(dialog, timer);
  plugin.editor.typingEdits &= static_cast<std::uint8_t>(~typingBit(timer));
  if (timer == kTrimTypedTimerId) return applyTypedTrim(plugin, dialog);
  applyTypedCount(plugin, dialog, timer == kInputCountTimerId);
}
