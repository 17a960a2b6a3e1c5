#include "ui/editor/WhenDisplaySection.h"

#include "core/editor/ValueTexts.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/CheckBox.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"
#include "ui/support/ValueText.h"

namespace mirvel::ui {

namespace {

void showState(QCheckBox& box, std::optional<bool> state) {
  box.setEnabled(false);
  box.setVisible(state.has_value());
  box.setChecked(state.value_or(false));
}

}  // namespace

void WhenDisplaySection::fill(const Launchd& launchd) {
  const auto content = WhenRules::display(launchd.plist(), program());
  showState(*m_runAtLoadButton, content.runAtLoad);
  showState(*m_keepAliveButton, content.keepAlive);
  for (const WhenRules::Condition& condition : content.conditions) addCondition(condition);
  m_keepAliveGridView->setVisible(!content.conditions.empty());
  showState(*m_startOnMountButton, content.startOnMount);
  showState(*m_scheduledButton, content.isScheduled ? std::optional(true) : std::nullopt);
  m_scheduledView->setVisible(content.isScheduled);
  m_scheduledRuleEditor->setEditable(false);
  if (!content.isScheduled) return;
  loadRules(launchd.plist());
  showNextRuns(launchd.plist());
}

void WhenDisplaySection::addCondition(const WhenRules::Condition& condition) {
  if (condition.state) {
    auto* box = new CheckBox(qt(condition.key));
    showState(*box, condition.state);
    m_keepAliveGrid->addRow(*box);
    return;
  }
  m_keepAliveGrid->addText(condition.key, *new ValueText(shownText(joinedLines(condition.lines))), 0);
}

}  // namespace mirvel::ui
