#include "ui/editor/GeneralEditSection.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QStandardItemModel>

#include "core/editor/GeneralRules.h"
#include "ui/editor/IconButton.h"
#include "ui/editor/RunMenuButton.h"
#include "ui/editor/RunTextField.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/OptionKey.h"
#include "ui/support/QtText.h"
#include "ui/support/WheelGuard.h"

namespace mirvel::ui {

namespace {

constexpr auto enabledHelp =
    "This optional key specifies whether the job should be loaded by default. Note that this key may be overridden "
    "through the enable subcommand of launchctl(3).";
constexpr auto nameHelp = "Label: This required key uniquely identifies the job to launchd.";
constexpr auto runHelp = "Program / ProgramArguments: The paths should be absolute paths.";

}  // namespace

GeneralEditSection::GeneralEditSection(Program& theProgram, IconLoader& icons)
    : GeneralSection(theProgram, icons),
      m_fileCheck(theProgram.foundation.defaults, theProgram.repairs, theProgram.platform),
      m_iconButton(new IconButton(theProgram)),
      m_nameValueTextField(new QLineEdit),
      m_forPopUpButton(new QComboBox),
      m_runValueTextField(new RunTextField) {
  nameControls();
  m_grid->addIcon(*m_iconButton);
  m_grid->addWidget(m_enabledButton, 0, 1, Qt::AlignLeading | Qt::AlignVCenter);
  m_grid->addField(localize().name(), *m_nameValueTextField);
  WheelGuard::guard(*m_forPopUpButton);
  fillForPopUp();
  m_grid->addField(localize().forString(), *m_forPopUpButton, false);
  makeRunRow();

  connect(m_enabledButton, &QCheckBox::toggled, this, [this] { enabled(); });
  connect(m_nameValueTextField, &QLineEdit::textChanged, this, [this] { nameChanged(); });
  connect(m_forPopUpButton, &QComboBox::currentIndexChanged, this, [this] { forChanged(); });
  connect(m_runValueTextField, &QPlainTextEdit::textChanged, this, [this] { runChanged(); });
}

void GeneralEditSection::nameControls() {
  m_enabledButton->setToolTip(QLatin1String(enabledHelp));
  m_nameValueTextField->setToolTip(QLatin1String(nameHelp));
  m_runValueTextField->setWhatsThis(QLatin1String(runHelp));
  m_runValueTextField->markInvalid({});
  m_nameValueTextField->setObjectName(QStringLiteral("nameValueTextField"));
  m_runValueTextField->setObjectName(QStringLiteral("runValueTextField"));
  m_forPopUpButton->setObjectName(QStringLiteral("forPopUpButton"));
  m_enabledButton->setObjectName(QStringLiteral("enabledButton"));
}

void GeneralEditSection::makeRunRow() {
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(m_runValueTextField, 1);
  layout->addWidget(new RunMenuButton(program(), *m_runValueTextField), 0, Qt::AlignTop);
  row->setFocusProxy(m_runValueTextField);
  m_runValueTextField->setAccessibleName(qt(localize().run()));
  m_grid->addText(localize().run(), *row, m_runValueTextField->textTop());
}

void GeneralEditSection::fillForPopUp() {
  const bool editsSystemJobs = program().foundation.defaults.editSystemJobs();
  auto* const items = qobject_cast<QStandardItemModel*>(m_forPopUpButton->model());
  for (const auto& item : GeneralRules::forItems(editsSystemJobs)) {
    m_forPopUpButton->addItem(m_icons.icon(program().kinds.icon(item.kind)), qt(program().kinds.title(item.kind)),
                              item.kind.rawValue());
    items->item(m_forPopUpButton->count() - 1)->setEnabled(item.isEnabled);
  }
}

void GeneralEditSection::updateIcon(const Launchd& launchd) {
  m_iconButton->setIcon(QIcon(pixmapOf(launchd.displayIcon(localize()))));
}

void GeneralEditSection::fill(const Launchd& launchd) {
  updateIcon(launchd);
  m_enabledButton->setChecked(!launchd.isDisabled());
  m_nameValueTextField->setText(qt(launchd.plist().name));
  m_forPopUpButton->setCurrentIndex(m_forPopUpButton->findData(launchd.kind.rawValue()));
  m_runValueTextField->setText(launchd.plist().run);
  checkRun();
}

void GeneralEditSection::enabled() {
  if (Launchd* const job = markJobChanged()) {
    GeneralRules::enabled(job->plist(), {m_enabledButton->isChecked(), optionHeld()});
  }
}

void GeneralEditSection::forChanged() {
  const auto kind = Kind::fromRawValue(m_forPopUpButton->currentData().toInt());
  if (kind && !isFilling()) GeneralRules::changeKind(program(), *kind);
}

void GeneralEditSection::nameChanged() {
  if (Launchd* const job = markJobChanged("name")) {
    job->plist().name = utf8(m_nameValueTextField->text());
  }
}

void GeneralEditSection::runChanged() {
  Launchd* const job = markJobChanged("run");
  if (!job) return;
  GeneralRules::run(job->plist(), m_runValueTextField->text(), program().repairs);
  checkRun();
}

void GeneralEditSection::checkRun() {
  m_fileCheck.check(m_runValueTextField->text(), [this](const std::vector<std::filesystem::path>& missing) {
    m_runValueTextField->markMissing(missing, localize());
  });
}

}  // namespace mirvel::ui
