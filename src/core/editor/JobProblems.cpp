#include "core/editor/JobProblems.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>
#include <variant>

#include "core/base/ThreadWorkQueue.h"
#include "core/catalogue/Launchd.h"
#include "core/editor/EditorTexts.h"
#include "core/jobfile/RunString.h"
#include "core/lint/Lint.h"
#include "core/lint/PermissionLint.h"
#include "core/propertylist/Writer.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace {

// In seconds.
constexpr double pauseOfTyping = 0.25;
constexpr double patienceWithDisks = 0.5;
constexpr double idleTime = 1;
constexpr double patienceInBackground = 2;
constexpr double pauseOfRefreshes = 0.5;

/// The text that a save would write, so that lines are those of that text; binary if it can't be XML.
std::string textOf(const propertylist::Value& file) {
  if (auto xml = propertylist::writeXml(file)) return *std::move(xml);
  return propertylist::writeBinary(file);
}

}  // namespace

/// What is to be checked: a snapshot that shares nothing mutable with the job.
struct JobProblems::Question {
  std::variant<jobfile::FileDictionary, propertylist::Dictionary> content;
  std::optional<Kind> kind;    ///< none for a file that is checked for no kind in particular
  std::filesystem::path file;  ///< empty if there is none yet, or nothing loads it
  uid_t loader;                ///< the user for whom launchd loads the file

  Findings answer(const lint::TargetMachine& machine, bool mayUseDisks) const {
    Findings found;
    if (mayUseDisks && !file.empty()) found = lint::checkPermissions(file, loader);
    const auto* const unedited = std::get_if<jobfile::FileDictionary>(&content);
    const auto inText = lint::lint(
        unedited ? textOf(unedited->value()) : textOf(std::get<propertylist::Dictionary>(content)), machine, kind);
    found.insert(found.end(), inText.begin(), inText.end());
    return found;
  }
};

JobProblems::JobProblems(const SessionContext& session, lint::TargetMachine machine)
    : m_session(session),
      m_machine(std::move(machine)),
      m_outbox(std::make_shared<Outbox>(session.platform.mainQueue)),
      m_delay(session.platform.mainQueue),
      m_refreshes(session.platform.mainQueue) {
  m_subscriptions.push_back(session.selection.changed().subscribe([this] { selectionChanged(); }));
  m_subscriptions.push_back(session.editing.edited().subscribe([this] { edited(); }));
  m_subscriptions.push_back(session.notifications.jobsUpdated.subscribe([this] { catalogueChanged(); }));
  m_subscriptions.push_back(session.foundation.defaults.changed().subscribe([this](const std::string& key) {
    if (key == Defaults::Key::checkJobs) settingChanged();
  }));
  session.currentMode.setTest(JobSubset::WithProblems, [this](const Job& job) { return hasProblems(job); });
}

JobProblems::~JobProblems() {
  m_session.currentMode.setTest(JobSubset::WithProblems, {});
  m_outbox->close();
}

bool JobProblems::isOn() const {
  return m_session.foundation.defaults.checkJobs();
}

void JobProblems::setOn(bool isOn) {
  (void)m_session.foundation.defaults.setCheckJobs(isOn);  // failures have been reported
}

void JobProblems::settingChanged() {
  ++m_state;
  ++m_background;
  m_isInBackground = false;
  m_checked.clear();
  m_waiting.clear();
  m_job.reset();
  publish({});
  if (!isOn()) {
    const bool isLimited = m_session.currentMode.subset() == JobSubset::WithProblems;
    if (isLimited) m_session.currentMode.setSubset(m_session.catalogue.jobs(), std::nullopt);
    return;
  }
  selectionChanged();
  catalogueChanged();
}

