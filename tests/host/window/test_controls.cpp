// What each control tells its dialog when it is used with the mouse and the keys, and that
// disabled or locked controls ignore input; what they keep is drawn in the reference pictures.
#include <cmath>

#include "host/window/controls/host_controls.h"
#include "tests/host/window/test_dialog.h"

using namespace winsys;

namespace {

// (id, code, lParam) of a WM_COMMAND; (fader, scroll code, position) of a WM_HSCROLL.
using Note = std::tuple<int, int, LPARAM>;

class Controls : public WindowTest {
 public:
  Controls() {
    const HWND top = frame(800, 600);
    dialog = createDialog(*system, &testDialogResource, 77, top, recordingDialogProc, 0);
    system->show(window(dialog), true);
    for (const char* item : {"Gain", "LFE", "Influence"}) {
      send(kCombo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item));
    }
    send(kFader, TBM_SETTIC, 0, 708);
    send(kFader, TBM_SETPOS, 1, 500);
    recorded().clear();
  }
  HWND item(int id) { return driver->control(dialog, id); }
  LRESULT send(int id, UINT message, WPARAM wParam, LPARAM lParam) {
    return system->send(item(id), message, wParam, lParam);
  }
  // The notifications the dialog got since the last call.
  std::vector<Note> notes() {
    std::vector<Note> out;
    for (const Recorded& r : recorded()) {
      if (r.message == WM_COMMAND) {
        const bool knob = static_cast<int>(lowWord(r.wParam)) == kKnob;
        out.emplace_back(lowWord(r.wParam), highWord(r.wParam), knob ? r.lParam : 0);
      }
      if (r.message == WM_HSCROLL) {
        out.emplace_back(window(reinterpret_cast<HWND>(r.lParam))->id, lowWord(r.wParam),
                         highWord(r.wParam));
      }
    }
    recorded().clear();
    return out;
  }
  std::string text(int id) {
    char buffer[64];
    system->send(item(id), WM_GETTEXT, sizeof buffer, reinterpret_cast<LPARAM>(buffer));
    return buffer;
  }
  HWND dialog = nullptr;
};

}  // namespace

TEST_F(Controls, ButtonsCheckBoxesAndRadioButtonsNotifyAndKeepTheirState) {
  driver->click(item(kGo));
  driver->click(item(kLock));
  driver->click(item(kRadioA));
  driver->click(item(kRadioB));
  driver->press(item(kGo), {5, 5});
  driver->release(item(kGo), {-30, 5});  // released outside: no click
  driver->key(VK_SPACE);                 // the focus is on Go: Space clicks it
  EXPECT_EQ(notes(), (std::vector<Note>{{kGo, BN_CLICKED, 0},
                                        {kLock, BN_CLICKED, 0},
                                        {kRadioA, BN_CLICKED, 0},
                                        {kRadioB, BN_CLICKED, 0},
                                        {kGo, BN_CLICKED, 0}}));
  EXPECT_EQ((std::array{send(kLock, BM_GETCHECK, 0, 0), send(kRadioA, BM_GETCHECK, 0, 0),
                        send(kRadioB, BM_GETCHECK, 0, 0)}),
            (std::array<LRESULT, 3>{BST_CHECKED, BST_UNCHECKED, BST_CHECKED}));
}

TEST_F(Controls, ComboListsAreChosenWithTheMouseAndWithKeys) {
  ASSERT_TRUE(driver->chooseComboItem(item(kCombo), 1));
  EXPECT_EQ(send(kCombo, CB_GETCURSEL, 0, 0), 1);
  EXPECT_EQ(text(kCombo), "LFE");
  driver->key(VK_DOWN);  // closed: the next item at once
  driver->key(VK_F4);    // open, two up, Return
  driver->key(VK_UP);
  driver->key(VK_UP);
  driver->key(VK_RETURN);
  driver->key(VK_F4);  // open, down, Escape: nothing
  driver->key(VK_DOWN);
  driver->key(VK_ESCAPE);
  driver->type("i");                 // the item starting with "i"
  send(kCombo, CB_SETCURSEL, 0, 0);  // by the program: no notification
  std::vector<int> changes;
  for (const Note& n : notes()) {
    if (std::get<1>(n) == CBN_SELCHANGE) changes.push_back(std::get<0>(n));
  }
  EXPECT_EQ(changes, (std::vector<int>{kCombo, kCombo, kCombo, kCombo}));
  EXPECT_EQ(send(kCombo, CB_GETCURSEL, 0, 0), 0);
  EXPECT_EQ(
      send(kCombo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>("lfe")),
      1);
  EXPECT_EQ(send(kCombo, CB_GETDROPPEDSTATE, 0, 0), 0);
}

