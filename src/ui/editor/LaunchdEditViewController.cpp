#include "ui/editor/LaunchdEditViewController.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>

#include "core/editor/SectionRows.h"
#include "ui/editor/ButtonBar.h"
#include "ui/editor/CompareSheet.h"
#include "ui/editor/GeneralEditSection.h"
#include "ui/editor/KeysSection.h"
#include "ui/editor/NotesSection.h"
#include "ui/editor/OwnUndo.h"
#include "ui/editor/RootSection.h"
#include "ui/editor/WhenEditSection.h"
#include "ui/support/EndEditing.h"
#include "ui/support/QtText.h"
#include "ui/support/SymbolButton.h"

namespace mirvel::ui {

LaunchdEditViewController::LaunchdEditViewController(Program& theProgram, IconLoader& icons)
    : LaunchdViewController(theProgram), m_icons(icons), m_controller(theProgram, *this) {
  makeButtons();
  m_controller.updateButtons();
  qApp->installEventFilter(this);
}

LaunchdEditViewController::~LaunchdEditViewController() = default;

void LaunchdEditViewController::makeButtons() {
  auto* bar = new ButtonBar;
  m_helpButton = symbolButton("help-contents", localize().help());
  m_saveProgressIndicator = new QProgressBar;
  m_saveProgressIndicator->setRange(0, 0);
  m_saveProgressIndicator->setMaximumWidth(80);
  m_saveProgressIndicator->setAccessibleName(qt(localize().save()));
  m_discardButton = new QPushButton;
  m_saveButton = new QPushButton(qt(localize().save()));
  bar->row().addWidget(m_helpButton);
  bar->row().addWidget(m_saveProgressIndicator);
  bar->row().addStretch();
  bar->row().addWidget(m_discardButton);
  bar->row().addWidget(m_saveButton);
  pane().addWidget(bar);
  connect(m_helpButton, &QToolButton::clicked, this, [this] { m_controller.help(); });
  connect(m_discardButton, &QPushButton::clicked, this, [this] { m_controller.discardEdits(); });
  connect(m_saveButton, &QPushButton::clicked, this, [this] { m_controller.save(); });
}

void LaunchdEditViewController::updateDetail() {
  const FocusPlace place(*this);
  rebuildSections();
  place.restore();
}

void LaunchdEditViewController::updateIcon() {
  const auto job = selectedJob();
  if (!job) return;
  for (Section* const section : sections()) section->updateIcon(*job);
}

std::vector<StackEntry> LaunchdEditViewController::entries(const Launchd& launchd) const {
  return editStack(launchd.plist(), localize());
}

Section* LaunchdEditViewController::makeSection(StackSection section) {
  switch (section) {
    case StackSection::general:
      return new GeneralEditSection(program(), m_icons);
    case StackSection::when:
      return new WhenEditSection(program());
    case StackSection::root:
      return new RootSection(program());
    case StackSection::notes:
      return new NotesSection(program());
    case StackSection::deprecated:
      return new KeysSection(program(), section, KeyValueSection::EditSection::deprecated);
    case StackSection::unknown:
      return new KeysSection(program(), section, KeyValueSection::EditSection::unknown);
    default:
      return makeReadOnlySection(section);
  }
}

/// What has no controls yet is at least seen.
Section* LaunchdEditViewController::makeReadOnlySection(StackSection section) const {
  const auto job = selectedJob();
  const bool isEmpty = !job || sectionRows(section, job->plist(), program().foundation).empty();
  return isEmpty ? nullptr : new KeysSection(program(), section);
}

void LaunchdEditViewController::showButtons(const EditButtons& buttons) {
  if (content().isEnabled() == buttons.isSaving) holdSections(buttons.isSaving);
  m_saveProgressIndicator->setVisible(buttons.isBusy);
  m_helpButton->setVisible(!buttons.isBusy);
  m_saveButton->setEnabled(buttons.canSave);
  m_discardButton->setEnabled(!buttons.isSaving);
  if (m_discardButton->text() != qt(buttons.discardTitle)) m_discardButton->setText(qt(buttons.discardTitle));
}

/// What is typed while a save is on its way would be in no file.
void LaunchdEditViewController::holdSections(bool isHeld) {
  if (isHeld) m_heldPlace.emplace(*this);
  content().setEnabled(!isHeld);
  if (isHeld || !m_heldPlace) return;
  m_heldPlace->restore();
  m_heldPlace.reset();
}

void LaunchdEditViewController::hideDiscardButton() {
  if (m_discardButton->hasFocus()) focusOnFirst();  // or the keys would be anywhere
  m_discardButton->hide();
}

void LaunchdEditViewController::showEvent(QShowEvent* event) {
  m_discardButton->show();
  LaunchdViewController::showEvent(event);
}

void LaunchdEditViewController::endEditing() {
  ui::endEditing(*this);
}

std::optional<InvalidField> LaunchdEditViewController::refuse() {
  for (Section* section : sections()) {
    if (auto invalid = section->refuse()) return invalid;
  }
  return std::nullopt;
}

void LaunchdEditViewController::focusOnFirst() {
  auto* const name = content().findChild<QLineEdit*>(QStringLiteral("nameValueTextField"));
  if (name) name->setFocus(Qt::OtherFocusReason);
}

void LaunchdEditViewController::compare(const Versions& versions, std::function<void(Choice)> completion) {
  auto* sheet = new CompareSheet(program(), versions, std::move(completion), window());
  sheet->open();
}

bool LaunchdEditViewController::undoesFor(const QWidget& widget) const {
  return isVisible() && isAncestorOf(&widget) && !keepsOwnUndo(widget);
}

/// Text fields would take the keys for themselves.
bool LaunchdEditViewController::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) return false;
  const auto* const widget = qobject_cast<QWidget*>(watched);
  if (!widget || !undoesFor(*widget)) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const bool isUndo = key.matches(QKeySequence::Undo);
  if (!isUndo && !key.matches(QKeySequence::Redo)) return false;
  event->accept();
  if (event->type() == QEvent::ShortcutOverride) return true;  // comes back as a key press
  isUndo ? program().editing.undo() : program().editing.redo();
  return true;
}

}  // namespace mirvel::ui
