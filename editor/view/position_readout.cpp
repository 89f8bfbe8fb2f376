#include "editor/view/position_readout.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <numbers>

#include "plugin/window_layer.h"

namespace {

double degreesOf(double angleRad) {
  return angleRad * 360.0 * 0.5 / std::numbers::pi;
}

void appendFloor(char* text, int capacity, double x, double y) {
  if (x > 0.0) appendFormat(text, capacity, "%.0f%%R  ", 100.0 * x);
  if (x < 0.0) appendFormat(text, capacity, "%.0f%%L  ", -100.0 * x);
  if (y > 0.0) appendFormat(text, capacity, "%.0f%%F  ", 100.0 * y);
  if (y < 0.0) appendFormat(text, capacity, "%.0f%%B  ", -100.0 * y);
  // Azimuth: 0 straight ahead, positive to the right.
  if (x != 0.0 && y != 0.0) appendFormat(text, capacity, "(%.0f deg)  ", degreesOf(atan2(x, y)));
}

void appendHeight(char* text, int capacity, double x, double y, double z) {
  if (z == 0.0) return;
  appendFormat(text, capacity, "%.0f%%H  ", 100.0 * z);
  appendFormat(text, capacity, "(%.0f deg)  ", degreesOf(atan2(z, std::sqrt(y * y + x * x))));
}

struct Position {
  bool valid;
  double x;
  double y;
  double z;
};

Position readoutPosition(PannerPlugin& plugin, int inputIndex, int speakerIndex) {
  ModelLock lock(plugin);
  if (inputIndex >= 0) {
    if (inputIndex >= plugin.inputCount()) return {false, 0.0, 0.0, 0.0};
    const InputChannel& input = plugin.model.inputs[inputIndex];
    return {true, input.x, input.y, input.z};
  }
  if (speakerIndex < 0 || speakerIndex >= plugin.speakerCount()) return {false, 0.0, 0.0, 0.0};
  const Speaker& speaker = plugin.model.speakers[speakerIndex];
  return {true, speaker.x, speaker.y, speaker.z};
}

}  // namespace

void appendFormat(char* buffer, int capacity, const char* format, ...) {
  if (capacity <= 0) return;
  const std::size_t used = strnlen(buffer, static_cast<std::size_t>(capacity));
  if (used >= static_cast<std::size_t>(capacity)) return;
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer + used, static_cast<std::size_t>(capacity) - used, format, arguments);
  va_end(arguments);
}

void formatPosition(char* text, int capacity, double x, double y, double z) {
  if (capacity <= 0) return;
  text[0] = '\0';
  appendFloor(text, capacity, x, y);
  appendHeight(text, capacity, x, y, z);
  cutTrailingSeparator(text);
}

void cutTrailingSeparator(char* text) {
  const std::size_t length = std::strlen(text);
  if (length > 2) text[length - 2] = '\0';
}

// [UI thread] Reads the position under modelMutex, writes the label after releasing it.
void showPositionReadout(PannerPlugin& plugin, int inputIndex, int speakerIndex) {
  if (plugin.host.editorWindow == nullptr) return;
  const Position position = readoutPosition(plugin, inputIndex, speakerIndex);
  char text[kReadoutCapacity] = "";
  if (position.valid) formatPosition(text, kReadoutCapacity, position.x, position.y, position.z);
  setInfoText(plugin, text);
}

// [UI thread] Window layer only.
void setInfoText(PannerPlugin& plugin, const char* text) {
  HWND editor = plugin.host.editorWindow;
  if (editor == nullptr) return;
  plaskCall<PlaskId::KillTimer>(editor, kInfoClearTimerId);
  plaskCall<PlaskId::SetDlgItemText>(editor, kInfoLabelId, text);
  if (text[0] != '\0') {
    plaskCall<PlaskId::SetTimer>(editor, kInfoClearTimerId, kInfoClearDelayMs, TIMERPROC{nullptr});
  }
}
