#pragma once

#include <QToolButton>
#include <QWidget>
#include <functional>

#include "core/editor/Fields.h"

namespace mirvel::ui {

/// The place of a field in its section: the control, a button that shows the field's help as a text to be read and
/// copied, and a place for problems below. F1 in the control shows it, too.
class FieldCell final : public QWidget {
 public:
  /// Takes ownership of the control and of the widget below it, which shows the problems of the field. An unstretched
  /// control has its preferred width. `localize` outlives the cell.
  FieldCell(const Field& field, QWidget& control, const Localize& localize, QWidget& problems);

  const Field& field() const { return m_field; }
  QWidget& control() const { return m_control; }
  /// The distance in pixels from the top to the first line of the control's text, for the label beside it.
  int textTop() const;

  /// Whether the job has the key, so that the help offers to remove it; empty: never.
  std::function<bool()> isRemovable;
  /// Removes the key from the job.
  std::function<void()> remove;

 protected:
  bool event(QEvent* event) override;

 private:
  void showHelp();

  const Field& m_field;
  QWidget& m_control;
  const Localize& m_localize;
  QToolButton* m_helpButton;
};

}  // namespace mirvel::ui
