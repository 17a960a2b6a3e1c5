#include "ui/creation/DuplicateViewController.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/app/Program.h"
#include "core/creation/CreationTexts.h"
#include "ui/creation/ElidedLabel.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

DuplicateViewController::DuplicateViewController(Program& program, QWidget& window)
    : CopySheet(window, program.foundation.defaults, "Duplicate Sheet"),
      m_controller(program.creationContext),
      m_duplicateTextField(&heading()),
      m_nameTitleTextField(new QLabel(qt(m_controller.nameTitle()))),
      m_nameValueTextField(new QLineEdit(qt(m_controller.suggestedName()))),
      m_cancelButton(addCancelButton(program.foundation.localize)),
      m_saveButton(addDefaultButton(program.foundation.localize.save(), "saveButton")) {
  setWindowTitle(qt(CreationTexts(program.foundation.localize).duplicate()));
  m_duplicateTextField->setObjectName(QStringLiteral("duplicateTextField"));
  m_duplicateTextField->setFullText(qt(m_controller.title()));
  m_nameTitleTextField->setObjectName(QStringLiteral("nameTitleTextField"));
  m_nameTitleTextField->setBuddy(m_nameValueTextField);
  m_nameValueTextField->setObjectName(QStringLiteral("nameValueTextField"));
  m_nameValueTextField->setMinimumWidth(36 * fontMetrics().averageCharWidth());
  m_nameValueTextField->setAccessibleName(qt(program.foundation.localize.name()));
  rows().addRow(m_nameTitleTextField, m_nameValueTextField);

  connect(m_saveButton, &QPushButton::clicked, this, [this] { save(); });
  selectName();
}

void DuplicateViewController::save() {
  if (m_controller.save(utf8(m_nameValueTextField->text()))) return accept();
  selectName();
}

void DuplicateViewController::selectName() {
  m_nameValueTextField->setFocus();
  m_nameValueTextField->selectAll();
}

}  // namespace mirvel::ui
