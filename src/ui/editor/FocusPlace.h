#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

namespace mirvel::ui {

/// Remembers the focus and the scroll position of a form while its sections are updated.
class FocusPlace {
 public:
  /// The form outlives it.
  explicit FocusPlace(QWidget& form);

  /// Restores them. A control that is gone is replaced by the one now at its place, with the cursor at the same
  /// position.
  void restore() const;

 private:
  QWidget* successor() const;

  QWidget& m_form;
  QPointer<QWidget> m_focus;
  QString m_name;      ///< of the control, or of what it is in
  int m_control = -1;  ///< its number there; -1: it is the one with the name
  int m_position = 0;
  int m_scroll = 0;
};

}  // namespace mirvel::ui
