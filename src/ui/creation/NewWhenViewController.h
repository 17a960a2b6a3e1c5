#pragma once

#include "ui/creation/NewType.h"

class QCheckBox;
class QLabel;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

class ElidedLabel;
class ScheduledRuleEditor;
class ValueText;

/// The page that asks when the job runs, and tells what will come of it.
class NewWhenViewController final : public NewType {
 public:
  NewWhenViewController(Program& program, NewController& controller);

  void redraw() override;
  void focusOnFirst() override;
  void appear() override;
  void disappear() override;

 private:
  QWidget* makeWatchedFolder();
  QWidget* makeChoices();
  QWidget* makeOutlook();

  Program& m_program;
  QCheckBox* m_runAtLoadButton;
  QCheckBox* m_keepAliveButton;
  QCheckBox* m_scheduledButton;
  ScheduledRuleEditor* m_ruleEditor;
  QWidget* m_watchedFolder;
  ElidedLabel* m_watchedFolderLabel;
  ValueText* m_sentence;
  QLabel* m_nextRunsTitle;
  QLabel* m_nextRuns;
};

}  // namespace mirvel::ui
