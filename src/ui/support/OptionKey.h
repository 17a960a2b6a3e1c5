#pragma once

#include <QGuiApplication>

namespace mirvel::ui {

/// Whether the user holds the key that gives a click another meaning: Option, which is Alt. On Linux Control counts,
/// too, since window managers keep a click with Alt for themselves.
inline bool optionHeld() {
#ifdef __linux__
  constexpr Qt::KeyboardModifiers keys = Qt::AltModifier | Qt::ControlModifier;
#else
  constexpr Qt::KeyboardModifiers keys = Qt::AltModifier;
#endif
  return (QGuiApplication::keyboardModifiers() & keys) != Qt::NoModifier;
}

}  // namespace mirvel::ui
