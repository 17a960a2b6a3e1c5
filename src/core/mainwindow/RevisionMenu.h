#pragma once

#include <string>
#include <vector>

#include "core/propertylist/Value.h"

namespace mirvel {

struct WindowContext;

/// An item of the Revisions submenu.
struct RevisionItem {
  std::string title;                  ///< the date of the save, in the user's time zone and locale
  propertylist::Dictionary revision;  ///< as stored by `RevisionController`
};

/// The revisions of the selected job, newest first. Empty if no job is selected or it has none. Entries without a valid
/// date are left out.
std::vector<RevisionItem> revisionItems(const WindowContext& context);

/// Replaces the content of the selected job by that of a revision, as an edit that can be undone, and opens the editor.
/// The file changes only with the next save. Does nothing if the revision has no content.
void insertRevision(const WindowContext& context, const propertylist::Dictionary& revision);

/// Asks, in a sheet, whether to delete the revisions of the selected job or those of all jobs, and deletes them. Does
/// nothing if no job is selected. The answer applies to the job that was selected when the question was asked.
void confirmDeleteRevisions(const WindowContext& context);

}  // namespace mirvel
