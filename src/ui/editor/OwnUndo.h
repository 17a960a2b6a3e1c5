#pragma once

#include <QVariant>
#include <QWidget>

namespace mirvel::ui {

/// A field whose text is no part of the job: it undoes its own changes, where the others have the editor do that.
inline void keepOwnUndo(QWidget& field) {
  field.setProperty("keepsOwnUndo", true);
}

inline bool keepsOwnUndo(const QWidget& field) {
  return field.property("keepsOwnUndo").toBool();
}

}  // namespace mirvel::ui
