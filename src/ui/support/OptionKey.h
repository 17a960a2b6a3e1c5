#pragma once

#include <QGuiApplication>

namespace mirvel::ui {

/// Whether the Option key is held. Elsewhere it is Alt, or Control, since window managers keep clicks with Alt for
/// themselves.
inline bool optionHeld() {
  Qt::KeyboardModifiers keys = Qt::AltModifier;
#ifndef Q_OS_MACOS
  keys |= Qt::ControlModifier;
#endif
  return (QGuiApplication::keyboardModifiers() & keys) != Qt::NoModifier;
}

}  // namespace mirvel::ui
