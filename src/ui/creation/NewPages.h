#pragma once

#include <vector>

#include "core/creation/New.h"
#include "ui/creation/NewType.h"

class QButtonGroup;
class QCheckBox;
class QIcon;
class QLabel;
class QLayout;
class QLineEdit;

namespace mirvel::ui {

class ElidedLabel;
class IconLoader;
class KindButtons;
class ScheduledRuleEditor;
class ValueText;

/// The page for the job's name and for whom it runs, with starting points for common tasks.
class NewNameViewController final : public NewType {
 public:
  NewNameViewController(const CreationContext& context, NewController& controller);

  void redraw() override;
  void focusOnFirst() override;

 private:
  QLayout* makeForm(const Localize& localize);
  QWidget* makeStartingPoints(const Localize& localize);
  void begin(int startingPoint);

  const std::vector<StartingPoint> m_startingPoints;
  QLineEdit* m_nameTextField;
  KindButtons* m_kindButtons;
  QButtonGroup* m_startingPointButtons;
};

/// The page that asks what kind of thing the job runs: an application, a script or a command.
class NewWhatViewController final : public NewType {
 public:
  NewWhatViewController(const CreationContext& context, NewController& controller, IconLoader& icons);

  void redraw() override;
  void focusOnFirst() override;

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void addChoice(New::Run run, const std::string& title, const std::string& hint, const QIcon& icon);

  QButtonGroup* m_buttons;
};

/// The page that asks when the job runs, and shows a preview of the coming runs.
class NewWhenViewController final : public NewType {
 public:
  NewWhenViewController(const CreationContext& context, NewController& controller);

  void redraw() override;
  void focusOnFirst() override;
  void appear() override;
  void disappear() override;

 private:
  QWidget* makeWatchedFolder();
  QWidget* makeChoices();
  QWidget* makeOutlook();
  void redrawOutlook();

  const Localize& m_localize;
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
