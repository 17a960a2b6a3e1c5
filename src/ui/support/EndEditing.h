#pragma once

#include <QWidget>

namespace mirvel::ui {

/// Has the control with the keys hand over what was typed, as it does at the latest when it loses them.
inline void endEditing(const QWidget& form) {
  QWidget* const focus = form.focusWidget();
  if (!focus || !form.isAncestorOf(focus) || !focus->hasFocus()) return;
  focus->clearFocus();
  focus->setFocus();
}

}  // namespace mirvel::ui
