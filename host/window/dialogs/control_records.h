// Decoding the plug-in's control records. The decoder is a template on the record's word so that
// one test reads both widths; the host itself reads records of its own width, whose text fields
// are plain pointers.
#pragma once

#include <cstring>
#include <string>

#include "host/window/controls/control.h"
#include "platform/plask_dialog_records.h"

namespace winsys {

// A control as the record describes it, in template units.
struct ControlTemplate {
  std::string className;  // "Static", "Edit", "ComboBox", "Button" or the custom class
  std::string text;
  bool builtin = false;
  int id = 0;
  LONG_PTR style = 0;
  LONG_PTR exStyle = 0;
  double x = 0, y = 0, width = 0, height = 0;
};

namespace detail {

inline std::string textOf(const char* text) {
  return text != nullptr ? std::string(text) : std::string();
}

inline LONG_PTR labelAlignment(long long alignment) {
  return alignment < 0    ? LONG_PTR{SS_LEFT}
         : alignment == 0 ? LONG_PTR{SS_CENTER}
                          : LONG_PTR{SS_RIGHT};
}

// The Win32 class and style of a built-in class name; false for names that are not built-in.
inline bool builtinClass(const char* name, std::string& className, LONG_PTR& style,
                         long long alignment) {
  struct Builtin {
    const char* name;
    const char* className;
  };
  static constexpr Builtin kBuiltins[] = {{kPlaskLabelClass, "Static"},
                                          {kPlaskEditClass, "Edit"},
                                          {kPlaskComboClass, "ComboBox"},
                                          {kPlaskButtonClass, "Button"},
                                          {kPlaskGroupClass, "Button"}};
  for (const Builtin& builtin : kBuiltins) {
    if (std::strcmp(name, builtin.name) != 0) continue;
    className = builtin.className;
    if (std::strcmp(name, kPlaskLabelClass) == 0) {
      style = (style & ~LONG_PTR{0x3}) | labelAlignment(alignment);
    }
    if (std::strcmp(name, kPlaskGroupClass) == 0) {
      style = (style & ~LONG_PTR{BS_TYPEMASK}) | BS_GROUPBOX;
    }
    return true;
  }
  return false;
}

}  // namespace detail

// `stringAt` turns a text field into a string pointer (null allowed).
template <typename Word, typename StringAt>
ControlTemplate decodeControlRecord(const PlaskControlRecordOf<Word>& record, StringAt stringAt) {
  ControlTemplate control;
  control.x = static_cast<double>(record.x);
  control.y = static_cast<double>(record.y);
  control.width = static_cast<double>(record.width);
  control.height = static_cast<double>(record.height);
  const char* first = stringAt(record.classOrText);
  if (first != nullptr &&
      std::strncmp(first, PLASK_BUILTIN_PREFIX, std::strlen(PLASK_BUILTIN_PREFIX)) == 0) {
    control.style = static_cast<LONG_PTR>(static_cast<std::int32_t>(record.styleOrExStyle));
    control.builtin = detail::builtinClass(first, control.className, control.style,
                                           static_cast<long long>(record.alignOrId));
    if (!control.builtin) control.className = first;  // an unknown built-in: left to creators
    control.text = detail::textOf(stringAt(record.textOrClass));
    control.id = static_cast<int>(record.idOrStyle);
    return control;
  }
  control.text = detail::textOf(first);
  control.id = static_cast<int>(record.alignOrId);
  control.className = detail::textOf(stringAt(record.textOrClass));
  control.style = static_cast<LONG_PTR>(static_cast<std::int32_t>(record.idOrStyle));
  control.exStyle = static_cast<LONG_PTR>(static_cast<std::int32_t>(record.styleOrExStyle));
  return control;
}

// This build's records: text fields are pointers.
inline const char* nativeString(std::intptr_t field) {
  return reinterpret_cast<const char*>(field);  // NOLINT(performance-no-int-to-ptr)
}

}  // namespace winsys
