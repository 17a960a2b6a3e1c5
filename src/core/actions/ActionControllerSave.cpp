#include <algorithm>
#include <utility>

#include "core/actions/ActionController.h"
#include "core/actions/ActionTexts.h"
#include "core/actions/LabelConflict.h"
#include "core/actions/SaveRun.h"
#include "core/catalogue/Launchd.h"
#include "core/session/Catalogue.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

void ActionController::save(const std::shared_ptr<Launchd>& job, const Ended& ended) {
  const auto refuse = [&ended] {
    if (ended) ended(false);
  };
  const bool editsSystemJobs = m_context.foundation.defaults.editSystemJobs();
  if (!job->isNewFile && !canBeNamed(job->url)) return refuse();
  if (!job->kind.isEditable(editsSystemJobs) || !job->originalKind.isEditable(editsSystemJobs)) {
    m_context.platform.interface.saveError();
    return refuse();
  }
  // An empty label is compared as the one that the save will fill in.
  jobfile::Plist named = job->plist().clone();
  named.fillEmptyLabel();
  if (const auto other = conflictingJob(*job, named.name, m_context.catalogue.jobs())) {
    return askAboutLabel(job, *other, named.name, ended);
  }
  startSave(job, ended);
}

void ActionController::askAboutLabel(const std::shared_ptr<Launchd>& job, const Job& other, const std::string& label,
                                     const Ended& ended) {
  const Localize& localize = m_context.foundation.localize;
  m_context.platform.interface.beginSheet(
      {.message = ActionTexts(localize).labelIsInUse(label),
       .informativeText = ActionTexts(localize).onlyOneOfTheTwoCanBeLoaded(other.url.text()),
       .defaultTitle = localize.cancel(),
       .alternateTitle = ActionTexts(localize).saveDisabled(),
       .safeButton = Interface::defaultButton},
      m_delay.whileOwned([this, job, ended](int button) {
        if (button == Interface::alternateButton) {
          disable(job);
          return startSave(job, ended);
        }
        if (job->isNewFile) deselect(job);  // `saveNewJob` has selected it while the sheet was open
        if (ended) ended(false);
      }));
}

/// If the job is being edited this is an undo step.
void ActionController::disable(const std::shared_ptr<Launchd>& job) {
  const bool isEdited = m_context.selection.job() == job && !job->isNewFile;
  if (isEdited) (void)m_context.editing.markJobChanged();
  job->plist().disabled = true;
  if (isEdited && m_context.shell.detail) m_context.shell.detail->showEdit();
}

void ActionController::startSave(const std::shared_ptr<Launchd>& job, const Ended& ended) {
  jobfile::Plist before = job->plist().clone();  // restored if the save fails
  const auto giveUp = [&] {
    job->plist() = std::move(before);
    if (job->isNewFile) deselect(job);
    if (ended) ended(false);
  };
  if (!normalizeForSave(job->plist(), m_context.repairs)) return giveUp();
  auto plan = SavePlan::of(*job, m_context.foundation.roots, isTaken());
  if (!plan) m_context.platform.interface.saveError();
  if (!plan || !canBeNamed(plan->to)) return giveUp();
  if (job->isNewFile) {
    job->url = plan->to;
    job->updateCustomIconDigest();
  }
  // The folder may have been removed since the start. If it can't be created the write fails and says why.
  if (job->kind == Kind::userAgent) (void)makeAgentsFolder(m_context.foundation.roots);
  std::make_shared<SaveRun>(*this, m_context, job, std::move(before), *std::move(plan), ended)->start();
}

void ActionController::deselect(const std::shared_ptr<Launchd>& job) {
  if (m_context.selection.job() != job) return;
  m_context.selection.select(nullptr);
}

void ActionController::finishMoves() {
  for (const auto& move : m_moves.unfinished()) finishMove(move);
}

void ActionController::finishMove(const MoveJournal::Move& move) {
  const auto isAgents = [&roots = m_context.foundation.roots](const URL& url) {
    return std::any_of(Kind::allCases.begin(), Kind::allCases.end(), [&](Kind kind) {
      return kind.isAgentOfEveryone() && url.path().parent_path() == kind.folderURL(roots);
    });
  };
  const MoveRemedy remedy = remedyFor(move);
  if (remedy == MoveRemedy::RemoveUsers) {
    auto action = Action::delete_(move.users, jobLabel(move.users).value_or(move.label));
    action->ended = [this, users = move.users](bool isDone) {
      if (isDone) endMove(users);
    };
    if (!send(action)) return;
  } else {
    endMove(move.users);
  }
  if (remedy == MoveRemedy::LoadUsers) return loadQuietly(move.users);
  // The privileged helper has loaded a daemon when it wrote it.
  if (remedy != MoveRemedy::None && isAgents(move.roots)) loadQuietly(move.roots);
}

void ActionController::endMove(const URL& users) {
  const auto ended = m_moves.end(users);
  if (!ended) m_context.platform.interface.present(ended.error());
}

/// Without an error message: the job may be loaded already.
void ActionController::loadQuietly(const URL& url) {
  if (!isEnabledOnDisk(url)) return;
  auto action = Action::load(url);
  action->presentError = false;
  (void)send(action);
}

}  // namespace mirvel
