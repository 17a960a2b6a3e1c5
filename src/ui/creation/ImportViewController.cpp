#include "ui/creation/ImportViewController.h"

#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include "core/app/Program.h"
#include "core/creation/CreationTexts.h"
#include "ui/creation/ElidedLabel.h"
#include "ui/creation/KindButtons.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

ImportViewController::ImportViewController(Program& program, QWidget& window)
    : CopySheet(window, program.foundation.defaults, "Import Sheet"),
      m_controller(program.creationContext),
      m_importTextField(&heading()),
      m_kindTextField(new QLabel(qt(m_controller.kindTitle()))),
      m_kindButtons(new KindButtons(program)),
      m_skipButton(addButton(m_controller.skipTitle(), "skipButton")),
      m_cancelButton(addCancelButton(program.foundation.localize)),
      m_importButton(addDefaultButton(CreationTexts(program.foundation.localize).importString(), "importButton")) {
  setWindowTitle(qt(CreationTexts(program.foundation.localize).importString()));
  m_importTextField->setObjectName(QStringLiteral("importTextField"));
  m_kindTextField->setObjectName(QStringLiteral("kindTextField"));
  m_kindTextField->setBuddy(m_kindButtons);
  m_kindTextField->setFixedHeight(m_kindButtons->lineHeight());
  rows().addRow(m_kindTextField, m_kindButtons);

  connect(m_kindButtons, &KindButtons::kindChosen, this, [this](int tag) {
    m_controller.kindChanged(tag);
    updateInterface();
  });
  connect(m_importButton, &QPushButton::clicked, this, [this] { importFile(); });
  connect(m_skipButton, &QPushButton::clicked, this, [this] { skip(); });
  m_controller.changed = [this] { updateInterface(); };
  updateInterface();
  m_kindButtons->setFocus();
}

void ImportViewController::importFile() {
  if (m_controller.importFile()) return accept();
  updateInterface();
}

void ImportViewController::skip() {
  if (m_controller.skip()) return accept();
  updateInterface();
}

void ImportViewController::updateInterface() {
  m_importTextField->setFullText(qt(m_controller.title()));
  m_kindButtons->setChosen(m_controller.chosenKind());
  m_importButton->setEnabled(m_controller.isImportEnabled());
  m_skipButton->setEnabled(m_controller.isSkipEnabled());
  m_skipButton->setVisible(m_controller.hasMore());
}

}  // namespace mirvel::ui
