#pragma once

#include <QTime>
#include <QWidget>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/schedule/RuleEditor.h"

class QLabel;
class QLineEdit;
class QToolButton;

namespace mirvel::ui {

class FlowLayout;

/// One row of the rule editor: its pop-ups, fields and words, and the buttons at its end.
class RuleRowView final : public QWidget {
  Q_OBJECT

 public:
  RuleRowView(const Localize& localize, QWidget* parent);

  /// Shows a row of the editor, which is no edit. Elements whose choices are still the same are kept and updated, so
  /// that they keep focus and cursor.
  void showRow(const Scheduled::RuleEditor& editor, std::size_t row);
  /// Whether the view shows the row already.
  bool shows(const Scheduled::RuleRow& content) const;
  /// Marks the number as invalid; null removes the mark.
  void mark(std::optional<Scheduled::NumberProblem> problem);
  /// Shows a line below the row with the entries of the job file that the row can't express; empty hides it.
  void showUnshownEntries(const QString& text);

  /// Focuses on the number, if there is one.
  void focusOnNumber();

  /// The focusable controls in reading order; the first is the pop-up of the rule's kind.
  std::vector<QWidget*> controls() const;
  QToolButton& removeButton() { return *m_remove; }

 Q_SIGNALS:
  void childChosen(std::size_t position, int child);
  void numberEdited(const QString& text);
  void timeEdited(QTime time);
  void addClicked();
  void removeClicked();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QWidget* makeElement(const Scheduled::RuleEditor& editor, std::size_t row, std::size_t position);
  QWidget* makePopUp(const Criteria& choices, const std::string& chosen, std::size_t position);
  QWidget* makeNumberField(const std::string& text, bool isMinute);
  QWidget* makeTimePicker(Scheduled::Time time);
  void removeElementsFrom(std::size_t position);
  void showMark();

  const Localize& m_localize;
  FlowLayout* m_flow;
  Criteria m_criteria;               ///< as shown
  std::vector<QWidget*> m_elements;  ///< one for each criterion
  QLineEdit* m_number = nullptr;
  std::optional<Scheduled::NumberProblem> m_problem;
  QLabel* m_unshownEntries;
  QToolButton* m_remove;
  QToolButton* m_add;
};

}  // namespace mirvel::ui
