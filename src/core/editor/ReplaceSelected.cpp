#include "core/editor/ReplaceSelected.h"

#include <algorithm>

#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

namespace {

std::shared_ptr<Launchd> jobInPlaceOf(const std::shared_ptr<Job>& old, Program& program,
                                      const propertylist::Dictionary& dictionary) {
  const auto data = propertylist::writeXml(dictionary);
  if (!data || !old) return nullptr;
  return Launchd::read(*data, old->url, old->kind, program.foundation.scanSettings(), program.platform.console);
}

}  // namespace

bool replaceSelected(Program& program, const propertylist::Dictionary& dictionary) {
  const auto old = program.selection.job();
  const auto job = jobInPlaceOf(old, program, dictionary);
  if (!job) {
    const Localize& localize = program.foundation.localize;
    program.platform.interface.error(localize.anUnknownErrorOccurred(), localize.pleaseTryAgain());
    return false;
  }
  std::string fileChecksum = program.editing.fileChecksum();
  Jobs jobs = program.catalogue.jobs();
  const auto found =
      std::find_if(jobs.begin(), jobs.end(), [&old](const auto& other) { return isUnchanged(*other, *old); });
  if (found != jobs.end()) {
    *found = job;
    program.fetcher.replaceJobs(std::move(jobs));
  }
  program.editing.began(job, std::move(fileChecksum));
  program.selection.select(job);
  program.editing.setUnsavedChanges(true);
  program.drafts.edited();
  if (program.shell.edit) program.shell.edit->refreshEditedState();
  return true;
}

}  // namespace mirvel
