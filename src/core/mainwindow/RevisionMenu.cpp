#include "core/mainwindow/RevisionMenu.h"

#include "core/app/Program.h"
#include "core/editor/ReplaceSelected.h"
#include "core/locale/Dates.h"

namespace mirvel {

std::vector<RevisionItem> revisionItems(Program& program) {
  std::vector<RevisionItem> result;
  const auto job = program.selection.job();
  const auto* const revisions =
      job ? program.revisions.revisions().get<propertylist::Array>(storeKey(job->url)) : nullptr;
  if (!revisions) return result;
  for (const propertylist::Value& entry : *revisions) {
    const auto* const revision = entry.as<propertylist::Dictionary>();
    const auto* const seconds = revision ? revision->get<double>(RevisionController::dateKey) : nullptr;
    if (seconds) result.push_back({Date::standardText(*seconds, program.foundation.localize.timeLocale()), *revision});
  }
  return result;
}

void insertRevision(Program& program, const propertylist::Dictionary& revision) {
  const auto* const dictionary = revision.get<propertylist::Dictionary>(RevisionController::plistKey);
  if (!dictionary || !replaceSelected(program, *dictionary)) return;
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
