#pragma once

#include <QWidget>
#include <vector>

#include "core/schedule/RuleEditor.h"

class QVBoxLayout;

namespace mirvel::ui {

class RuleRowView;

/// Shows the rows of a rule editor, and hands over what is changed in them. Wraps its rows in a narrow place, and takes
/// part in the order of its window’s tab stops where it was made itself.
///
///     controller.load({Scheduled::EveryHour{30}}, widget.editor());
class ScheduledRuleEditor final : public QWidget, private Scheduled::RuleEditorType {
  Q_OBJECT

 public:
  /// The controller outlives it.
  explicit ScheduledRuleEditor(ScheduledController& controller, QWidget* parent = nullptr);

  Scheduled::RuleEditor& editor() { return m_editor; }

  /// Otherwise the rules show as sentences. It is editable at first.
  void setEditable(bool isEditable);
  /// Adds a row at the end, which gets the keys.
  void addRow();

 private:
  void rowWasAdded(std::size_t row) override;
  void rowWasRemoved(std::size_t row) override;
  void rowChoiceChanged(std::size_t row, std::size_t position) override;
  void valueWasEntered() override;
  void rowsWereLoaded() override;
  void rowWasRefused(std::size_t row) override;

  void showRows();
  void showSentences();
  void clear();
  void insertView(std::size_t row);
  void dismiss(std::size_t row);
  std::size_t rowOf(const RuleRowView& view) const;
  void addBehind(const RuleRowView& view);
  void remove(const RuleRowView& view);
  void updateMarks();
  void updateTabOrder();

  const Localize& m_localize;
  Scheduled::RuleEditor m_editor;
  QVBoxLayout* m_layout;
  QWidget* m_sentences = nullptr;
  std::vector<RuleRowView*> m_views;  // one for each row while it is editable
  bool m_isEditable = true;
};

}  // namespace mirvel::ui
