#include "ui/editor/WhenEditSection.h"

#include <QLabel>

#include "core/base/Const.h"
#include "core/editor/WhenRules.h"
#include "core/text/Bidirectional.h"
#include "ui/editor/GridTableViewController.h"
#include "ui/editor/ScheduledRuleEditor.h"
#include "ui/editor/SectionGrid.h"
#include "ui/support/CheckBox.h"
#include "ui/support/OptionKey.h"
#include "ui/support/QtText.h"
#include "ui/support/Quietly.h"

namespace mirvel::ui {

namespace {

constexpr auto runAtLoadHelp =
    "RunAtLoad: This optional key is used to control whether your job is launched once at the time the job is loaded.";
constexpr auto keepAliveHelp =
    "KeepAlive: This optional key is used to control whether your job is to be kept continuously running or to let "
    "demand and conditions control the invocation. The default is false and therefore only demand will start the job. "
    "The value may be set to true to unconditionally keep the job alive. Alternatively, a dictionary of conditions may "
    "be specified to selectively control whether launchd keeps a job alive or not. If multiple keys are provided, "
    "launchd ORs them, thus providing maximum flexibility to the job to refine the logic and stall if necessary.";
constexpr auto startOnMountHelp =
    "StartOnMount: This optional key causes the job to be started every time a filesystem is mounted.";
constexpr auto scheduleKeys = "StartInterval / StartCalendarInterval";
constexpr auto rulesHelp =
    "StartInterval: This optional key causes the job to be started every N seconds.\n"
    "StartCalendarInterval: This optional key causes the job to be started every calendar interval as specified.";
constexpr auto crashedHelp =
    "KeepAlive - Crashed: If true, the the job will be restarted as long as it exited due to a signal which is "
    "typically associated with a crash (SIGILL, SIGSEGV, etc.). If false, the job will be restarted in the inverse "
    "condition.";
constexpr auto successfulExitHelp =
    "KeepAlive - SuccessfulExit: If true, the job will be restarted as long as the program exits and with an exit "
    "status of zero. If false, the job will be restarted in the inverse condition.";
constexpr auto pathStateHelp =
    "KeepAlive - PathState: Each key in this dictionary is a file-system path. If the value of the key is true, then "
    "the job will be kept alive as long as the path exists. If false, the job will be kept alive in the inverse "
    "condition.";
constexpr auto otherJobEnabledHelp =
    "KeepAlive - OtherJobEnabled: Each key in this dictionary is the name of another job. If the value is true, then "
    "the job will be kept alive as long as one of the specified other jobs is loaded.";

}  // namespace

WhenEditSection::WhenEditSection(Program& theProgram) : WhenSection(theProgram) {
  m_runAtLoadButton->setToolTip(QLatin1String(runAtLoadHelp));
  m_keepAliveButton->setToolTip(QLatin1String(keepAliveHelp));
  m_startOnMountButton->setToolTip(QLatin1String(startOnMountHelp));
  m_scheduledButton->setToolTip(QLatin1String(scheduleKeys));
  m_scheduledRuleEditor->setToolTip(QLatin1String(rulesHelp));
  m_runAtLoadButton->setObjectName(QStringLiteral("runAtLoadButton"));
  m_keepAliveButton->setObjectName(QStringLiteral("keepAliveButton"));
  m_startOnMountButton->setObjectName(QStringLiteral("startOnMountButton"));
  m_scheduledButton->setObjectName(QStringLiteral("scheduledButton"));
  connectBoxes();
  m_scheduledRuleEditor->editor().setDelegate(this);
}

WhenEditSection::~WhenEditSection() {
  m_scheduledRuleEditor->editor().setDelegate(nullptr);
}

std::optional<InvalidField> WhenEditSection::refuse() {
  for (GridTableViewController* const table : m_tables) {
    if (auto invalid = table->refuse()) return invalid;
  }
  return m_scheduledButton->isChecked() ? m_scheduledRuleEditor->editor().refuse() : std::nullopt;
}

void WhenEditSection::connectBoxes() {
  connect(m_runAtLoadButton, &QCheckBox::toggled, this, [this](bool isOn) {
    const BoxClick click{isOn, optionHeld()};
    if (Launchd* const job = markJobChanged()) job->plist().runAtLoad = click.value();
  });
  connect(m_startOnMountButton, &QCheckBox::toggled, this, [this](bool isOn) {
    const BoxClick click{isOn, optionHeld()};
    if (Launchd* const job = markJobChanged()) job->plist().startOnMount = click.value();
  });
  connect(m_keepAliveButton, &QCheckBox::toggled, this, [this](bool isOn) { keepAlive(isOn); });
  connect(m_scheduledButton, &QCheckBox::toggled, this, [this](bool isOn) { scheduled(isOn); });
}

void WhenEditSection::fill(const Launchd& launchd) {
  const jobfile::Plist& plist = launchd.plist();
  m_runAtLoadButton->setChecked(plist.runAtLoad.value_or(false));
  m_startOnMountButton->setChecked(plist.startOnMount.value_or(false));
  // Whatever it says, it is there: clearing the box takes it away.
  m_keepAliveButton->setChecked(plist.keepAlive.has_value());
  if (plist.keepAlive) addConditions(plist);
  if (const auto read = plist.asRead(); read && read->keepAlive) m_plainKeepAlive = read->keepAlive->bool_;
  m_keepAliveGridView->setVisible(plist.keepAlive.has_value());
  fillRules(plist);
  updateScheduledHelp();
}

void WhenEditSection::fillRules(const jobfile::Plist& plist) {
  const auto& unfinished = program().editing.unfinished().rules;
  if (unfinished.empty()) {
    loadRules(plist);
  } else {
    m_scheduledRuleEditor->editor().setContent(unfinished);
  }
  const bool isScheduled = m_scheduledRuleEditor->editor().numberOfRows() > 0;
  m_scheduledButton->setChecked(isScheduled);
  m_scheduledView->setVisible(isScheduled);
  m_nextRuns->hide();
  if (isScheduled && unfinished.empty()) showNextRuns(plist);
}

void WhenEditSection::addConditions(const jobfile::Plist& plist) {
  if (m_keepAliveGridView->findChild<QCheckBox*>()) return;  // they are there
  const auto& keepAlive = *plist.keepAlive;
  addCondition("Crashed", crashedHelp, keepAlive.crashed, WhenRules::crashed);
  addCondition("SuccessfulExit", successfulExitHelp, keepAlive.successfulExit, WhenRules::successfulExit);
  addTable(plist, WhenRules::pathStateKey, pathStateHelp);
  addTable(plist, WhenRules::otherJobEnabledKey, otherJobEnabledHelp);
}

void WhenEditSection::addCondition(const char* title, const char* help, std::optional<bool> state,
                                   void (*write)(jobfile::Plist&, BoxClick)) {
  auto* box = new CheckBox(QLatin1String(title));
  box->setObjectName(QLatin1String(title));
  box->setToolTip(QLatin1String(help));
  box->setChecked(state.value_or(false));
  connect(box, &QCheckBox::toggled, this, [this, write](bool isOn) {
    const BoxClick click{isOn, optionHeld()};
    if (Launchd* const job = markJobChanged()) write(job->plist(), click);
  });
  m_keepAliveGrid->addRow(*box);
}

void WhenEditSection::addTable(const jobfile::Plist& plist, std::string_view key, const char* help) {
  const auto kind = key == WhenRules::pathStateKey ? GridTable::Kind::boolPath : GridTable::Kind::boolString;
  const auto content = WhenRules::conditionRows(plist, program().editing.unfinished(), key);
  auto* table = new GridTableViewController(program(), kind, content, std::string(key), *this);
  table->setToolTip(QLatin1String(help));
  m_tables.push_back(table);
  m_keepAliveGrid->addText(std::string(key), *table, 0);
}

void WhenEditSection::keepAlive(bool isOn) {
  Launchd* const job = markJobChanged();
  if (!job) return;
  WhenRules::keepAlive(job->plist(), program().editing.unfinished(), isOn);
  if (isOn) {
    addConditions(job->plist());
  } else {
    m_tables.clear();
    m_keepAliveGrid->clear();  // the conditions have gone from the record, too
  }
  m_keepAliveGridView->setVisible(isOn);
}

void WhenEditSection::scheduled(bool isOn) {
  if (isFilling()) return;
  m_scheduledView->setVisible(isOn);
  if (isOn) {
    if (m_scheduledRuleEditor->editor().numberOfRows() == 0) m_scheduledRuleEditor->addRow();
    rulesDidChange();
  } else if (Launchd* const job = markJobChanged()) {
    WhenRules::removeSchedule(job->plist(), program().editing.unfinished());
  }
  updateScheduledHelp();
}

void WhenEditSection::updateScheduledHelp() {
  const std::string verb = m_scheduledButton->isChecked() ? localize().hide() : localize().show();
  m_scheduledButton->setToolTip(
      qt(bidirectionalString({verb, scheduleKeys}, Const::separator, localize().isRightToLeft())));
}

void WhenEditSection::gridTableChanged(const std::string& key, const std::vector<GridTable::Item>& rows) {
  if (Launchd* const job = markJobChanged(key)) {
    WhenRules::gridTableChanged(job->plist(), program().editing.unfinished(), key, rows, m_plainKeepAlive);
  }
}

void WhenEditSection::rulesDidChange() {
  if (!isVisible()) return;  // rows that go with their section write no more
  Launchd* const job = markJobChanged("Schedule");
  if (!job) return;
  const Scheduled::RuleEditor& rules = m_scheduledRuleEditor->editor();
  const bool canBeSaved = WhenRules::rulesChanged(job->plist(), program().editing.unfinished(), rules);
  if (rules.numberOfRows() == 0) return endSchedule();
  canBeSaved ? showNextRuns(job->plist()) : m_nextRuns->hide();
}

/// The box is where a new schedule begins.
void WhenEditSection::endSchedule() {
  setCheckedQuietly(*m_scheduledButton, false);
  m_scheduledView->hide();
  m_scheduledButton->setFocus();
  updateScheduledHelp();
}

}  // namespace mirvel::ui
