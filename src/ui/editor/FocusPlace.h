#pragma once

#include <QString>
#include <QWidget>

namespace mirvel::ui {

/// Where the keys go within a form that is about to be made anew.
class FocusPlace {
 public:
  /// The form outlives it.
  explicit FocusPlace(QWidget& form);

  /// Gives the focus to the control of the same name, at the same place of its text.
  void restore() const;

 private:
  QWidget& m_form;
  QString m_name;
  int m_position = 0;
  int m_scroll = 0;
};

}  // namespace mirvel::ui
