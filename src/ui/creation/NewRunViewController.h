#pragma once

#include "ui/creation/NewType.h"
#include "ui/support/IconLoader.h"

class QStackedWidget;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

class NewRunApplicationViewController;
class NewRunCommandViewController;
class NewRunScriptViewController;

/// The page with the chooser of what the job runs: for an application, a script or a command.
class NewRunViewController final : public NewType {
 public:
  NewRunViewController(Program& program, NewController& controller, IconLoader& icons);

  void redraw() override;
  void focusOnFirst() override;
  void appear() override;

 private:
  QStackedWidget* m_runTabViewController;  ///< by the number of `New::Run`
  NewRunApplicationViewController* m_application;
  NewRunScriptViewController* m_script;
  NewRunCommandViewController* m_command;
};

}  // namespace mirvel::ui
