#include "ui/editor/WhenSection.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/explain/NextRuns.h"
#include "core/schedule/Scheduled.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/CheckBox.h"
#include "ui/support/QtText.h"
#include "ui/support/SecondaryLabel.h"

namespace mirvel::ui {

WhenSection::WhenSection(Program& theProgram)
    : Section(theProgram),
      m_runAtLoadButton(new CheckBox(qt(localize().atStartupAndWhenSaving()))),
      m_keepAliveButton(new CheckBox(qt(localize().launchAgainIfItCrashes()))),
      m_keepAliveGridView(new QWidget),
      m_keepAliveGrid(new SectionGrid(m_keepAliveGridView)),
      m_startOnMountButton(new CheckBox(qt(localize().mountingLogicalVolume()))),
      m_scheduledButton(new CheckBox(qt(localize().scheduled()))),
      m_scheduledView(new QWidget),
      m_scheduledRuleEditor(new ScheduledRuleEditor(theProgram)),
      m_nextRuns(new SecondaryLabel(QString())) {
  m_scheduledRuleEditor->setAccessibleName(qt(localize().scheduled()));
  m_nextRuns->setWordWrap(true);
  auto* scheduled = new QVBoxLayout(m_scheduledView);
  scheduled->setContentsMargins(0, 0, 0, 0);
  scheduled->addWidget(m_scheduledRuleEditor);
  scheduled->addWidget(m_nextRuns);

  auto* grid = new SectionGrid(this);
  grid->addRow(*m_runAtLoadButton);
  grid->addRow(*m_keepAliveButton);
  grid->addWidget(m_keepAliveGridView, grid->rowCount(), 0, 1, 2);
  grid->addRow(*m_startOnMountButton);
  grid->addRow(*m_scheduledButton);
  grid->addRow(*m_scheduledView);
  constexpr int indent = 20;  // they belong to the box above
  m_keepAliveGrid->indentFields(indent);
  m_keepAliveGridView->hide();
  m_scheduledView->hide();
}

void WhenSection::loadRules(const jobfile::Plist& plist) {
  program().scheduledController.loadFileRules(Scheduled::fileRules(plist.startInterval, plist.startCalendarInterval),
                                              m_scheduledRuleEditor->editor());
}

void WhenSection::showNextRuns(const jobfile::Plist& plist) {
  const auto text =
      nextRunsText(plist, program().platform.clock.currentSecond(), program().scheduledController.moments());
  m_nextRuns->setText(qt(text.value_or("")));
  m_nextRuns->setVisible(text.has_value());
}

}  // namespace mirvel::ui
