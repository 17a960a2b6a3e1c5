#include "ui/editor/GeneralSection.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QStandardItemModel>

#include "core/catalogue/KindTexts.h"
#include "core/commands/CommandRepairs.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "ui/editor/FieldCell.h"
#include "ui/editor/IconButton.h"
#include "ui/editor/RunTextField.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Controls.h"
#include "ui/support/IconLoader.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr auto runHelp = "Program / ProgramArguments: The paths should be absolute paths.";

QPixmap pixmapOf(const std::optional<Image>& icon, const Section& section) {
  const QSize size(SectionGrid::iconSide, SectionGrid::iconSide);
  return icon ? section.context().icons.icon(*icon).pixmap(size, section.devicePixelRatioF()) : QPixmap();
}

}  // namespace

GeneralDisplaySection::GeneralDisplaySection(const EditorContext& theContext)
    : Section(theContext),
      m_icon(new QLabel),  // without an accessible name, as the texts say the same
      m_nameValueTextField(makeName()),
      m_forValueTextField(new ValueText({})),
      m_runValueTextField(new ValueText({})),
      m_enabledButton(new CheckBox(qt(localize().enabled()))) {
  auto* const grid = new SectionGrid(this);
  grid->addIcon(*m_icon);
  grid->addWidget(m_nameValueTextField, 0, 1, Qt::AlignVCenter);
  grid->addText(localize().forString(), *m_forValueTextField, 0);
  m_runValueTextField->setCode();
  m_runLabel = &grid->addText(localize().run(), *m_runValueTextField, 0);
  m_enabledButton->setEnabled(false);
  grid->addRow(*m_enabledButton);
}

ValueText* GeneralDisplaySection::makeName() const {
  auto* const result = new ValueText({});
  QFont bold = result->font();
  bold.setPointSizeF(bold.pointSizeF() * 1.35);
  bold.setBold(true);
  result->setTextFont(bold);
  result->setAccessibleName(qt(localize().name()));
  return result;
}

void GeneralDisplaySection::fill(const Launchd& launchd) {
  show(GeneralRules::display(launchd, context().kinds, localize()));
}

void GeneralDisplaySection::show(const GeneralRules::Display& display) {
  m_icon->setPixmap(pixmapOf(display.icon, *this));
  replaceText(*m_nameValueTextField, shownText(display.name));
  replaceText(*m_forValueTextField, qt(display.for_));
  replaceText(*m_runValueTextField, shownText(display.run));
  m_runLabel->setVisible(!display.run.empty());
  m_runValueTextField->setVisible(!display.run.empty());
  m_enabledButton->setChecked(display.isEnabled);
}

GeneralEditSection::GeneralEditSection(const EditorContext& theContext)
    : Section(theContext),
      m_form(*this),
      m_fileCheck(theContext.foundation.defaults, theContext.repairs, theContext.platform.fileQueue,
                  theContext.platform.mainQueue),
      m_iconButton(new IconButton(theContext)),
      m_forPopUpButton(new QComboBox),
      m_runValueTextField(new RunTextField) {
  auto* const grid = new SectionGrid(this);
  grid->addIcon(*m_iconButton);
  grid->addWidget(&m_form.make(fieldOf("Disabled")), 0, 1, Qt::AlignLeading | Qt::AlignVCenter);
  FieldCell& name = m_form.make(fieldOf("Label"));
  grid->addText(localize().name(), name, name.textTop());
  makeForPopUp(*grid);
  makeRunRow(*grid);
  m_settingChanged = theContext.foundation.defaults.changed().subscribe([this](const std::string& key) {
    if (key == Defaults::Key::editSystemJobs) enableForItems();
    if (key == Defaults::Key::showInvalidData) checkRun();
  });
}

GeneralEditSection::~GeneralEditSection() = default;

void GeneralEditSection::makeForPopUp(SectionGrid& grid) {
  m_forPopUpButton->setObjectName(QStringLiteral("forPopUpButton"));
  guardFromWheel(*m_forPopUpButton);
  KindTexts& kinds = context().kinds;
  for (const auto& item : GeneralRules::forItems(context().foundation.defaults.editSystemJobs())) {
    m_forPopUpButton->addItem(context().icons.icon(kinds.icon(item.kind)), qt(kinds.title(item.kind)),
                              item.kind.rawValue());
  }
  enableForItems();
  grid.addField(localize().forString(), *m_forPopUpButton, false);
  connect(m_forPopUpButton, &QComboBox::currentIndexChanged, this, [this] { forChanged(); });
}

void GeneralEditSection::makeRunRow(SectionGrid& grid) {
  m_runValueTextField->setObjectName(QStringLiteral("runValueTextField"));
  m_runValueTextField->setWhatsThis(helpText(runHelp));
  m_runValueTextField->markInvalid({});
  m_runValueTextField->setAccessibleName(qt(localize().run()));
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(m_runValueTextField, 1);
  layout->addWidget(
      new RunMenuButton(context().platform, context().shell, context().repairs, localize(), *m_runValueTextField), 0,
      Qt::AlignTop);
  row->setFocusProxy(m_runValueTextField);
  grid.addText(localize().run(), *row, m_runValueTextField->textTop());
  grid.addRow(*makeProblemsView([](const std::string& key) { return key == "Program" || key == "ProgramArguments"; }));
  connect(m_runValueTextField, &QPlainTextEdit::textChanged, this, [this] { runChanged(); });
}

void GeneralEditSection::updateIcon(const Launchd& launchd) {
  m_iconButton->setIcon(QIcon(pixmapOf(launchd.displayIcon(localize()), *this)));
}

void GeneralEditSection::fill(const Launchd& launchd) {
  updateIcon(launchd);
  m_form.fill(launchd);
  m_forPopUpButton->setCurrentIndex(m_forPopUpButton->findData(launchd.kind.rawValue()));
  // Text that is equivalent to the same command is kept as it was typed.
  const std::string& command = launchd.plist().run;
  if (m_command != command) m_runValueTextField->setText(command);
  m_command = command;
  checkRun();
}

void GeneralEditSection::forChanged() {
  const auto kind = Kind::fromRawValue(m_forPopUpButton->currentData().toInt());
  if (!kind || isFilling()) return;
  GeneralRules::changeKind(context().editing, context().selection, context().notifications, *kind);
}

void GeneralEditSection::runChanged() {
  using Step = Editing::Step;
  Launchd* const job =
      markJobChanged(m_runValueTextField->isInsertingCommand() ? Step::Begins : Step::Continues, "run");
  if (!job) return;
  m_command = GeneralRules::command(m_runValueTextField->text(), job->plist(), context().repairs);
  job->plist().run = m_command;
  checkRun();
}

void GeneralEditSection::enableForItems() {
  auto* const items = qobject_cast<QStandardItemModel*>(m_forPopUpButton->model());
  int row = 0;
  for (const auto& item : GeneralRules::forItems(context().foundation.defaults.editSystemJobs())) {
    items->item(row++)->setEnabled(item.isEnabled);
  }
}

void GeneralEditSection::checkRun() {
  m_fileCheck.check(m_runValueTextField->text(), [this](const std::vector<std::filesystem::path>& missing) {
    m_runValueTextField->markMissing(missing, localize());
  });
}

}  // namespace mirvel::ui
