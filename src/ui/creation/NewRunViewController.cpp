#include "ui/creation/NewRunViewController.h"

#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/session/Foundation.h"
#include "ui/creation/NewRunApplicationViewController.h"
#include "ui/creation/NewRunScriptViewController.h"
#include "ui/editor/RunTextField.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr auto exampleCommand = "/usr/bin/rsync -a ~/Documents ~/Backup";

}  // namespace

NewRunCommandViewController::NewRunCommandViewController(const CreationContext& context, NewRunCommand& chooser)
    : m_localize(context.foundation.localize), m_chooser(chooser), m_runTextField(new RunTextField) {
  m_runTextField->setObjectName(QStringLiteral("runTextField"));
  m_runTextField->setAccessibleName(qt(m_localize.command()));
  setFocusProxy(m_runTextField);
  auto* title = new QLabel(qt(m_localize.command()) + QLatin1Char(':'));
  title->setBuddy(m_runTextField);
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  row->addWidget(m_runTextField, 1);
  row->addWidget(new RunMenuButton(context.platform, context.shell, context.repairs, m_localize, *m_runTextField), 0,
                 Qt::AlignTop);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(title);
  layout->addLayout(row);
  layout->addWidget(new SecondaryLabel(qt(CreationTexts(m_localize).commandExample(exampleCommand))));
  layout->addStretch();
  connect(m_runTextField, &QPlainTextEdit::textChanged, this, [this] {
    // `redraw` sets the same text, which must not be reported as an edit.
    if (m_runTextField->text() != m_chooser.text()) m_chooser.setText(m_runTextField->text());
  });
}

void NewRunCommandViewController::redraw() {
  if (m_runTextField->text() != m_chooser.text()) m_runTextField->setText(m_chooser.text());
  m_runTextField->markMissing(m_chooser.missingFiles(), m_localize);
}

NewRunViewController::NewRunViewController(const CreationContext& context, NewController& controller, IconLoader& icons)
    : NewType(New::Page::Run, controller),
      m_runTabViewController(new QStackedWidget),
      m_application(new NewRunApplicationViewController(context, controller.run.application, icons)),
      m_script(new NewRunScriptViewController(context, controller.run.script)),
      m_command(new NewRunCommandViewController(context, controller.run.command)) {
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
  if (chosen == New::Run::Application) m_application->appear();
}

void NewRunViewController::redraw() {
  switch (newController.what.chosen().value_or(New::Run::Command)) {
    case New::Run::Application:
      return m_application->redraw();
    case New::Run::Script:
      return m_script->redraw();
    case New::Run::Command:
      return m_command->redraw();
  }
}

void NewRunViewController::focusOnFirst() {
  if (newController.what.chosen() == New::Run::Script) return m_script->focusOnFirst();
  m_runTabViewController->currentWidget()->setFocus();
}

}  // namespace mirvel::ui
