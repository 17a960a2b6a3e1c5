#pragma once

#include <string>
#include <vector>

#include "core/propertylist/Value.h"

namespace mirvel {

class Program;

/// An item of the submenu of revisions.
struct RevisionItem {
  std::string title;  ///< when it was saved, in the user's zone
  propertylist::Dictionary revision;
};

/// The revisions of the selected job, the newest first; none if there is no selected job.
std::vector<RevisionItem> revisionItems(Program& program);

/// Puts the content of a revision in place of the selected job, to be edited and saved. Nothing happens if the revision
/// has no content.
void insertRevision(Program& program, const propertylist::Dictionary& revision);

/// Asks, in a sheet, whether to delete the revisions of the selected job, or those of all jobs, and does it.
void confirmDeleteRevisions(Program& program);

}  // namespace mirvel
