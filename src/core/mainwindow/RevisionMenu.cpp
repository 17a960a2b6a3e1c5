#include "core/mainwindow/RevisionMenu.h"

#include "core/app/Program.h"
#include "core/editor/ReplaceSelected.h"
#include "core/locale/Dates.h"

namespace mirvel {

std::vector<RevisionItem> revisionItems(Program& program) {
  std::vector<RevisionItem> result;
  const auto job = program.selection.job();
  const propertylist::Value* const kept = job ? program.revisions.revisions().find(storeKey(job->url)) : nullptr;
  const auto* const revisions = kept ? kept->as<propertylist::Array>() : nullptr;
  if (!revisions) return result;
  for (const propertylist::Value& entry : *revisions) {
    const auto* const revision = entry.as<propertylist::Dictionary>();
    const propertylist::Value* const date = revision ? revision->find(RevisionController::dateKey) : nullptr;
    const auto* const seconds = date ? date->as<double>() : nullptr;
    if (seconds) result.push_back({Date::standardText(*seconds, program.foundation.localize.timeLocale()), *revision});
  }
  return result;
}

void insertRevision(Program& program, const propertylist::Dictionary& revision) {
  const propertylist::Value* const content = revision.find(RevisionController::plistKey);
  const auto* const dictionary = content ? content->as<propertylist::Dictionary>() : nullptr;
  if (!dictionary) return;
  const Localize& localize = program.foundation.localize;
  if (!replaceSelected(program.editing, program.platform.interface, localize, *dictionary)) return;
  if (program.shell.detail) program.shell.detail->showEdit();
}

void confirmDeleteRevisions(Program& program) {
  const auto job = program.selection.job();
  if (!job) return;
  const Localize& localize = program.foundation.localize;
  program.platform.interface.beginSheet({.message = localize.deleteRevisionsOf(job->name),
                                         .informativeText = localize.revisionsAreEarlierContents(),
                                         .defaultTitle = localize.deleteRevisionsOfThisJob(),
                                         .alternateTitle = localize.deleteRevisionsOfAllJobs(),
                                         .otherTitle = localize.cancel(),
                                         .safeButton = Interface::otherButton},
                                        [&program, url = job->url](int answer) {
                                          if (answer == Interface::defaultButton) program.revisions.clearRevisions(url);
                                          if (answer == Interface::alternateButton) program.revisions.clearRevisions();
                                        });
}

}  // namespace mirvel
