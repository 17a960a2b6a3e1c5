#pragma once

#include <QWidget>

namespace mirvel::ui {

/// Makes the focused control of the form commit what was typed, by taking the focus from it for a moment.
inline void endEditing(const QWidget& form) {
  QWidget* const focus = form.focusWidget();
  if (!focus || !form.isAncestorOf(focus) || !focus->hasFocus()) return;
  focus->clearFocus();
  focus->setFocus();
}

}  // namespace mirvel::ui
