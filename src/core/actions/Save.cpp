#include <utility>

#include "core/actions/ActionController.h"
#include "core/actions/ActionTexts.h"
#include "core/actions/LabelConflict.h"
#include "core/actions/NormalizeForSave.h"
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
        if (job->isNewFile) deselect(job);
        if (ended) ended(false);
      }));
}

/// As a step of undo, if the job is being edited.
void ActionController::disable(const std::shared_ptr<Launchd>& job) {
  const bool isEdited = m_context.selection.job() == job && !job->isNewFile;
  if (isEdited) (void)m_context.editing.markJobChanged();
  job->plist().disabled = true;
  if (isEdited && m_context.shell.detail) m_context.shell.detail->showEdit();
}

void ActionController::startSave(const std::shared_ptr<Launchd>& job, const Ended& ended) {
  jobfile::Plist before = job->plist().clone();
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
  // The folder may have been removed meanwhile; the write tells if it can't be made.
  if (job->kind == Kind::userAgent) (void)makeAgentsFolder(m_context.foundation.roots);
  std::make_shared<SaveRun>(*this, m_context, job, std::move(before), *std::move(plan), ended)->start();
}

void ActionController::deselect(const std::shared_ptr<Launchd>& job) {
  if (m_context.selection.job() != job) return;
  m_context.selection.select(nullptr);
}

}  // namespace mirvel