JobProblems::Question JobProblems::questionAbout(const Launchd& job, bool isEdited) const {
  const jobfile::Plist& record = job.plist();
  const bool isExtra = job.originalKind == Kind::extraFolder;
  const bool isRoots = job.originalKind != Kind::userAgent;
  Question question{.content = propertylist::Dictionary(),
                    .kind = isExtra ? std::nullopt : std::optional(job.kind),
                    .file = job.isNewFile || isExtra ? std::filesystem::path() : job.url.path(),
                    .loader = isRoots ? 0 : ::geteuid()};
  if (!isEdited && record.dictionary) {
    question.content = *record.dictionary;
  } else {
    question.content = jobfile::fileAsEdited(record);
  }
  return question;
}

void JobProblems::ask(Question question, std::function<void(Answer)> deliver) {
  auto onMain = m_delay.whileOwned(std::move(deliver));
  m_session.platform.checkQueue.add(
      [question = std::move(question), machine = m_machine, outbox = m_outbox, onMain = std::move(onMain)] {
        const auto send = [&](Findings findings, bool isComplete) {
          outbox->post([onMain, answer = Answer{std::move(findings), isComplete}] { onMain(answer); });
        };
        send(question.answer(machine.withoutLookups(), false), false);
        send(question.answer(machine, true), true);
      });
}

void JobProblems::selectionChanged() {
  ++m_state;
  const auto job = m_session.selection.launchd();
  const Checked* const checked = job && !m_session.editing.hasUnsavedChanges() ? known(*job) : nullptr;
  const bool isSame = job && job == m_job.lock();
  m_job = job;
  if (checked || !isSame) publish(checked ? checked->findings : Findings());
  if (job && isOn()) postpone();
}

void JobProblems::edited() {
  ++m_state;
  if (m_session.selection.launchd() && isOn()) postpone();
  if (m_isViewOutdated && !m_session.editing.hasUnsavedChanges()) refreshView();
}

/// Checks after a pause, unless the state changes again meanwhile. At most one timer is pending.
void JobProblems::postpone() {
  if (std::exchange(m_isPostponed, true)) return;
  m_delay(pauseOfTyping, [this, state = m_state] {
    m_isPostponed = false;
    if (state == m_state) return checkSelected();
    postpone();
  });
}

void JobProblems::checkSelected() {
  const auto job = m_session.selection.launchd();
  if (!job || !isOn()) return;
  const bool isEdited = m_session.editing.hasUnsavedChanges() || job->isToBeReadAgain();
  ask(questionAbout(*job, isEdited), [this, state = m_state, job](Answer answer) {
    if (answer.isComplete) return answered(state, job, std::move(answer));
    // Usually the complete answer follows at once, and makes this one superfluous.
    m_delay(patienceWithDisks, [this, state, job, answer = std::move(answer)] { answered(state, job, answer); });
  });
}

/// An answer about an older state, or about another job, is dropped.
void JobProblems::answered(std::uint64_t state, const std::shared_ptr<Launchd>& job, Answer answer) {
  if (state != m_state || job != m_session.selection.launchd()) return;
  if (!answer.isComplete) return publish(std::move(answer.findings));
  ++m_state;  // partial answers about this state come too late
  if (!m_session.editing.hasUnsavedChanges() && !job->isToBeReadAgain()) store(*job, answer.findings);
  publish(std::move(answer.findings));
}

void JobProblems::publish(Findings findings) {
  if (findings == m_findings) return;
  m_findings = std::move(findings);
  m_changed.post();
}

/// The result for the job, if it is still about its file.
const JobProblems::Checked* JobProblems::known(const Job& job) const {
  const auto found = m_checked.find(job.url.text());
  const bool isSame =
      found != m_checked.end() && found->second.kind == job.originalKind && found->second.checksum == job.checksum;
  return isSame ? &found->second : nullptr;
}

bool JobProblems::hasProblems(const Job& job) const {
  const Checked* const checked = known(job);
  return checked && !checked->findings.empty();
}

