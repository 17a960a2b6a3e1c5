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

  /// Shows that row of the editor. What stands up to that position stays as it is, with the keys if it has them.
  void showRow(const Scheduled::RuleEditor& editor, std::size_t row, std::size_t from);
  /// Marks the number as wrong, or as right again.
  void mark(std::optional<Scheduled::NumberProblem> problem);
  /// Shows below the row what it doesn't tell itself; nothing if that is empty.
  void showUntold(const QString& text);

  /// Gives the keys to the number, if there is one.
  void focusOnNumber();

  /// All that takes keys, in the order of reading; the first is the pop-up of the rule's kind.
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
  void showMark();

  const Localize& m_localize;
  FlowLayout* m_flow;
  std::vector<QWidget*> m_elements;
  QLineEdit* m_number = nullptr;
  std::optional<Scheduled::NumberProblem> m_problem;
  QLabel* m_untold;
  QToolButton* m_remove;
  QToolButton* m_add;
};

}  // namespace mirvel::ui
