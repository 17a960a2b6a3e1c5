#pragma once

#include "ui/creation/NewType.h"

class QStackedWidget;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

class IconLoader;
class NewRunApplicationViewController;
class NewRunScriptViewController;
class RunTextField;

/// The field for the command that a new job runs.
class NewRunCommandViewController final : public QWidget {
 public:
  NewRunCommandViewController(const CreationContext& context, NewRunCommand& chooser);

  void redraw();

 private:
  const Localize& m_localize;
  NewRunCommand& m_chooser;
  RunTextField* m_runTextField;
};

/// The page that chooses what the job runs: an application, a script or a command.
class NewRunViewController final : public NewType {
 public:
  NewRunViewController(const CreationContext& context, NewController& controller, IconLoader& icons);

  void redraw() override;
  void focusOnFirst() override;
  void appear() override;

 private:
  QStackedWidget* m_runTabViewController;  ///< indexed by `New::Run`
  NewRunApplicationViewController* m_application;
  NewRunScriptViewController* m_script;
  NewRunCommandViewController* m_command;
};

}  // namespace mirvel::ui