// Keys and selections move over whole UTF-8 characters; the limit never cuts one in two.
TEST_F(Controls, EditsTypeAndSelectAndReportEveryChange) {
  driver->click(item(kEdit));
  const struct {
    std::vector<std::pair<int, unsigned>> keys;  // (key, modifiers), pressed before the typing
    const char* typed;
    UINT message;  // sent first unless 0: select all, set the text, or limit it to 7 bytes
    const char* text;
    int changes;
  } steps[] = {
      {{}, "Front L", 0, "Front L", 7},
      {{{VK_LEFT, 0}, {VK_BACK, 0}}, "", 0, "FrontL", 1},
      {{{VK_HOME, 0}, {VK_DELETE, 0}}, "", 0, "rontL", 1},
      {{{VK_END, kModShift}}, "éü", 0, "éü", 2},
      {{{VK_BACK, 0}, {VK_LEFT, 0}}, "a", 0, "aé", 2},
      {{}, "12", EM_SETSEL, "12", 2},
      {{{VK_LEFT, kModShift}, {VK_BACK, 0}}, "", 0, "1", 1},
      {{}, "", WM_SETTEXT, "a set", 1},
      {{{VK_END, 0}}, "üü", EM_LIMITTEXT, "a setü", 1},
  };
  for (const auto& step : steps) {
    if (step.message == EM_SETSEL) send(kEdit, EM_SETSEL, 0, -1);
    if (step.message == WM_SETTEXT) send(kEdit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("a set"));
    if (step.message == EM_LIMITTEXT) send(kEdit, EM_LIMITTEXT, 7, 0);
    for (const auto& [key, modifiers] : step.keys) driver->key(key, modifiers);
    driver->type(step.typed);
    EXPECT_EQ(text(kEdit), step.text);
    int changes = 0;
    for (const Note& n : notes()) changes += std::get<1>(n) == EN_CHANGE ? 1 : 0;
    EXPECT_EQ(changes, step.changes) << step.text;
  }
  DWORD start = 0, end = 0;
  const auto selection = [&] {
    send(kEdit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return std::array{start, end};
  };
  send(kEdit, EM_SETSEL, 1, 6);  // 6 is inside the "ü"
  EXPECT_EQ(selection(), (std::array<DWORD, 2>{1, 5}));
  driver->doubleClick(item(kEdit), {100, 5});  // past the end: the last word
  EXPECT_EQ(selection(), (std::array<DWORD, 2>{2, 7}));
  // Return goes to the dialog unless the edit wants it.
  driver->key(VK_RETURN);
  EXPECT_EQ(notes(), (std::vector<Note>{{IDOK, BN_CLICKED, 0}}));
  window(item(kEdit))->style |= ES_WANTRETURN;
  driver->key(VK_RETURN);
  EXPECT_TRUE(notes().empty());
}

TEST_F(Controls, KnobsSendStepsAndGestureEnds) {
  const POINT centre = driver->centreOf(item(kKnob));
  driver->drag(item(kKnob), centre, {centre.x, centre.y - 4}, 0, 2);
  driver->drag(item(kKnob), centre, {centre.x, centre.y + 1}, kModShift, 1);
  driver->doubleClick(item(kKnob), centre);
  const LPARAM step = Knob::kStepPerPixel;
  std::vector<Note> knob;
  for (const Note& n : notes()) {
    if (std::get<0>(n) == kKnob) knob.push_back(n);
  }
  EXPECT_EQ(knob, (std::vector<Note>{{kKnob, 0, kKnobCentre + 2 * step},
                                     {kKnob, 0, kKnobCentre + 2 * step},
                                     {kKnob, 0, kKnobCentre | kKnobGestureEnd},
                                     {kKnob, 0, kKnobCentre - step / 4},
                                     {kKnob, 0, kKnobCentre | kKnobGestureEnd},
                                     {kKnob, 0, kKnobCentre | kKnobGestureEnd},     // first click
                                     {kKnob, 0, kKnobCentre | kKnobGestureEnd}}));  // double click
  send(kKnob, WM_KESTEL_SETPROPERTY, kKestelPropertyLock, 1);
  driver->drag(item(kKnob), centre, {centre.x, centre.y - 9});
  EXPECT_TRUE(notes().empty()) << "locked";
}

TEST_F(Controls, FadersScrollWhileDraggedAndEndEachGesture) {
  const HWND fader = item(kFader);
  const int width = window(fader)->clientWidth();  // 148 px for 1000 positions, 4 px inset
  driver->drag(fader, {20, 5}, {34, 5}, 0, 2);
  driver->drag(fader, {20, 5}, {30, 5}, kModShift, 1);
  driver->doubleClick(fader, {20, 5});
  driver->wheel(fader, {20, 5}, 2);
  const std::vector<Note> beforeTimer = notes();
  driver->advance(400);
  ASSERT_GE(beforeTimer.size(), 7u);
  EXPECT_EQ(std::get<1>(beforeTimer[0]), SB_THUMBTRACK);
  EXPECT_EQ(std::get<2>(beforeTimer[1]), 500 + std::lround(14 * 1000.0 / (width - 4)));
  EXPECT_EQ(beforeTimer[2], (Note{kFader, SB_ENDSCROLL, 0}));
  EXPECT_EQ(std::get<2>(beforeTimer[3]),
            std::get<2>(beforeTimer[1]) + std::lround(10 * 0.1 * 1000.0 / (width - 4)));
  EXPECT_EQ(send(kFader, TBM_GETPOS, 0, 0), 728) << "two notches of 10 after the jump to 708";
  EXPECT_EQ(notes(), (std::vector<Note>{{kFader, SB_ENDSCROLL, 0}}))
      << "the wheel's gesture ends later";
}

// Each key press is a gesture of its own; Page keys step a tenth of the range, at least 1. Knob
// keys are checked through the editor's knobs.
TEST_F(Controls, FadersTakeKeys) {
  system->setFocus(window(item(kFader)));
  for (const int key : {VK_RIGHT, VK_NEXT, VK_PRIOR, VK_END, VK_HOME}) driver->key(key);
  driver->key(VK_LEFT, kModShift);
  std::vector<LPARAM> moves;
  int ends = 0;
  for (const auto& [id, code, position] : notes()) {
    if (code == SB_THUMBTRACK) moves.push_back(position);
    ends += code == SB_ENDSCROLL ? 1 : 0;
  }
  EXPECT_EQ(moves, (std::vector<LPARAM>{510, 610, 510, 1000, 0})) << "nothing below the minimum";
  EXPECT_EQ(ends, 6);
  send(kFader, TBM_SETRANGE, 1, makeLParam(0, 5));
  driver->key(VK_NEXT);
  EXPECT_EQ(send(kFader, TBM_GETPOS, 0, 0), 1);
}

TEST_F(Controls, HotTrackButtonsClickAndMetersRepaintOnlyChangedPixels) {
  driver->click(item(kHot));
  driver->press(item(kHot), {2, 2});
  driver->release(item(kHot), {40, 2});
  EXPECT_EQ(notes(), (std::vector<Note>{{kHot, BN_CLICKED, 0}}));
  const double levels[2] = {-6.5, -120.0};
  send(kMeter, WM_KESTEL_VULEVELS, 0, reinterpret_cast<LPARAM>(levels));
  system->paint();
  const long presented = backend->presentedRects();
  const double barely[2] = {-6.52, -130.0};  // the same pixels: nothing to repaint
  send(kMeter, WM_KESTEL_VULEVELS, 0, reinterpret_cast<LPARAM>(barely));
  system->paint();
  EXPECT_EQ(backend->presentedRects(), presented);
}

TEST_F(Controls, DisabledControlsIgnoreInput) {
  for (const int id : {kGo, kLock, kEdit, kCombo, kKnob, kFader, kHot})
    system->enable(window(item(id)), false);
  driver->click(item(kGo));
  driver->click(item(kLock));
  driver->click(item(kEdit));
  driver->type("x");
  driver->click(item(kCombo));
  driver->drag(item(kKnob), {5, 20}, {5, 2});
  driver->drag(item(kFader), {5, 5}, {60, 5});
  driver->click(item(kHot));
  EXPECT_TRUE(notes().empty());
  EXPECT_EQ(text(kEdit), "");
  EXPECT_EQ(send(kLock, BM_GETCHECK, 0, 0), BST_UNCHECKED);
}

// A dialog may destroy a control from inside its notification: the control's own code that is
// still running must not touch freed memory (the address sanitizer build checks it).
TEST_F(WindowTest, ControlsDestroyedByTheirOwnNotificationsStaySafe) {
  static WindowSystem* current = nullptr;
  current = system.get();
  const auto destroyingProc = [](HWND, UINT message, WPARAM wParam, LPARAM lParam) -> INT_PTR {
    const int code = highWord(wParam);
    if (message == WM_COMMAND && (code == BN_CLICKED || code == CBN_SELCHANGE)) {
      current->destroy(reinterpret_cast<HWND>(lParam));
    }
    if (message == WM_HSCROLL) current->destroy(reinterpret_cast<HWND>(lParam));
    return 0;
  };
  const HWND top = frame(800, 600);
  const HWND dialog = createDialog(*system, &testDialogResource, 77, top, destroyingProc, 0);
  system->show(window(dialog), true);
  system->send(driver->control(dialog, kCombo), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("one"));
  for (const int id : {kGo, kLock, kHot, kFader}) {
    const HWND control = driver->control(dialog, id);
    driver->drag(control, {4, 4}, {std::min(30, window(control)->clientWidth() - 2), 4});
    EXPECT_EQ(system->find(control), nullptr) << id;
  }
  const HWND combo = driver->control(dialog, kCombo);
  EXPECT_TRUE(driver->chooseComboItem(combo, 0));
  EXPECT_EQ(system->find(combo), nullptr);
  EXPECT_EQ(system->capture(), nullptr);
  system->paint();
}
