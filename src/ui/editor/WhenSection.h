#pragma once

#include <vector>

#include "core/editor/WhenRules.h"
#include "core/schedule/ScheduledController.h"
#include "ui/editor/FieldForm.h"

class QCheckBox;
class QLabel;

namespace mirvel::ui {

class ScheduledRuleEditor;
class SectionGrid;

/// When a job runs: the common part of the read-only form and the editor. The controls that depend on a box are below
/// it.
class WhenSection : public Section {
 protected:
  explicit WhenSection(const EditorContext& context);

  /// Adds the boxes to the layout. To be called once.
  void layOut(QWidget& runAtLoad, QWidget& keepAlive, QWidget& startOnMount);
  /// Shows the record's rules in the rule editor, which is no edit.
  void loadRules(const jobfile::Plist& plist);
  /// Shows the times of the next runs; nothing if there are none.
  void showNextRuns(const jobfile::Plist& plist);

  QWidget* m_keepAliveGridView;
  SectionGrid* m_keepAliveGrid;
  QCheckBox* m_scheduledButton;
  QWidget* m_scheduledView;  ///< the rules and the line with the next runs
  ScheduledRuleEditor* m_scheduledRuleEditor;
  QLabel* m_nextRuns;
};

/// The read-only form. Shows only the keys that the record has.
class WhenDisplaySection final : public WhenSection {
 public:
  explicit WhenDisplaySection(const EditorContext& context);

 private:
  void fill(const Launchd& launchd) override;
  void showConditions(const std::vector<WhenRules::Condition>& conditions);
  QWidget* makeCondition(const WhenRules::Condition& condition);

  QCheckBox* m_runAtLoadButton;
  QCheckBox* m_keepAliveButton;
  QCheckBox* m_startOnMountButton;
  std::vector<WhenRules::Condition> m_conditions;  ///< as shown
  std::vector<QWidget*> m_conditionWidgets;        ///< a box or a text for each
};

/// The form for editing.
class WhenEditSection final : public WhenSection, private ScheduledDelegate {
 public:
  explicit WhenEditSection(const EditorContext& context);
  ~WhenEditSection() override;

  std::optional<InvalidField> refuse() override;

 private:
  void fill(const Launchd& launchd) override;
  void fillRules(const jobfile::Plist& plist);
  void written(const Field& field);
  void showConditions(const jobfile::Plist& plist);
  void scheduled(bool isOn);
  void updateScheduledHelp();
  void rulesDidChange() override;
  void endSchedule();

  FieldForm m_form;
  std::vector<Scheduled::RuleRow> m_rules;  ///< before the change that is reported next
};

}  // namespace mirvel::ui
