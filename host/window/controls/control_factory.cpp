// The host's control classes by name.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>

#include "host/window/controls/button.h"
#include "host/window/controls/combo.h"
#include "host/window/controls/edit.h"
#include "host/window/controls/host_controls.h"
#include "host/window/controls/label.h"
#include "host/window/controls/theme.h"

namespace winsys {

namespace {

using Make = std::unique_ptr<Control> (*)(Window&);

template <typename T>
std::unique_ptr<Control> make(Window& window) {
  return std::make_unique<T>(window);
}

struct HostClass {
  const char* name;
  Make make;
};

constexpr HostClass kClasses[] = {
    {"Static", make<Label>},       {"Edit", make<Edit>},
    {"ComboBox", make<Combo>},     {"Button", make<Button>},
    {"KESTELknob", make<Knob>},    {"KESTELhfader", make<Fader>},
    {"KESTELhorzvu", make<Meter>}, {"HotTrackButton", make<HotTrackButton>},
};

const HostClass* findClass(const std::string& name) {
  for (const HostClass& hostClass : kClasses) {
    const std::string candidate = hostClass.name;
    if (candidate.size() == name.size() &&
        std::equal(candidate.begin(), candidate.end(), name.begin(), [](char a, char b) {
          return std::tolower(static_cast<unsigned char>(a)) ==
                 std::tolower(static_cast<unsigned char>(b));
        })) {
      return &hostClass;
    }
  }
  return nullptr;
}

}  // namespace

bool isHostControlClass(const std::string& className) {
  return findClass(className) != nullptr;
}

HWND createHostControl(WindowSystem& system, const ControlSpec& wanted) {
  const HostClass* hostClass = findClass(wanted.className);
  Window* parent = system.find(wanted.parent);
  if (hostClass == nullptr || parent == nullptr) return nullptr;
  RECT rect = wanted.rect;
  // A drop-down list's template height counts its list: the field itself is one row high.
  if (hostClass->make == make<Combo>) {
    const int field =
        static_cast<int>(std::lround(theme::kComboHeightPx * system.scale256Of(parent) / 256.0));
    rect.bottom = rect.top + field;
  }
  CreateParams params;
  params.className = hostClass->name;
  params.text = wanted.text.c_str();
  params.style = wanted.style | WS_CHILD;
  params.exStyle = wanted.exStyle;
  params.rect = rect;
  params.parent = wanted.parent;
  params.id = wanted.id;
  params.proc = controlWindowProc;
  params.kind = WindowKind::Control;
  Window* window = system.find(system.create(params));
  if (window == nullptr) return nullptr;
  window->control = hostClass->make(*window);
  system.invalidate(window, nullptr);
  return window->handle();
}

}  // namespace winsys
