#pragma once

#include <QString>
#include <QWidget>

namespace mirvel::ui {

/// Where the keys go within a form that is about to be made anew.
class FocusPlace {
 public:
  /// The form outlives it.
  explicit FocusPlace(QWidget& form);

  /// Gives the focus to the control at the same place of the form, at the same place of its text.
  void restore() const;

 private:
  QWidget* found() const;

  QWidget& m_form;
  QString m_name;      ///< of the control, or of what it is in
  int m_control = -1;  ///< its number there; -1: it is the one with the name
  int m_position = 0;
  int m_scroll = 0;
};

}  // namespace mirvel::ui
