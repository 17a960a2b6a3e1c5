#pragma once

#include <QWidget>
#include <vector>

#include "core/schedule/RuleEditor.h"

class QVBoxLayout;

namespace mirvel::ui {

class RuleRowView;
class ValueText;

/// Shows the rows of a rule editor and forwards the edits of its controls. Wraps rows that are wider than the widget.
/// Its controls have the widget's place in the tab order of the window, even those that are created later. Loaded rows
/// are shown in the controls that exist, so that focus and cursor are kept where possible.
///
///     controller.load({Scheduled::EveryHour{30}}, widget.editor());
class ScheduledRuleEditor final : public QWidget, private Scheduled::RuleEditorType {
  Q_OBJECT

 public:
  /// The controller outlives it.
  explicit ScheduledRuleEditor(ScheduledController& controller, QWidget* parent = nullptr);

  Scheduled::RuleEditor& editor() { return m_editor; }

  /// True by default. If false, the rules are shown as sentences.
  void setEditable(bool isEditable);
  /// Adds a row at the end and focuses on it.
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
  void insertView(std::size_t row);
  void dismiss(std::size_t row);
  std::size_t rowOf(const RuleRowView& view) const;
  void addAfter(const RuleRowView& view);
  void remove(const RuleRowView& view);
  void updateMarks();
  void updateTabOrder();

  const Localize& m_localize;
  Scheduled::RuleEditor m_editor;
  QVBoxLayout* m_layout;
  ValueText* m_sentences = nullptr;   ///< null while editable
  std::vector<RuleRowView*> m_views;  ///< one for each row while editable
  bool m_isEditable = true;
};

}  // namespace mirvel::ui
