#include "core/actions/SaveRun.h"

#include <utility>

#include "core/actions/ActionController.h"
#include "core/actions/ActionTexts.h"
#include "core/actions/CommentedFile.h"
#include "core/actions/JobOnDisk.h"
#include "core/actions/RevisionController.h"
#include "core/catalogue/JobFile.h"
#include "core/catalogue/Launchd.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

SaveRun::SaveRun(ActionController& actions, const ActionContext& context, std::shared_ptr<Launchd> job,
                 jobfile::Plist before, SavePlan plan, Ended ended)
    : m_actions(actions),
      m_context(context),
      m_job(std::move(job)),
      m_before(std::move(before)),
      m_plan(std::move(plan)),
      m_ended(std::move(ended)),
      m_saving(context.saving.begin()),
      m_file(actions.claim(m_plan.to)) {}

void SaveRun::start() {
  if (!m_plan.needsRoot) return begin();
  m_actions.authorise([self = shared_from_this()](bool isGranted) {
    if (isGranted) return self->begin();
    self->finish(false);
  });
}

void SaveRun::begin() {
  if (m_plan.isFresh && isPresent(m_plan.to)) {
    const Localize& localize = m_context.foundation.localize;
    m_context.platform.interface.error(ActionTexts(localize).couldntBeWritten(m_plan.to.text()),
                                       ActionTexts(localize).aFileWithThisNameExists());
    return finish(false);
  }
  // The last question of a save. The file may change while it is shown, so it is compared again afterwards.
  if (endsOvertaken()) return;
  if (!letCommentsGo(m_context.foundation, m_context.platform, m_context.editing, m_job)) return finish(false);
  if (endsOvertaken()) return;
  if (m_plan.isMove && !recordMove()) return finish(false);
  next();
}

/// Ends the save if another program has changed the file.
bool SaveRun::endsOvertaken() {
  m_isOvertaken = wasOvertaken();
  if (m_isOvertaken) finish(false);
  return m_isOvertaken;
}

/// Whether the file of the edited job has been changed while the user was asked for a password or about comments, or
/// while the old job was being stopped.
bool SaveRun::wasOvertaken() const {
  if (m_job->isNewFile || m_context.selection.job() != m_job) return false;
  const auto bytes = jobBytes(m_plan.from);
  return bytes && !m_context.editing.expectsInFile(Checksum::ofFile(*bytes).text());
}

/// Only moves between the user's and root's folders need several requests, and can be interrupted between them. The
/// checksum of the user's file is recorded so that no other content is ever deleted.
bool SaveRun::recordMove() {
  const bool toUser = m_job->kind == Kind::userAgent;
  if (!toUser && m_job->originalKind != Kind::userAgent) return true;
  MoveJournal::Move move{m_plan.to, m_plan.from, m_job->name, Checksum::ofFile(m_plan.text).text()};
  if (!toUser) {
    const auto old = jobBytes(m_plan.from);
    if (!old) return true;  // the old file is gone already
    move = {m_plan.from, m_plan.to, m_plan.label, Checksum::ofFile(*old).text()};
  }
  const auto recorded = m_actions.moves().begin(move);
  if (!recorded) m_context.platform.interface.present(recorded.error());
  m_isRecorded = static_cast<bool>(recorded);
  return m_isRecorded;
}

void SaveRun::next() {
  if (m_plan.steps.empty()) return finish(!m_isRollingBack);
  const SaveStep step = std::move(m_plan.steps.front());
  m_plan.steps.pop_front();
  // Stopping the old job can take as long as its `ExitTimeOut`.
  if (step.role == Role::Write && m_isOldUnloaded && wasOvertaken()) {
    m_isOvertaken = true;
    return rollBack();
  }
  send(step);
}

void SaveRun::send(const SaveStep& step) {
  m_role = step.role;
  step.action->ended = [self = shared_from_this()](bool isDone) { self->answered(isDone); };
  const bool isSent = step.isRoots ? m_actions.sendPrivileged(step.action) : m_actions.send(step.action);
  if (!isSent) return answered(false);
  if (step.role != Role::Write || m_isRollingBack) return;
  // From now on the file may have the new content, even if the request fails.
  m_context.editing.sent(m_job, m_plan.text);
  // A revision is kept under the path of the file: that of a job which moves has to wait for its new one.
  if (!m_plan.isMove) m_context.revisions.saveRevision(*m_job);
}

void SaveRun::answered(bool isDone) {
  if (m_role == Role::UnloadOld) m_isOldUnloaded = true;  // a failed request may have unloaded it all the same
  if (m_isRollingBack || isDone) return next();
  failed();
}

/// The reason has been shown to the user.
void SaveRun::failed() {
  switch (*m_role) {
    case Role::UnloadOld:
      return rollBack();
    case Role::Write:
      return writeFailed();
    case Role::RemoveOld:
      // A helper that crashed may have removed the file before.
      return isGone(m_plan.from) ? next() : rollBack();
    case Role::UnloadForGood:
      return next();
    case Role::Load:
      // The files are correct. If the job kept its path the edit continues, so that the user can save again; otherwise
      // the path that is being edited doesn't exist any more, and the save ends as written.
      return finish(m_plan.isFresh);
  }
}

