#include "ui/creation/NewWhenViewController.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "core/app/Program.h"
#include "core/creation/CreationTexts.h"
#include "ui/creation/ElidedLabel.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

NewWhenViewController::NewWhenViewController(Program& program, NewController& controller)
    : NewType(New::Page::when, controller),
      m_program(program),
      m_runAtLoadButton(new CheckBox(qt(program.foundation.localize.atStartupAndWhenSaving()))),
      m_keepAliveButton(new CheckBox(qt(program.foundation.localize.launchAgainIfItCrashes()))),
      m_scheduledButton(new CheckBox(qt(program.foundation.localize.scheduled()))),
      m_ruleEditor(new ScheduledRuleEditor(program.scheduledController)),
      m_watchedFolderLabel(new ElidedLabel),
      m_sentence(new ValueText(QString())),
      m_nextRunsTitle(
          new SecondaryLabel(qt(CreationTexts(program.foundation.localize).nextRunsTitle()) + QLatin1Char(':'))),
      m_nextRuns(new SecondaryLabel(QString())) {
  m_runAtLoadButton->setObjectName(QStringLiteral("runAtLoadButton"));
  m_keepAliveButton->setObjectName(QStringLiteral("keepAliveButton"));
  m_scheduledButton->setObjectName(QStringLiteral("scheduledButton"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(makeChoices(), 1);
  layout->addWidget(new Hairline);
  layout->addWidget(makeOutlook());

  NewWhenPage& when = controller.when;
  connect(m_runAtLoadButton, &QCheckBox::toggled, this, [&when](bool isOn) { when.runAtLoad(isOn); });
  connect(m_keepAliveButton, &QCheckBox::toggled, this, [&when](bool isOn) { when.keepAlive(isOn); });
  connect(m_scheduledButton, &QCheckBox::toggled, this, [&when](bool isOn) { when.scheduled(isOn); });
}

QWidget* NewWhenViewController::makeChoices() {
  auto* choices = new QWidget;
  auto* layout = new QVBoxLayout(choices);
  m_watchedFolder = makeWatchedFolder();
  layout->addWidget(m_watchedFolder);
  layout->addWidget(m_runAtLoadButton);
  layout->addWidget(m_keepAliveButton);
  layout->addWidget(m_scheduledButton);
  layout->addWidget(m_ruleEditor);
  layout->addStretch();
  auto* area = new QScrollArea;
  area->setFrameShape(QFrame::NoFrame);
  area->setWidgetResizable(true);
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidget(choices);
  area->viewport()->setAutoFillBackground(false);
  choices->setAutoFillBackground(false);
  return area;
}

QWidget* NewWhenViewController::makeWatchedFolder() {
  const Localize& localize = m_program.foundation.localize;
  auto* line = new QWidget;
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, 0, 0, 0);
  auto* choose = new QPushButton(qt(localize.ellipsis().choose()));
  choose->setAutoDefault(false);
  row->addWidget(new QLabel(qt(CreationTexts(localize).watchedFolder()) + QLatin1Char(':')));
  row->addWidget(m_watchedFolderLabel, 1);
  row->addWidget(choose);
  connect(choose, &QPushButton::clicked, this, [this] { newController.when.chooseWatchedFolder(optionHeld()); });
  return line;
}

QWidget* NewWhenViewController::makeOutlook() {
  auto* outlook = new QWidget;
  outlook->setObjectName(QStringLiteral("outlook"));
  m_sentence->setAccessibleName(qt(m_program.foundation.localize.summary()));
  auto* layout = new QVBoxLayout(outlook);
  layout->addWidget(m_sentence);
  auto* runs = new QHBoxLayout;
  runs->addWidget(m_nextRunsTitle, 0, Qt::AlignTop);
  runs->addWidget(m_nextRuns, 1);
  layout->addLayout(runs);
  return outlook;
}

void NewWhenViewController::appear() {
  newController.when.setRuleEditor(&m_ruleEditor->editor());
}

void NewWhenViewController::disappear() {
  newController.when.setRuleEditor(nullptr);
}

void NewWhenViewController::redraw() {
  const NewWhenPage& when = newController.when;
  setCheckedQuietly(*m_runAtLoadButton, when.isRunAtLoad());
  setCheckedQuietly(*m_keepAliveButton, when.isKeptAlive());
  setCheckedQuietly(*m_scheduledButton, when.isScheduled());
  m_ruleEditor->setVisible(when.isScheduled());
  const std::string folder = when.watchedFolder();
  m_watchedFolder->setVisible(!folder.empty());
  m_watchedFolderLabel->setFullText(qt(folder));

  const NewOutlook outlook = newController.outlook();
  const QString sentence = shownText(outlook.sentence);
  if (m_sentence->toPlainText() != sentence) m_sentence->setPlainText(sentence);
  QStringList runs;
  for (const std::string& run : outlook.nextRuns) runs.append(qt(run));
  m_nextRuns->setText(runs.join(QLatin1Char('\n')));
  m_nextRunsTitle->setVisible(!runs.isEmpty());
  m_nextRuns->setVisible(!runs.isEmpty());
}

void NewWhenViewController::focusOnFirst() {
  m_runAtLoadButton->setFocus();
}

}  // namespace mirvel::ui
