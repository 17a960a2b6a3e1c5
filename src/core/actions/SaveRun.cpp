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
  if (m_plan.isFresh && stands(m_plan.to)) {
    const Localize& localize = m_context.foundation.localize;
    m_context.platform.interface.error(ActionTexts(localize).couldntBeWritten(m_plan.to.text()),
                                       ActionTexts(localize).aFileWithThisNameExists());
    return finish(false);
  }
  // The last question of a save, so that it is asked once; the file may change while the user thinks about it.
  if (endsOvertaken()) return;
  if (!letCommentsGo(m_context.foundation, m_context.platform, m_context.editing, m_job)) return finish(false);
  if (endsOvertaken()) return;
  if (m_plan.isMove && !noteMove()) return finish(false);
  next();
}

/// Leaves it to the editor to ask what is to become of the two.
bool SaveRun::endsOvertaken() {
  if (!wasOvertaken()) return false;
  finish(false);
  if (m_context.shell.edit) m_context.shell.edit->save();
  return true;
}

/// Whether something else wrote to the file of the edited job while the user was asked for a password, or about
/// comments.
bool SaveRun::wasOvertaken() const {
  if (m_job->isNewFile || m_context.selection.job() != m_job) return false;
  const auto bytes = jobBytes(m_plan.from);
  return bytes && !m_context.editing.expectsInFile(Checksum::ofFile(*bytes).text());
}

/// Only moves between the user's and root's folders need more than one request. What the user's file holds is noted, so
/// that none but this one is ever removed.
bool SaveRun::noteMove() {
  const bool toUser = m_job->kind == Kind::userAgent;
  if (!toUser && m_job->originalKind != Kind::userAgent) return true;
  MoveJournal::Move move{m_plan.to, m_plan.from, m_job->name, Checksum::ofFile(m_plan.text).text()};
  if (!toUser) {
    const auto old = jobBytes(m_plan.from);
    if (!old) return true;  // nothing there that could be left
    move = {m_plan.from, m_plan.to, m_plan.label, Checksum::ofFile(*old).text()};
  }
  const auto noted = m_actions.moves().begin(move);
  if (!noted) m_context.platform.interface.present(noted.error());
  m_isNoted = static_cast<bool>(noted);
  return m_isNoted;
}

void SaveRun::next() {
  if (m_plan.steps.empty()) return finish(!m_isTakingBack);
  const SaveStep step = std::move(m_plan.steps.front());
  m_plan.steps.pop_front();
  send(step);
}

void SaveRun::send(const SaveStep& step) {
  m_role = step.role;
  step.action->ended = [self = shared_from_this()](bool isDone) { self->answered(isDone); };
  const bool isSent = step.isRoots ? m_actions.sendPrivileged(step.action) : m_actions.send(step.action);
  if (!isSent) return answered(false);
  if (step.role != Role::Write || m_isTakingBack) return;
  m_context.editing.sent(m_job, m_plan.text);
  // A revision is kept under the path of the file: that of a job which moves has to wait for its new one.
  if (!m_plan.isMove) m_context.revisions.saveRevision(*m_job);
}

void SaveRun::answered(bool isDone) {
  if (m_role == Role::UnloadOld) m_isOldUnloaded = true;  // if it failed, perhaps
  if (m_isTakingBack || isDone) return next();
  failed();
}

/// The user was told why.
void SaveRun::failed() {
  switch (*m_role) {
    case Role::UnloadOld:
      return takeBack();
    case Role::Write:
      return writeFailed();
    case Role::RemoveOld:
      // A helper that ended may have removed it before.
      return isGone(m_plan.from) ? next() : takeBack();
    case Role::UnloadForGood:
      return next();
    case Role::Load:
      // The files are as they should be. A job that stayed where it was can be edited on; of the others the edit has no
      // file any more.
      return finish(m_plan.isFresh);
  }
}

/// A helper that ended, or that couldn't load the job, may have written the file all the same.
void SaveRun::writeFailed() {
  if (!m_plan.isFresh || !isWritten()) return takeBack();
  if (!m_plan.isMove) return next();
  if (m_job->kind == Kind::userAgent) return takeBack();
  if (isGone(m_plan.from)) return next();
  // The helper that has ended can't be asked to remove the new file; but the old one, if it is the user's, can go.
  if (m_actions.isAuthorised() || m_job->originalKind != Kind::userAgent) return takeBack();
  auto removal = Action::delete_(m_plan.from, m_job->name);
  removal->cleanUp = false;
  m_plan.steps.push_front({Role::RemoveOld, std::move(removal), false});
  next();
}

void SaveRun::takeBack() {
  const bool isNewThere = m_plan.isMove && isWritten() && stands(m_plan.from);
  m_isTakingBack = true;
  m_plan.steps.clear();
  if (isNewThere) addRemovalOfNew();
  if (m_isOldUnloaded || isNewThere) addLoadOfOld();
  next();
}

/// Nobody is asked for a password again in order to take something back.
void SaveRun::addRemovalOfNew() {
  const bool isRoots = m_job->kind != Kind::userAgent;
  if (!isRoots || m_actions.isAuthorised()) return addStep(Action::delete_(m_plan.to, m_plan.label), isRoots);
  m_context.platform.interface.present(Error{.code = Error::Code::Io,
                                             .message = "the job wasn't moved, but its new file couldn't be deleted",
                                             .file = m_plan.to.text()});
}

/// Nobody is told if that fails: it may never have been unloaded.
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

void SaveRun::finish(bool isWritten) {
  if (m_isNoted) {
    const auto ended = m_actions.moves().end(m_job->kind == Kind::userAgent ? m_plan.to : m_plan.from);
    if (!ended) m_context.platform.interface.present(ended.error());
  }
  if (isWritten) {
    keepWritten();
  } else {
    m_job->plist() = std::move(m_before);
  }
  m_saving.release();
  isWritten ? endEdit() : putBack();
  m_context.fetcher.refresh();
  if (const auto ended = std::exchange(m_ended, {})) ended(isWritten);
}

void SaveRun::keepWritten() {
  m_job->url = m_plan.to;
  m_job->isNewFile = false;
  m_job->originalKind = m_job->kind;
  m_job->updateCustomIconDigest();
  (void)m_context.editing.take(m_job, m_plan.text);  // until a scan has read it
  if (!m_plan.isMove) return;
  // The bytes of a job that only moved are the same, but it must be read again: its kind isn't what it was.
  m_job->readAgain();
  m_context.notifications.jobMoved.post(m_plan.from, m_plan.to);
  m_context.revisions.saveRevision(*m_job);
}

/// The edit is that of the job itself, or of one without changes that a scan has put in its place.
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

void SaveRun::putBack() {
  // Its file may have been written, or half of the way back not been gone.
  if (!m_context.editing.hasUnsavedChanges()) m_job->readAgain();
  if (m_context.selection.job() != m_job) return;
  if (m_job->isNewFile) {
    m_context.selection.select(nullptr);
  } else if (m_context.shell.edit) {
    m_context.shell.edit->refreshEditedState();
  }
}

}  // namespace mirvel