/// A helper that crashed, or couldn't load the job, may have written the file nevertheless.
void SaveRun::writeFailed() {
  if (!m_plan.isFresh || !isWritten()) return rollBack();
  if (!m_plan.isMove) return next();
  if (m_job->kind == Kind::userAgent) return rollBack();
  if (isGone(m_plan.from)) return next();
  // Removing the new file would need another password. If the old file is the user's own, remove that one instead.
  if (m_actions.isAuthorised() || m_job->originalKind != Kind::userAgent) return rollBack();
  auto removal = Action::delete_(m_plan.from, m_job->name);
  removal->cleanUp = false;
  m_plan.steps.push_front({Role::RemoveOld, std::move(removal), false});
  next();
}

void SaveRun::rollBack() {
  const bool isNewThere = m_plan.isMove && isWritten() && isPresent(m_plan.from);
  m_isRollingBack = true;
  m_plan.steps.clear();
  if (isNewThere) addRemovalOfNew();
  if (m_isOldUnloaded || isNewThere) addLoadOfOld();
  next();
}

/// A rollback doesn't ask for another password; instead an alert says that the file remains.
void SaveRun::addRemovalOfNew() {
  const bool isRoots = m_job->kind != Kind::userAgent;
  if (!isRoots || m_actions.isAuthorised()) return addStep(Action::delete_(m_plan.to, m_plan.label), isRoots);
  m_context.platform.interface.present(Error{.code = Error::Code::Io,
                                             .message = "the job wasn't moved, but its new file couldn't be deleted",
                                             .file = m_plan.to.text()});
}

/// Without an error message: the job may never have been unloaded.
void SaveRun::addLoadOfOld() {
  if (!isEnabledOnDisk(m_plan.from)) return;
  auto action = Action::load(m_plan.from);
  action->presentError = false;
  const bool isRoots = m_job->originalKind.isDaemon();
  if (!isRoots || m_actions.isAuthorised()) addStep(std::move(action), isRoots);
}

void SaveRun::addStep(Action::Shared action, bool isRoots) {
  action->cleanUp = false;
  m_plan.steps.push_back({Role::Load, std::move(action), isRoots});
}

bool SaveRun::isWritten() const {
  return jobBytes(m_plan.to) == m_plan.text;
}

/// Whether the next start has nothing to undo of a failed move: it can only delete the user's file. After a move out of
/// the user's folder, that is the original, and the user has been told that root's file is there too.
bool SaveRun::isUndone() const {
  return m_job->kind != Kind::userAgent || isGone(m_plan.to);
}

void SaveRun::finish(bool isWritten) {
  if (m_isRecorded && (isWritten || isUndone())) {
    const auto ended = m_actions.moves().end(m_job->kind == Kind::userAgent ? m_plan.to : m_plan.from);
    if (!ended) m_context.platform.interface.present(ended.error());
  }
  if (isWritten) {
    keepWritten();
  } else {
    m_job->plist() = std::move(m_before);
  }
  m_saving.release();  // from here on the job can be edited and saved again
  isWritten ? endEdit() : restoreEdit();
  m_context.fetcher.refresh();
  if (const auto ended = std::exchange(m_ended, {})) ended(isWritten);
  // The editor asks the user which version to keep.
  if (m_isOvertaken && m_context.shell.edit) m_context.shell.edit->save();
}

void SaveRun::keepWritten() {
  m_job->url = m_plan.to;
  m_job->isNewFile = false;
  m_job->originalKind = m_job->kind;
  m_job->updateCustomIconDigest();
  (void)m_context.editing.take(m_job, m_plan.text);  // otherwise the record would be outdated until the next scan
  if (!m_plan.isMove) return;
  // A job that only moved has the same content, but the next scan must read it again because of its new kind.
  m_job->readAgain();
  m_context.notifications.jobMoved.post(m_plan.from, m_plan.to);
  m_context.revisions.saveRevision(*m_job);
}

/// Ends the edit of this job, or of the unchanged object by which a scan has replaced it.
void SaveRun::endEdit() {
  const Shell& shell = m_context.shell;
  const auto selected = m_context.selection.job();
  const bool isSuccessor = selected && !m_context.editing.hasUnsavedChanges() && selected->url.equalTo(m_job->url);
  if (selected != m_job && !isSuccessor) return;
  m_context.editing.setUnsavedChanges(false);
  if (!shell.edit) return;
  shell.edit->saveCompleted();
  if (shell.detail) shell.detail->showDisplay();
}

void SaveRun::restoreEdit() {
  // The file may have been written nevertheless, or the rollback may be incomplete. If another program has changed it,
  // the scan notices that without help, and the question which version to keep needs the checksum.
  if (!m_context.editing.hasUnsavedChanges() && !m_isOvertaken) m_job->readAgain();
  if (m_context.selection.job() != m_job) return;
  if (m_job->isNewFile) {
    m_context.selection.select(nullptr);
  } else if (m_context.shell.edit) {
    m_context.shell.edit->refreshEditedState();
  }
}

}  // namespace mirvel
