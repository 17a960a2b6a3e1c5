#pragma once

#include <QString>

namespace mirvel::ui {

/// A title of a button or menu item that shows as it stands: an ampersand would underline the next letter.
inline QString literalTitle(QString text) {
  return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace mirvel::ui
