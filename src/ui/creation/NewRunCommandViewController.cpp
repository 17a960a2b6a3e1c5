#include "ui/creation/NewRunCommandViewController.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/app/Program.h"
#include "core/creation/CreationTexts.h"
#include "ui/editor/RunTextField.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

constexpr auto exampleCommand = "/usr/bin/rsync -a ~/Documents ~/Backup";

}  // namespace

NewRunCommandViewController::NewRunCommandViewController(Program& program, NewRunCommand& chooser)
    : m_localize(program.foundation.localize), m_chooser(chooser), m_runTextField(new RunTextField) {
  m_runTextField->setObjectName(QStringLiteral("runTextField"));
  m_runTextField->setAccessibleName(qt(m_localize.command()));
  setFocusProxy(m_runTextField);
  auto* title = new QLabel(qt(m_localize.command()) + QLatin1Char(':'));
  title->setBuddy(m_runTextField);
  auto* row = new QHBoxLayout;
  row->setSpacing(4);
  row->addWidget(m_runTextField, 1);
  row->addWidget(
      new RunMenuButton(program.platform, program.shell, program.repairs, program.foundation.localize, *m_runTextField),
      0, Qt::AlignTop);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(title);
  layout->addLayout(row);
  layout->addWidget(new SecondaryLabel(qt(CreationTexts(m_localize).commandExample(exampleCommand))));
  layout->addStretch();
  connect(m_runTextField, &QPlainTextEdit::textChanged, this, [this] {
    if (m_runTextField->text() != m_chooser.text()) m_chooser.setText(m_runTextField->text());
  });
}

void NewRunCommandViewController::redraw() {
  if (m_runTextField->text() != m_chooser.text()) m_runTextField->setText(m_chooser.text());
  m_runTextField->markMissing(m_chooser.missingFiles(), m_localize);
}

}  // namespace mirvel::ui
