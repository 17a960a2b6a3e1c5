#include "ui/creation/NewRunViewController.h"

#include <QStackedWidget>
#include <QVBoxLayout>

#include "ui/creation/NewRunApplicationViewController.h"
#include "ui/creation/NewRunCommandViewController.h"
#include "ui/creation/NewRunScriptViewController.h"

namespace mirvel::ui {

NewRunViewController::NewRunViewController(Program& program, NewController& controller, IconLoader& icons)
    : NewType(New::Page::run, controller),
      m_runTabViewController(new QStackedWidget),
      m_application(new NewRunApplicationViewController(program, controller.run.application, icons)),
      m_script(new NewRunScriptViewController(program, controller.run.script)),
      m_command(new NewRunCommandViewController(program, controller.run.command)) {
  m_runTabViewController->addWidget(m_application);
  m_runTabViewController->addWidget(m_script);
  m_runTabViewController->addWidget(m_command);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_runTabViewController);
}

void NewRunViewController::appear() {
  const auto chosen = newController.what.chosen();
  if (chosen) m_runTabViewController->setCurrentIndex(static_cast<int>(*chosen));
  if (chosen == New::Run::application) m_application->appear();
}

void NewRunViewController::redraw() {
  switch (newController.what.chosen().value_or(New::Run::command)) {
    case New::Run::application:
      return m_application->redraw();
    case New::Run::script:
      return m_script->redraw();
    case New::Run::command:
      return m_command->redraw();
  }
}

void NewRunViewController::focusOnFirst() {
  if (newController.what.chosen() == New::Run::script) return m_script->focusOnFirst();
  m_runTabViewController->currentWidget()->setFocus();
}

}  // namespace mirvel::ui
