// The window system's two figures: a full repaint of a dialog the size of the editor's (851 x 817
// pixels at 100 %) with its 193 controls, and the processor time the SDL2 back-end takes while
// idle in a private X server, as a fraction of one core.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <memory>
#include <vector>

#include "host/graphics/bitmap.h"
#include "host/graphics/drawing.h"
#include "host/window/backend/headless_backend.h"
#include "host/window/backend/sdl_backend.h"
#include "host/window/core/window_system.h"
#include "host/window/dialogs/dialog_builder.h"
#include "host/window/driver/window_driver.h"
#include "tests/host/window/x11_support.h"

using namespace winsys;

namespace {

std::vector<PlaskControlRecord> editorLikeControls() {
  std::vector<PlaskControlRecord> list;
  auto text = [](const char* s) { return reinterpret_cast<std::intptr_t>(s); };
  auto builtin = [&](const char* cls, int align, const char* label, int id, int x, int y, int w,
                     int h, int style) {
    list.push_back({text(cls), align, text(label), id, x, y, w, h, style});
  };
  auto custom = [&](const char* label, int id, const char* cls, int style, int x, int y, int w,
                    int h) {
    list.push_back({text(label), id, text(cls), style, x, y, w, h, 0});
  };
  const int combo = CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;
  custom(nullptr, 1023, "SpatiolaWindow", WS_TABSTOP, 7, 7, 263, 242);
  builtin(kPlaskLabelClass, -1, "Input channels:", 1259, 299, 10, 50, 8, 0);
  builtin(kPlaskEditClass, 0, "8", 1231, 356, 8, 17, 13, ES_AUTOHSCROLL);
  builtin(kPlaskComboClass, 0, "", 1131, 279, 23, 70, 30, combo);
  builtin(kPlaskEditClass, 0, "6", 1222, 356, 23, 17, 13, ES_AUTOHSCROLL);
  builtin(kPlaskLabelClass, -1, "speakers", 1226, 376, 24, 29, 8, 0);
  custom("LFE", 1230, "Button", 0x10003, 412, 24, 25, 10);
  builtin(kPlaskGroupClass, 0, "Edit selected inputs", 1227, 276, 41, 168, 77, 0);
  for (int row = 0; row < 3; ++row) {
    const int y = 54 + 16 * row;
    builtin(kPlaskComboClass, 0, "", 1128 + row, 282, y, 76, 30, combo);
    custom(nullptr, 1134 + row, "KESTELknob", WS_TABSTOP, 362, y - 2, 14, 14);
    builtin(kPlaskButtonClass, 0, "Reset", 1236 + row, 380, y, 28, 14, 0);
    builtin(kPlaskButtonClass, 0, "Invert", 1233 + row, 412, y, 28, 14, 0);
  }
  custom("Lock input channel positions and levels", 1286, "Button", 0x10003, 292, 104, 140, 10);
  builtin(kPlaskLabelClass, 0, "50%R  50%F  (45 deg)", 1287, 277, 122, 167, 8, 0);
  builtin(kPlaskLabelClass, -1, "Speaker influence:", 0, 281, 133, 60, 8, 0);
  custom("Relative", 1290, "Button", 9, 345, 132, 42, 10);
  custom("Absolute", 1291, "Button", 9, 389, 132, 43, 10);
  custom("Normalize multichannel gain", 1288, "Button", 0x10003, 310, 145, 102, 10);
  builtin(kPlaskGroupClass, 0, "Space size", 1002, 276, 158, 168, 55, 0);
  const char* faderLabels[] = {"X width:", "Y depth:", "Z height:", "Zoom:"};
  for (int k = 0; k < 4; ++k) {
    const int y = k < 3 ? 167 + 14 * k : 217;
    builtin(kPlaskLabelClass, -1, faderLabels[k], 1223 + k, 293, y + 3, 28, 8, 0);
    custom(nullptr, 1075 + k, "KESTELhfader", WS_TABSTOP, 324, y, 111, 13);
  }
  builtin(kPlaskLabelClass, -1, "Center trim:", 1229, 279, 237, 36, 8, 0);
  custom(nullptr, 1079, "KESTELhfader", WS_TABSTOP, 319, 235, 78, 13);
  builtin(kPlaskEditClass, 0, "0.0", 1257, 400, 235, 26, 14, ES_AUTOHSCROLL);
  builtin(kPlaskLabelClass, -1, "dB", 1258, 428, 236, 10, 8, 0);
  builtin(kPlaskGroupClass, 0, "Inputs", 1000, 7, 251, 217, 162, 0);
  builtin(kPlaskGroupClass, 0, "Speakers (outputs)", 1001, 227, 251, 217, 162, 0);
  const char* bottom[] = {"Display:", "Input faders:", "Display:", "Speaker faders:"};
  const int bottomX[] = {9, 130, 231, 333};
  for (int k = 0; k < 4; ++k) {
    builtin(kPlaskLabelClass, -1, bottom[k], 1278 - 2 * (k % 2) + 2 * (k / 2), bottomX[k], 418, 40,
            8, 0);
    builtin(kPlaskComboClass, 0, "", 1279 - 2 * (k % 2) + 2 * (k / 2), bottomX[k] + 30, 416, 54, 30,
            combo);
  }
  for (int k = 0; k < 16; ++k) {
    const int y = 260 + 10 * k;
    custom(nullptr, 1108 + k, "KESTELhorzvu", WS_TABSTOP, 42, y, 67, 6);
    custom("Mute", 1142 + k, "HotTrackButton", 0x4B, 18, y, 8, 6);
    custom("Solo", 1162 + k, "HotTrackButton", 0x4B, 29, y, 8, 6);
    custom("Reverse", 1292 + k, "HotTrackButton", 0x4B, 114, y, 8, 6);
  }
  for (int k = 0; k < 16; ++k) {
    const int y = 260 + 10 * k;
    custom(nullptr, 1088 + k, "KESTELhorzvu", WS_TABSTOP, 264, y, 67, 6);
    custom("Mute", 1182 + k, "HotTrackButton", 0x4B, 240, y, 8, 6);
    custom("Solo", 1202 + k, "HotTrackButton", 0x4B, 252, y, 8, 6);
  }
  for (int k = 0; k < 16; ++k)
    custom(nullptr, 1239 + k, "KESTELhfader", WS_TABSTOP, 129, 258 + 10 * k, 50, 10);
  for (int k = 0; k < 16; ++k)
    custom(nullptr, 1260 + k, "KESTELhfader", WS_TABSTOP, 337, 258 + 10 * k, 50, 10);
  return list;
}

const std::vector<PlaskControlRecord>& controls() {
  static const std::vector<PlaskControlRecord> list = editorLikeControls();
  return list;
}

void buildEditorLike(HWND parent, int /*flags*/) {
  WindowSystem& system = *WindowSystem::current();
  makeSetCurParms(system, 1.9f, 1.9f, 0, 0, parent, false, false);
  generateDialogFromList(system, controls().data(), static_cast<int>(controls().size()));
}

PlaskDialogResource editorLikeResource{101, "", 13, buildEditorLike, 851, 817, nullptr};

// The editor's dialog with values in every control, shown in `frame`.
struct EditorLike {
  HWND dialog = nullptr;
  std::unique_ptr<DAUB_IBitmap> image;

