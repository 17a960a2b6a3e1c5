#include "core/runs/JobControl.h"

#include <algorithm>

#include "core/actions/Action.h"
#include "core/actions/ActionController.h"
#include "core/actions/ActionTexts.h"
#include "core/catalogue/Launchd.h"
#include "core/runs/JobRuns.h"
#include "core/runs/RunStateTexts.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace {

messages::Control::Order controlOrder(RunOrder order) {
  switch (order) {
    case RunOrder::RunNow:
      return messages::Control::Order::Start;
    case RunOrder::Restart:
      return messages::Control::Order::Restart;
    case RunOrder::Stop:
    case RunOrder::Disable:
      break;
  }
  return messages::Control::Order::Stop;
}

bool isRunning(JobState state) {
  return state == JobState::Running || state == JobState::Stopping;
}

}  // namespace

/// A stopped job has ended by a signal that is no crash.
bool startsAgain(const jobfile::Plist& record) {
  if (record.isAlwaysKeptAlive()) return true;
  if (!record.keepAlive || record.keepAlive->bool_) return false;
  const jobfile::KeepAlive& conditions = *record.keepAlive;
  const auto hasAny = [](const auto& map) { return map && !map->empty(); };
  return conditions.successfulExit == false || conditions.crashed == false || hasAny(conditions.pathState) ||
         hasAny(conditions.otherJobEnabled);
}

JobControl::JobControl(const SessionContext& session, const Busy& saving, ActionController& actions,
                       const JobRuns& runs)
    : m_session(session), m_saving(saving), m_actions(actions), m_runs(runs) {}

bool JobControl::isOffered(RunOrder order, const Job& job) {
  const jobfile::Plist* const record = job.record();
  if (!job.kind.canBeLoaded() || !record) return false;
  switch (order) {
    case RunOrder::RunNow:
      return true;
    case RunOrder::Stop:
      return !startsAgain(*record);
    case RunOrder::Restart:
    case RunOrder::Disable:
      return startsAgain(*record);
  }
  return false;
}

std::string JobControl::obstacle(RunOrder order, const Job& job) const {
  const RunStateTexts texts(m_session.foundation.localize);
  if (job.isNewFile || m_saving.isBusy()) return texts.saveItFirst();
  if (order == RunOrder::RunNow) return obstacleToRun(job);
  if (order == RunOrder::Disable) return obstacleToDisable(job);
  const JobState state = m_runs.state(job);
  if (state == JobState::Stopping) return texts.itIsBeingStopped();
  return state == JobState::Running ? std::string() : texts.itIsntRunning();
}

/// If nothing is reported, the helper finds out.
std::string JobControl::obstacleToRun(const Job& job) const {
  const RunStateTexts texts(m_session.foundation.localize);
  const JobState state = m_runs.state(job);
  if (isRunning(state)) return texts.itIsAlreadyRunning();
  const bool isLoaded = state == JobState::Waiting || state == JobState::Failed;
  if (isLoaded) return {};
  if (const auto other = m_runs.otherFile(job); !other.empty()) return texts.labelIsLoadedFrom(std::string(other));
  if (job.isDisabled()) return texts.enableItFirst();
  return state == JobState::NotLoaded ? ActionTexts(m_session.foundation.localize).theJobIsntLoaded() : std::string();
}

std::string JobControl::obstacleToDisable(const Job& job) const {
  const RunStateTexts texts(m_session.foundation.localize);
  const bool isEditable = job.originalKind.isEditable(m_session.foundation.defaults.editSystemJobs());
  if (!isEditable || !m_session.shell.edit) return texts.itMustBeEditable();
  if (m_session.editing.hasUnsavedChanges()) return texts.saveOrDiscardFirst();
  return job.isDisabled() ? texts.itIsAlreadyDisabled() : std::string();
}

bool JobControl::isEdited(const Job& job) const {
  return m_session.editing.hasUnsavedChanges() && m_session.selection.job().get() == &job;
}

void JobControl::give(RunOrder order, const std::shared_ptr<Job>& job) {
  if (!job || !job->kind.canBeLoaded() || !obstacle(order, *job).empty()) return;
  if (order == RunOrder::Disable) return disable(job);
  if (order != RunOrder::Stop && isEdited(*job)) return askAboutChanges(order, job);
  send(order, *job, job->name);
}

void JobControl::askAboutChanges(RunOrder order, const std::shared_ptr<Job>& job) {
  const Localize& localize = m_session.foundation.localize;
  const RunStateTexts texts(localize);
  m_session.platform.interface.beginSheet({.message = texts.changesArentSaved(job->name),
                                           .informativeText = texts.theRunHasOnlyWhatIsSaved(),
                                           .defaultTitle = texts.saveAndRun(),
                                           .alternateTitle = texts.runWhatIsSaved(),
                                           .otherTitle = localize.cancel()},
                                          [this, order, job](int answer) {
                                            if (m_session.selection.job() != job)
                                              return;  // another job was selected while the sheet was open
                                            if (answer == Interface::defaultButton) return saveAndRun();
                                            if (answer == Interface::alternateButton) send(order, *job, job->name);
                                          });
}

/// The save may change label and file, and may disable the job. It has ended the current run.
void JobControl::saveAndRun() {
  const auto job = m_session.selection.launchd();
  if (!job || !m_session.shell.edit) return m_session.platform.interface.saveError();
  m_session.shell.edit->save([this, job](bool isSaved) {
    if (isSaved && !job->isDisabled()) send(RunOrder::RunNow, *job, job->plist().name);
  });
}

void JobControl::send(RunOrder order, const Job& job, const std::string& label) {
  const auto action = Action::control(job.url, label, controlOrder(order));
  const bool isRoots = JobRuns::domainOf(job.originalKind) == RunDomain::Root;
  (void)(isRoots ? m_actions.sendPrivileged(action) : m_actions.send(action));  // failures have been shown
}

/// As if the user had edited and saved it. If the save fails, the change remains as an unsaved edit.
void JobControl::disable(const std::shared_ptr<Job>& job) {
  const auto isSelected = [&] {
    const auto selected = m_session.selection.job();
    return selected && selected->url.equalTo(job->url);
  };
  if (ModeType* const mode = m_session.currentMode.view(); mode && !isSelected()) mode->select(job->url);
  if (!isSelected()) m_session.selection.select(job);
  Launchd* const edited = m_session.editing.markJobChanged();
  if (!edited) return;
  edited->plist().disabled = true;
  m_session.shell.edit->save([this](bool isSaved) {
    if (!isSaved && m_session.shell.detail) m_session.shell.detail->showEdit();
  });
}

}  // namespace mirvel
