#include "ui/editor/LaunchdEditViewController.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "core/editor/EditorTexts.h"
#include "core/editor/FieldSearch.h"
#include "core/editor/JobProblems.h"
#include "core/editor/SectionRows.h"
#include "ui/editor/BrowserSection.h"
#include "ui/editor/CompareSheet.h"
#include "ui/editor/FieldForm.h"
#include "ui/editor/GeneralSection.h"
#include "ui/editor/KeyValueSection.h"
#include "ui/editor/LaunchdViewController.h"
#include "ui/editor/NotesSection.h"
#include "ui/editor/RunsSection.h"
#include "ui/editor/WhenSection.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

bool isEditable(StackSection section) {
  switch (section) {
    case StackSection::General:
    case StackSection::When:
    case StackSection::Notes:
      return true;
    default: {
      const auto fields = fieldsOf(section);
      return browserSchemaOf(section) || std::any_of(fields.begin(), fields.end(), [](const Field& field) {
               return field.control != Field::Control::None;
             });
    }
  }
}

}  // namespace

LaunchdEditViewController::LaunchdEditViewController(const EditorContext& theContext)
    : LaunchdViewController(theContext),
      m_controller(theContext, theContext.saving, theContext.scanning, theContext.actions, *this) {
  makeSearch();
  makeButtons();
  m_controller.updateButtons();
  qApp->installEventFilter(this);
}

LaunchdEditViewController::~LaunchdEditViewController() = default;

void LaunchdEditViewController::makeSearch() {
  m_searchField = filterField(localize());
  m_searchField->setObjectName(QStringLiteral("searchField"));
  m_searchField->setPlaceholderText(qt(EditorTexts(localize()).findAKey()));
  m_searchField->setAccessibleName(qt(EditorTexts(localize()).findAKey()));
  keepOwnUndo(*m_searchField);
  m_nothingFound = new SecondaryLabel(qt(EditorTexts(localize()).noKeyIsCalledThat()));
  m_nothingFound->setAlignment(Qt::AlignHCenter);
  m_nothingFound->hide();
  auto* const place = new QVBoxLayout;
  const QMargins margins = SectionGrid::paneMargins();
  place->setContentsMargins(margins.left(), SectionGrid::sectionSpacing, margins.right(), 0);
  place->addWidget(m_searchField);
  place->addWidget(m_nothingFound);
  m_jobProblems = new ProblemsView;
  place->addWidget(m_jobProblems);
  m_runs = new RunsLine;
  place->addWidget(m_runs);
  m_runsChanged = context().runs.changed().subscribe([this](const Jobs&) { m_runs->update(context()); });
  m_problemsChanged = context().problems.changed().subscribe([this] { showProblems(); });
  pane().insertLayout(0, place);
  connect(m_searchField, &QLineEdit::textChanged, this, [this] { search(); });
}

void LaunchdEditViewController::search() {
  const FieldSearch search(utf8(m_searchField->text()), localize());
  m_nothingFound->setVisible(!narrow(search));
}

void LaunchdEditViewController::showProblems() {
  auto problems = fieldProblems(context());
  for (Section* const section : sections()) section->takeProblems(problems);
  m_jobProblems->setProblems(withKeys(std::move(problems), isRightToLeft()));
}

void LaunchdEditViewController::clearDetail() {
  m_searchField->clear();
  dropSections();
}

void LaunchdEditViewController::makeButtons() {
  auto* bar = new ButtonBar;
  m_helpButton = symbolButton("help-contents", EditorTexts(localize()).help());
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
  updateSections();
  search();
  showProblems();
  m_runs->update(context());
  place.restore();
  m_controller.updateButtons();  // whether the job can be saved depends on the job
}

void LaunchdEditViewController::updateIcon() {
  const auto job = selectedJob();
  if (!job) return;
  for (Section* const section : sections()) section->updateIcon(*job);
}

std::vector<StackEntry> LaunchdEditViewController::entries(const Launchd& launchd) const {
  auto result = editStack(launchd.plist(), localize());
  // Sections without controls are read-only, and shown only if they have rows.
  std::erase_if(result, [&](const StackEntry& entry) {
    return !isEditable(entry.section) && editorRows(entry.section, launchd.plist(), context().foundation).empty();
  });
  return result;
}

Section* LaunchdEditViewController::makeSection(StackSection section) {
  switch (section) {
    case StackSection::General:
      return new GeneralEditSection(context());
    case StackSection::When:
      return new WhenEditSection(context());
    case StackSection::Notes:
      return new NotesSection(context());
    case StackSection::Deprecated:
    case StackSection::Unknown:
      return new KeysSection(context(), section, KeyValueSection::Deletable::Yes);
    default:
      if (const auto* const schema = browserSchemaOf(section)) {
        return new BrowserSection(context(), *schema, BrowserModel::Access::Editable);
      }
      if (isEditable(section)) return new FieldsSection(context(), section);
      return new KeysSection(context(), section);
  }
}

void LaunchdEditViewController::showButtons(const EditButtons& buttons) {
  if (content().isEnabled() == buttons.isSaving) holdSections(buttons.isSaving);
  m_saveProgressIndicator->setVisible(buttons.isBusy);
  m_helpButton->setVisible(!buttons.isBusy);
  m_saveButton->setEnabled(buttons.canSave);
  m_discardButton->setEnabled(!buttons.isSaving);
  if (m_discardButton->text() != qt(buttons.discardTitle)) m_discardButton->setText(qt(buttons.discardTitle));
}

/// Disables the sections during a save, since later input wouldn't be in the file.
void LaunchdEditViewController::holdSections(bool isHeld) {
  if (isHeld) m_heldPlace.emplace(*this);
  content().setEnabled(!isHeld);
  if (isHeld || !m_heldPlace) return;
  m_heldPlace->restore();
  m_heldPlace.reset();
}

void LaunchdEditViewController::hideDiscardButton() {
  if (m_discardButton->hasFocus()) focusOnFirst();  // otherwise Qt would focus an arbitrary control
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
  auto* const name = content().findChild<QLineEdit*>(QStringLiteral("Label"));
  if (name) name->setFocus(Qt::OtherFocusReason);
}

void LaunchdEditViewController::compare(const Versions& versions, std::function<void(VersionChoice)> completion) {
  auto* sheet = new CompareSheet(localize(), versions, std::move(completion), window());
  sheet->open();
}

bool LaunchdEditViewController::undoesFor(const QWidget& widget) const {
  return isVisible() && isAncestorOf(&widget) && !keepsOwnUndo(widget);
}

/// Handles the shortcuts of undo and redo before text fields do, whose own undo knows only their text.
bool LaunchdEditViewController::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) return false;
  const auto* const widget = qobject_cast<QWidget*>(watched);
  if (!widget || !undoesFor(*widget)) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const bool isUndo = key.matches(QKeySequence::Undo);
  if (!isUndo && !key.matches(QKeySequence::Redo)) return false;
  event->accept();
  if (event->type() == QEvent::ShortcutOverride) return true;  // a key press follows
  isUndo ? context().editing.undo() : context().editing.redo();
  return true;
}

}  // namespace mirvel::ui