  EditorLike(WindowSystem& system, HWND frame) {
    dialog = createDialog(system, &editorLikeResource, 101, frame, nullptr, 0);
    system.show(system.find(dialog), true);
    image.reset(graphics::DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, 36, 12));
    graphics::DAUB_FillRect(image.get(), 0, 0, 36, 12, 0xFFD4D4D4, 1.0f, 0);
    const PlaskButtonImage record{image.get(), {}};
    const double levels[2] = {-12.0, -12.0};
    for (Window* control : system.find(dialog)->children) {
      const HWND h = control->handle();
      if (control->className == "KESTELhfader") {
        system.send(h, TBM_SETPOS, 1, 640);
        system.send(h, WM_KESTEL_SETPROPERTY, kKestelPropertyName,
                    reinterpret_cast<LPARAM>("Gain"));
        system.send(h, WM_KESTEL_SETPROPERTY, kKestelPropertyValue,
                    reinterpret_cast<LPARAM>("-3.5"));
      }
      if (control->className == "KESTELhorzvu")
        system.send(h, WM_KESTEL_VULEVELS, 0, reinterpret_cast<LPARAM>(levels));
      if (control->className == "HotTrackButton")
        system.send(h, BM_SETIMAGE, kHotTrackImageKind, reinterpret_cast<LPARAM>(&record));
      if (control->className == "ComboBox") {
        system.send(h, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("5.1 surround"));
        system.send(h, CB_SETCURSEL, 0, 0);
      }
    }
  }
};

void fullRepaint(benchmark::State& state) {
  auto headless = std::make_unique<HeadlessBackend>();
  WindowSystem system(std::move(headless));
  WindowSystem::setCurrent(&system);
  const int scale256 = static_cast<int>(state.range(0));
  const HWND frame =
      system.createFrame("bench", 851 * scale256 / 256, 817 * scale256 / 256, scale256, true);
  const EditorLike editor(system, frame);
  system.paint();
  Window* dialog = system.find(editor.dialog);
  for (auto _ : state) {
    system.invalidate(dialog, nullptr);
    system.paintSurface(system.find(frame));
  }
  state.counters["controls"] = static_cast<double>(dialog->children.size());
  state.counters["pixels"] = dialog->clientWidth() * dialog->clientHeight();
  system.destroy(frame);
  WindowSystem::setCurrent(nullptr);
}

double processorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
         (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

WindowSystem* idleSystem = nullptr;

// The processor time of the SDL2 loop over ~10 s idle in Xvfb: nothing invalidated, and (range 1)
// with the editor's 50 ms timer ticking and changing nothing.
void sdlIdle(benchmark::State& state) {
  XvfbServer server;
  std::string error;
  if (!server.start(1024, 900, &error)) {
    state.SkipWithError(error.c_str());
    return;
  }
  std::unique_ptr<SdlBackend> backend = SdlBackend::open(&error);
  if (backend == nullptr) {
    state.SkipWithError(error.c_str());
    return;
  }
  WindowSystem system(std::move(backend));
  WindowSystem::setCurrent(&system);
  idleSystem = &system;
  const HWND frame = system.createFrame("idle", 851, 817, 256, true);
  const EditorLike editor(system, frame);
  system.paint();
  if (state.range(0) == 1) system.setTimer(editor.dialog, 1, 50, nullptr);
  for (auto _ : state) {
    const auto wallStart = std::chrono::steady_clock::now();
    const double cpuStart = processorSeconds();
    system.setTimer(nullptr, 0, 10000,
                    [](HWND, UINT, UINT_PTR, DWORD) { idleSystem->requestQuit(); });
    system.runUntilClosed(frame, nullptr, 0);
    const double wall =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
    state.SetIterationTime(wall);
    state.counters["core_fraction"] = (processorSeconds() - cpuStart) / wall;
  }
  system.destroy(frame);
  WindowSystem::setCurrent(nullptr);
}

}  // namespace

BENCHMARK(fullRepaint)->Arg(256)->Arg(384)->Arg(512)->Unit(benchmark::kMillisecond);
BENCHMARK(sdlIdle)->Arg(0)->Arg(1)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);
BENCHMARK_MAIN();