void JobProblems::catalogueChanged() {
  if (!isOn()) return;
  m_waiting.clear();
  std::set<std::string> urls;
  for (const auto& job : m_session.catalogue.jobs()) {
    if (!job->kind.isLaunchd()) continue;
    urls.insert(job->url.text());
    if (!known(*job)) m_waiting.push_back(job);
  }
  std::erase_if(m_checked, [&](const auto& entry) { return !urls.contains(entry.first); });
  ++m_state;
  if (m_session.selection.launchd()) postpone();
  if (std::exchange(m_isInBackground, true)) return;  // frequent changes don't postpone the checks
  m_delay(idleTime, [this, background = m_background] {
    if (background == m_background) checkNext();
  });
}

/// Checks the next job that waits. Goes on with the following one when it has been answered, or when that takes long.
void JobProblems::checkNext() {
  ++m_background;
  std::shared_ptr<Launchd> job;
  while (!job && !m_waiting.empty()) {
    job = std::dynamic_pointer_cast<Launchd>(m_waiting.front().lock());
    m_waiting.pop_front();
  }
  m_isInBackground = job != nullptr;
  if (!job) return;
  const auto goOn = [this, background = m_background] {
    if (background == m_background) checkNext();
  };
  const bool isEdited = m_session.editing.hasUnsavedChanges() && job == m_session.selection.launchd();
  if (isEdited) return m_delay(0, goOn);
  ask(questionAbout(*job, false), [this, job, goOn](Answer answer) {
    if (!answer.isComplete || !isOn()) return;
    store(*job, std::move(answer.findings));
    goOn();
  });
  m_delay(patienceInBackground, goOn);
}

void JobProblems::store(const Job& job, Findings findings) {
  const bool had = hasProblems(job);
  const bool has = !findings.empty();
  m_checked.insert_or_assign(job.url.text(), Checked{job.checksum, job.originalKind, std::move(findings)});
  if (had != has) m_refreshes.interval("view", pauseOfRefreshes, [this] { refreshView(); });
}

/// Nothing is refreshed while there are unsaved changes, so that the edited job stays in view.
void JobProblems::refreshView() {
  m_isViewOutdated = m_session.editing.hasUnsavedChanges();
  if (m_isViewOutdated || !m_session.currentMode.dependsOn(JobSubset::WithProblems)) return;
  m_session.currentMode.update(m_session.catalogue.jobs());
}

std::string problemSummary(const JobProblems::Findings& findings, const Localize& localize) {
  const EditorTexts texts(localize);
  const auto errors = std::count_if(findings.begin(), findings.end(), [](const lint::Finding& finding) {
    return finding.severity == lint::Severity::Error;
  });
  const auto warnings = static_cast<std::int64_t>(findings.size()) - errors;
  if (errors == 0) return warnings == 0 ? std::string() : texts.warnings(warnings);
  return warnings == 0 ? texts.errors(errors) : texts.errors(errors) + ", " + texts.warnings(warnings);
}

bool applyFix(const SessionContext& session, const Busy& saving, const lint::Fix& fix) {
  const auto job = session.selection.launchd();
  const bool canBeEdited = job && job->kind.isEditable(session.foundation.defaults.editSystemJobs());
  if (!canBeEdited || saving.isBusy()) return false;
  const auto file = lint::mended(jobfile::fileAsEdited(job->plist()), fix);
  if (!file) return false;
  const auto text = propertylist::writeXml(*file);
  // Input of other fields that can't be saved yet must stay as it is.
  Unfinished unfinished = session.editing.unfinished();
  if (!text || !session.editing.replaceRecord(*text)) return false;
  const std::string& key = fix.path.front();
  unfinished.texts.erase(key);
  unfinished.tables.erase(key);
  unfinished.trees.erase(key);
  if (key == "StartInterval" || key == "StartCalendarInterval") unfinished.rules.clear();
  session.editing.unfinished() = std::move(unfinished);
  if (session.shell.detail) session.shell.detail->showEdit();
  if (session.shell.edit) session.shell.edit->refreshEditedState();
  return true;
}

}  // namespace mirvel
