#include <QLabel>
#include <QLayout>

#include "core/base/Const.h"
#include "core/editor/EditorTexts.h"
#include "core/session/Selection.h"
#include "core/text/Bidirectional.h"
#include "ui/editor/FieldCell.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/editor/SectionGrid.h"
#include "ui/editor/WhenSection.h"
#include "ui/support/Controls.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

constexpr auto scheduleKeys = "StartInterval / StartCalendarInterval";
constexpr auto rulesHelp =
    "StartInterval: This optional key causes the job to be started every N seconds.\n"
    "StartCalendarInterval: This optional key causes the job to be started every calendar interval as specified.";

}  // namespace

WhenEditSection::WhenEditSection(const EditorContext& theContext) : WhenSection(theContext), m_form(*this) {
  m_form.add(keepAliveFields(), *m_keepAliveGrid);  // before the layout, which determines the tab order
  layOut(m_form.make(fieldOf("RunAtLoad")), m_form.make(fieldOf("KeepAlive")), m_form.make(fieldOf("StartOnMount")));
  auto* const problems =
      makeProblemsView([](const std::string& key) { return key == "StartInterval" || key == "StartCalendarInterval"; });
  m_scheduledView->layout()->addWidget(problems);
  m_form.written = [this](const Field& field) { written(field); };
  setHelp(*m_scheduledRuleEditor, rulesHelp);
  m_scheduledButton->setObjectName(QStringLiteral("scheduledButton"));
  connect(m_scheduledButton, &QCheckBox::toggled, this, [this](bool isOn) { scheduled(isOn); });
  m_scheduledRuleEditor->editor().setDelegate(this);
}

WhenEditSection::~WhenEditSection() {
  m_scheduledRuleEditor->editor().setDelegate(nullptr);
}

std::optional<InvalidField> WhenEditSection::refuse() {
  if (auto invalid = m_form.refuse()) return invalid;
  return m_scheduledButton->isChecked() ? m_scheduledRuleEditor->editor().refuse() : std::nullopt;
}

void WhenEditSection::fill(const Launchd& launchd) {
  m_form.fill(launchd);
  showConditions(launchd.plist());
  fillRules(launchd.plist());
  updateScheduledHelp();
}

void WhenEditSection::showConditions(const jobfile::Plist& plist) {
  m_keepAliveGridView->setVisible(plist.keepAlive.has_value());
}

void WhenEditSection::fillRules(const jobfile::Plist& plist) {
  Scheduled::RuleEditor& editor = m_scheduledRuleEditor->editor();
  const auto& unfinished = context().editing.unfinished().rules;
  if (!unfinished.empty()) {
    if (unfinished != editor.content()) editor.setContent(unfinished);
  } else if (!WhenRules::standFor(editor, plist)) {
    loadRules(plist);
  }
  m_rules = editor.content();
  const bool isScheduled = editor.numberOfRows() > 0;
  m_scheduledButton->setChecked(isScheduled);
  m_scheduledView->setVisible(isScheduled);
  m_nextRuns->hide();
  if (isScheduled && unfinished.empty()) showNextRuns(plist);
}

/// Clearing the box removes the conditions from the record, so that their controls must be refilled. The rules stay:
/// those of a schedule that is switched off come back with it.
void WhenEditSection::written(const Field& field) {
  const auto job = context().selection.launchd();
  if (field.key != "KeepAlive" || !job) return;
  withoutEdits([&] { m_form.fill(*job); });
  showConditions(job->plist());
}

void WhenEditSection::scheduled(bool isOn) {
  if (isFilling()) return;
  m_scheduledView->setVisible(isOn);
  if (isOn) {
    if (m_scheduledRuleEditor->editor().numberOfRows() == 0) {
      m_scheduledRuleEditor->addRow();  // which is reported as a change
    } else {
      m_rules.clear();  // so that the click is a step of its own
      rulesDidChange();
    }
  } else if (Launchd* const job = markJobChanged()) {
    WhenRules::removeSchedule(job->plist(), context().editing.unfinished());
  }
  updateScheduledHelp();
}

void WhenEditSection::updateScheduledHelp() {
  const std::string verb = m_scheduledButton->isChecked() ? EditorTexts(localize()).hide() : localize().show();
  m_scheduledButton->setToolTip(
      qt(bidirectionalString({verb, scheduleKeys}, Const::separator, localize().isRightToLeft())));
}

void WhenEditSection::rulesDidChange() {
  if (!isVisible()) return;  // the section has been discarded; its rows belong to another job
  const Scheduled::RuleEditor& rules = m_scheduledRuleEditor->editor();
  const bool isTyping = WhenRules::isTyping(m_rules, rules.content());
  m_rules = rules.content();
  Launchd* const job = markJobChanged(isTyping ? Editing::Step::Continues : Editing::Step::Begins, "Schedule");
  if (!job) return;
  const bool canBeSaved = WhenRules::rulesChanged(job->plist(), context().editing.unfinished(), rules);
  if (rules.numberOfRows() == 0) return endSchedule();
  canBeSaved ? showNextRuns(job->plist()) : m_nextRuns->hide();
}

/// The focus moves to the box, from which a new schedule can be started.
void WhenEditSection::endSchedule() {
  setCheckedQuietly(*m_scheduledButton, false);
  m_scheduledView->hide();
  m_scheduledButton->setFocus();
  updateScheduledHelp();
}

}  // namespace mirvel::ui
