#include "ui/creation/CopySheets.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/session/Foundation.h"
#include "ui/creation/CreationControls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// The width at which the name of a copy can usually be read in full.
int usualWidth(const QWidget& widget) {
  constexpr int characters = 36;
  return characters * widget.fontMetrics().averageCharWidth();
}

}  // namespace

CopySheet::CopySheet(QWidget& window, Defaults& defaults, const char* frameName)
    : SheetViewController(window, defaults, frameName),
      m_heading(new ElidedLabel),
      m_rows(new QFormLayout),
      m_buttons(new QDialogButtonBox) {
  auto* layout = new QVBoxLayout(this);
  layout->setSizeConstraint(QLayout::SetFixedSize);  // the size follows the rows, so the user can't resize it
  QFont bold = font();
  bold.setBold(true);
  m_heading->setFont(bold);
  m_heading->setMinimumWidth(usualWidth(*this));
  layout->addWidget(m_heading);
  layout->addSpacing(layout->spacing());
  layout->addLayout(m_rows);
  layout->addSpacing(layout->spacing());
  layout->addWidget(m_buttons);
}

QPushButton* CopySheet::addButton(const std::string& title, const char* name) {
  QPushButton* const button = m_buttons->addButton(qt(title), QDialogButtonBox::ActionRole);
  button->setObjectName(QLatin1String(name));
  return button;
}

QPushButton* CopySheet::addDefaultButton(const std::string& title, const char* name) {
  // The box's `accepted` signal isn't connected: a click dismisses the sheet only if it succeeds.
  QPushButton* const button = m_buttons->addButton(qt(title), QDialogButtonBox::AcceptRole);
  button->setObjectName(QLatin1String(name));
  button->setDefault(true);
  return button;
}

void CopySheet::addCancelButton(const Localize& localize) {
  QPushButton* const button = m_buttons->addButton(qt(localize.cancel()), QDialogButtonBox::RejectRole);
  button->setObjectName(QStringLiteral("cancelButton"));
  connect(button, &QPushButton::clicked, this, &QDialog::reject);
}

DuplicateViewController::DuplicateViewController(const CreationContext& context, QWidget& window)
    : CopySheet(window, context.foundation.defaults, "Duplicate Sheet"),
      m_controller(context),
      m_nameValueTextField(new QLineEdit(qt(m_controller.suggestedName()))) {
  const Localize& localize = context.foundation.localize;
  setWindowTitle(qt(CreationTexts(localize).duplicate()));
  heading().setObjectName(QStringLiteral("duplicateTextField"));
  heading().setFullText(qt(m_controller.title()));
  m_nameValueTextField->setObjectName(QStringLiteral("nameValueTextField"));
  m_nameValueTextField->setMinimumWidth(usualWidth(*this));
  m_nameValueTextField->setAccessibleName(qt(localize.name()));
  rows().addRow(qt(m_controller.nameTitle()), m_nameValueTextField);
  addCancelButton(localize);
  connect(addDefaultButton(localize.save(), "saveButton"), &QPushButton::clicked, this, [this] { save(); });
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

ImportViewController::ImportViewController(const CreationContext& context, QWidget& window)
    : CopySheet(window, context.foundation.defaults, "Import Sheet"),
      m_controller(context),
      m_kindButtons(new KindButtons(context.kinds)),
      m_skipButton(addButton(m_controller.skipTitle(), "skipButton")) {
  const std::string title = CreationTexts(context.foundation.localize).importString();
  setWindowTitle(qt(title));
  heading().setObjectName(QStringLiteral("importTextField"));
  auto* const kindTitle = new QLabel(qt(m_controller.kindTitle()));
  kindTitle->setBuddy(m_kindButtons);
  kindTitle->setFixedHeight(m_kindButtons->lineHeight());
  rows().addRow(kindTitle, m_kindButtons);
  addCancelButton(context.foundation.localize);
  m_importButton = addDefaultButton(title, "importButton");
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
  heading().setFullText(qt(m_controller.title()));
  m_kindButtons->setChosen(m_controller.chosenKind());
  m_importButton->setEnabled(m_controller.isImportEnabled());
  m_skipButton->setEnabled(m_controller.isSkipEnabled());
  m_skipButton->setVisible(m_controller.hasMore());
}

}  // namespace mirvel::ui
