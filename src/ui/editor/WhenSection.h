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

/// When a job runs: what both forms of the section share. Each box has what depends on it below.
class WhenSection : public Section {
 protected:
  explicit WhenSection(const EditorContext& context);

  /// Places the boxes. To be called once.
  void layOut(QWidget& runAtLoad, QWidget& keepAlive, QWidget& startOnMount);
  /// Shows the record's rules in the rule editor, which is no edit.
  void loadRules(const jobfile::Plist& plist);
  /// Shows when the job runs next.
  void showNextRuns(const jobfile::Plist& plist);

  QWidget* m_keepAliveGridView;
  SectionGrid* m_keepAliveGrid;
  QCheckBox* m_scheduledButton;
  QWidget* m_scheduledView;  ///< the rules, and the line below them
  ScheduledRuleEditor* m_scheduledRuleEditor;
  QLabel* m_nextRuns;
};

/// The read-only form: what the record holds, and nothing else.
class WhenDisplaySection final : public WhenSection {
 public:
  explicit WhenDisplaySection(const EditorContext& context);

 private:
  void fill(const Launchd& launchd) override;
  void addCondition(const WhenRules::Condition& condition);

  QCheckBox* m_runAtLoadButton;
  QCheckBox* m_keepAliveButton;
  QCheckBox* m_startOnMountButton;
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
  std::vector<Scheduled::RuleRow> m_rules;  ///< as of the last change
};

}  // namespace mirvel::ui
