#pragma once

#include <string>
#include <vector>

#include "core/propertylist/Value.h"

namespace mirvel {

struct WindowContext;

/// An item of the submenu of revisions.
struct RevisionItem {
  std::string title;  ///< when it was saved, in the user's zone
  propertylist::Dictionary revision;
};

/// The revisions of the selected job, the newest first. Empty if no job is selected.
std::vector<RevisionItem> revisionItems(const WindowContext& context);

/// Replaces the content of the selected job by that of a revision, to be edited and saved. Does nothing if the revision
/// has no content.
void insertRevision(const WindowContext& context, const propertylist::Dictionary& revision);

/// Asks, in a sheet, whether to delete the revisions of the selected job, or those of all jobs, and does it.
void confirmDeleteRevisions(const WindowContext& context);

}  // namespace mirvel
