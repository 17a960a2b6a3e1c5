#pragma once

#include <QAbstractButton>
#include <QSignalBlocker>

namespace mirvel::ui {

/// Shows a state that isn't the user's choice: a button tells every change of its state, whatever brought it about.
inline void setCheckedQuietly(QAbstractButton& button, bool isChecked) {
  const QSignalBlocker quiet(button);
  button.setChecked(isChecked);
}

}  // namespace mirvel::ui
