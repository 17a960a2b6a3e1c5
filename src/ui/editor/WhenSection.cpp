#include "ui/editor/WhenSection.h"

#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "core/editor/EditorTexts.h"
#include "core/explain/NextRuns.h"
#include "core/ports/Clock.h"
#include "core/schedule/Scheduled.h"
#include "core/session/Platform.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

WhenSection::WhenSection(const EditorContext& theContext)
    : Section(theContext),
      m_keepAliveGridView(new QWidget),
      m_keepAliveGrid(new SectionGrid(m_keepAliveGridView)),
      m_scheduledButton(new CheckBox(qt(localize().scheduled()))),
      m_scheduledView(new QWidget),
      m_scheduledRuleEditor(new ScheduledRuleEditor(theContext.schedules)),
      m_nextRuns(new SecondaryLabel(QString())) {
  m_scheduledRuleEditor->setAccessibleName(qt(localize().scheduled()));
  m_nextRuns->setWordWrap(true);
  auto* scheduled = new QVBoxLayout(m_scheduledView);
  scheduled->setContentsMargins(0, 0, 0, 0);
  scheduled->addWidget(m_scheduledRuleEditor);
  scheduled->addWidget(m_nextRuns);
}

void WhenSection::layOut(QWidget& runAtLoad, QWidget& keepAlive, QWidget& startOnMount) {
  auto* grid = new SectionGrid(this);
  grid->addRow(runAtLoad);
  grid->addRow(keepAlive);
  grid->addWidget(m_keepAliveGridView, grid->rowCount(), 0, 1, 2);
  grid->addRow(startOnMount);
  grid->addRow(*m_scheduledButton);
  grid->addRow(*m_scheduledView);
  constexpr int indent = 20;  // in pixels, below the box to which the conditions belong
  m_keepAliveGrid->indentFields(indent);
  m_keepAliveGridView->hide();
  m_scheduledView->hide();
}

void WhenSection::loadRules(const jobfile::Plist& plist) {
  context().schedules.loadFileRules(Scheduled::fileRules(plist.startInterval, plist.startCalendarInterval),
                                    m_scheduledRuleEditor->editor());
}

void WhenSection::showNextRuns(const jobfile::Plist& plist) {
  const auto text = nextRunsText(plist, context().platform.clock.currentSecond(), context().schedules.moments());
  m_nextRuns->setText(qt(text.value_or("")));
  m_nextRuns->setVisible(text.has_value());
}

namespace {

void showState(QCheckBox& box, std::optional<bool> state) {
  box.setEnabled(false);
  box.setVisible(state.has_value());
  box.setChecked(state.value_or(false));
}

}  // namespace

WhenDisplaySection::WhenDisplaySection(const EditorContext& theContext)
    : WhenSection(theContext),
      m_runAtLoadButton(new CheckBox(qt(localize().atStartupAndWhenSaving()))),
      m_keepAliveButton(new CheckBox(qt(localize().launchAgainIfItCrashes()))),
      m_startOnMountButton(new CheckBox(qt(EditorTexts(localize()).mountingLogicalVolume()))) {
  layOut(*m_runAtLoadButton, *m_keepAliveButton, *m_startOnMountButton);
  m_scheduledRuleEditor->setEditable(false);
}

void WhenDisplaySection::fill(const Launchd& launchd) {
  const ValueTexts texts(localize(), context().foundation.roots.home.native());
  const auto content = WhenRules::display(launchd.plist(), texts);
  showState(*m_runAtLoadButton, content.runAtLoad);
  showState(*m_keepAliveButton, content.keepAlive);
  showConditions(content.conditions);
  showState(*m_startOnMountButton, content.startOnMount);
  showState(*m_scheduledButton, content.isScheduled ? std::optional(true) : std::nullopt);
  m_scheduledView->setVisible(content.isScheduled);
  if (!content.isScheduled) return;
  loadRules(launchd.plist());
  showNextRuns(launchd.plist());
}

void WhenDisplaySection::showConditions(const std::vector<WhenRules::Condition>& conditions) {
  const auto isSameControl = [](const WhenRules::Condition& a, const WhenRules::Condition& b) {
    return a.key == b.key && a.state.has_value() == b.state.has_value();
  };
  if (!std::equal(conditions.begin(), conditions.end(), m_conditions.begin(), m_conditions.end(), isSameControl)) {
    m_keepAliveGrid->clear();
    m_conditionWidgets.clear();
    for (const WhenRules::Condition& condition : conditions) m_conditionWidgets.push_back(makeCondition(condition));
  }
  for (std::size_t i = 0; i < conditions.size(); ++i) {
    QWidget* const widget = m_conditionWidgets[i];
    if (auto* const box = qobject_cast<QCheckBox*>(widget)) showState(*box, conditions[i].state);
    auto* const text = qobject_cast<QTextEdit*>(widget);
    if (text) replaceText(*text, shownText(joinedLines(conditions[i].lines)));
  }
  m_conditions = conditions;
  m_keepAliveGridView->setVisible(!conditions.empty());
}

QWidget* WhenDisplaySection::makeCondition(const WhenRules::Condition& condition) {
  if (condition.state) {
    auto* const box = new CheckBox(qt(condition.key));
    m_keepAliveGrid->addRow(*box);
    return box;
  }
  auto* const text = new ValueText({});
  m_keepAliveGrid->addText(condition.key, *text, 0);
  return text;
}

}  // namespace mirvel::ui
