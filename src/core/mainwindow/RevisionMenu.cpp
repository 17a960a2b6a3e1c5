#include "core/mainwindow/RevisionMenu.h"

#include "core/actions/RevisionController.h"
#include "core/editor/EditController.h"
#include "core/locale/Dates.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

std::vector<RevisionItem> revisionItems(const WindowContext& context) {
  std::vector<RevisionItem> result;
  const auto job = context.selection.job();
  const auto* const revisions =
      job ? context.revisions.revisions().get<propertylist::Array>(storeKey(job->url)) : nullptr;
  if (!revisions) return result;
  for (const propertylist::Value& entry : *revisions) {
    const auto* const revision = entry.as<propertylist::Dictionary>();
    const auto* const seconds = revision ? revision->get<double>(RevisionController::dateKey) : nullptr;
    if (seconds) result.push_back({Date::standardText(*seconds, context.foundation.localize.timeLocale()), *revision});
  }
  return result;
}

void insertRevision(const WindowContext& context, const propertylist::Dictionary& revision) {
  const auto* const dictionary = revision.get<propertylist::Dictionary>(RevisionController::plistKey);
  if (!dictionary) return;
  const Localize& localize = context.foundation.localize;
  if (!replaceSelected(context.editing, context.platform.interface, localize, *dictionary)) return;
  if (context.shell.detail) context.shell.detail->showEdit();
}

void confirmDeleteRevisions(const WindowContext& context) {
  const auto job = context.selection.job();
  if (!job) return;
  const Localize& localize = context.foundation.localize;
  context.platform.interface.beginSheet({.message = WindowTexts(localize).deleteRevisionsOf(job->name),
                                         .informativeText = WindowTexts(localize).revisionsAreEarlierContents(),
                                         .defaultTitle = WindowTexts(localize).deleteRevisionsOfThisJob(),
                                         .alternateTitle = WindowTexts(localize).deleteRevisionsOfAllJobs(),
                                         .otherTitle = localize.cancel(),
                                         .safeButton = Interface::otherButton},
                                        [&revisions = context.revisions, url = job->url](int answer) {
                                          if (answer == Interface::defaultButton) revisions.clearRevisions(url);
                                          if (answer == Interface::alternateButton) revisions.clearRevisions();
                                        });
}

}  // namespace mirvel
