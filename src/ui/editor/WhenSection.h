#pragma once

#include "ui/editor/Section.h"

class QCheckBox;
class QLabel;

namespace mirvel::ui {

class ScheduledRuleEditor;
class SectionGrid;

/// When a job runs: what both forms of the section share. Each box has what belongs to it below.
class WhenSection : public Section {
 protected:
  explicit WhenSection(Program& program);

  /// Shows the record's rules in the rule editor, which is no edit.
  void loadRules(const jobfile::Plist& plist);
  /// Tells when the job runs next.
  void showNextRuns(const jobfile::Plist& plist);

  QCheckBox* m_runAtLoadButton;
  QCheckBox* m_keepAliveButton;
  QWidget* m_keepAliveGridView;
  SectionGrid* m_keepAliveGrid;
  QCheckBox* m_startOnMountButton;
  QCheckBox* m_scheduledButton;
  QWidget* m_scheduledView;  ///< the rules, and the line below them
  ScheduledRuleEditor* m_scheduledRuleEditor;
  QLabel* m_nextRuns;
};

}  // namespace mirvel::ui
