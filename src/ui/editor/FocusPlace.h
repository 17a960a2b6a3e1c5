#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

namespace mirvel::ui {

/// Saves the focus and the scroll position of a form while its sections are updated.
class FocusPlace {
 public:
  /// The form outlives it.
  explicit FocusPlace(QWidget& form);

  /// Restores both. If the focused control was removed, its successor gets the focus, with the cursor at the same
  /// position: the control with the same object name or, within a named parent, the same index.
  void restore() const;

 private:
  QWidget* successor() const;

  QWidget& m_form;
  QPointer<QWidget> m_focus;
  QString m_name;      ///< of the control or, if it has none, of the closest named parent
  int m_control = -1;  ///< index among the controls of that parent; -1 if the control itself has the name
  int m_position = 0;
  int m_scroll = 0;
};

}  // namespace mirvel::ui
