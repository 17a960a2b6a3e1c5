#include "core/actions/JobDeletion.h"

#include "core/actions/ActionController.h"
#include "core/actions/ActionTexts.h"
#include "core/actions/DeletedJobs.h"
#include "core/actions/JobOnDisk.h"
#include "core/locale/Dates.h"
#include "core/propertylist/Encoding.h"
#include "core/session/Busy.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Shell.h"

namespace mirvel {

bool JobDeletion::canDelete(const Job& job) const {
  if (m_editing.hasUnsavedChanges() || m_saving.isBusy()) return false;
  if (job.isNewFile || job.kind == Kind::loginItemApplication || job.kind == Kind::extraFolder) return false;
  return !job.kind.isSystem() || m_foundation.defaults.editSystemJobs();
}

void JobDeletion::confirm(const std::shared_ptr<Job>& job) {
  if (!job || !m_shell.mainWindow) return;
  const Localize& localize = m_foundation.localize;
  m_platform.interface.beginSheet({.message = ActionTexts(localize).areYouSureYouWantToDelete(job->name),
                                   .informativeText = consequence(*job),
                                   .defaultTitle = localize.delete_(),
                                   .alternateTitle = localize.cancel(),
                                   .safeButton = Interface::alternateButton},
                                  [this, job](int button) {
                                    if (button == Interface::defaultButton) confirmed(job);
                                  });
}

/// An edit or a save may have started while the user was asked.
void JobDeletion::confirmed(const std::shared_ptr<Job>& job) {
  if (!canDelete(*job)) {
    const Localize& localize = m_foundation.localize;
    return m_platform.interface.error(ActionTexts(localize).couldntBeDeleted(job->name),
                                      ActionTexts(localize).saveOrDiscardFirst());
  }
  if (!DeletedJobs::canKeep(job->kind) || !propertylist::isUtf8(job->url.text())) return deleteWithoutKeeping(*job);
  if (job->kind == Kind::userAgent || m_actions.isAuthorised()) return keepAndDelete(job);
  // The password comes first, so that no copy of a job that isn't deleted is left behind.
  m_actions.authorise([this, job](bool isGranted) {
    if (isGranted) confirmed(job);
  });
}

void JobDeletion::keepAndDelete(const std::shared_ptr<Job>& job) {
  const auto kept = m_deletedJobs.keep(*job);
  if (!kept) return askToDeleteAnyway(job, kept.error());
  const bool isUsers = job->kind == Kind::userAgent;
  const bool isSent = m_actions.deleteConfirmed(*job, [this, isUsers, url = job->url, id = *kept](bool isDeleted) {
    // The file may be gone although the request failed. Then the copy is the last one.
    if (isDeleted || !isPresent(url)) return;
    // Without a connection there was no answer, and the helper may still delete the file. So the copy is kept; it is
    // listed as soon as the file is gone.
    const bool isAnswered = isUsers ? m_actions.isConnected() : m_actions.isAuthorised();
    if (isAnswered) m_deletedJobs.forget(id);
  });
  if (!isSent) m_deletedJobs.forget(*kept);
}

void JobDeletion::askToDeleteAnyway(const std::shared_ptr<Job>& job, const Error& reason) {
  const Localize& localize = m_foundation.localize;
  m_platform.interface.beginSheet(
      {.message = ActionTexts(localize).youCantRestoreItLater(job->name),
       .informativeText = reason.text() + "\n\n" + ActionTexts(localize).youCantUndoThisAction(),
       .defaultTitle = ActionTexts(localize).deleteAnyway(),
       .alternateTitle = localize.cancel(),
       .safeButton = Interface::alternateButton},
      [this, job](int button) {
        if (button == Interface::defaultButton) deleteWithoutKeeping(*job);
      });
}

void JobDeletion::deleteWithoutKeeping(const Job& job) {
  (void)m_actions.deleteConfirmed(job);  // has shown why no request was sent
}

std::string JobDeletion::consequence(const Job& job) const {
  const Localize& localize = m_foundation.localize;
  if (!DeletedJobs::canKeep(job.kind)) return ActionTexts(localize).youCantUndoThisAction();
  const double until = DeletedJobs::keptUntil(m_platform.clock.secondsSince1970());
  return ActionTexts(localize).youCanRestoreItUntil(Date::standardText(until, localize.timeLocale()));
}

}  // namespace mirvel
